#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Data.h"
#include "standalone/Dictionary/MissingValues.h"
#include "standalone/Dictionary/ValueLabels.h"

// The value cells that the host gives to the library. The library sees no more of a cell than the
// bytes of a string, which stand at its address; the host finds there also where the value comes
// from.

namespace velahost {

// A value cell. It lives as long as this object, and until it is set again.
class Cell {
 public:
  // What the value comes from, besides the value itself; both may be null, and outlive the cell.
  struct Origin {
    const MissingValues* missing = nullptr;
    const ValueLabel* pair = nullptr;
  };

  void SetNumber(double number, Origin origin);
  // The string filled with blanks, or cut, to the width.
  void SetString(std::string_view text, int width, Origin origin);

  // The address that the library is given. REQUIRES: the cell has been set.
  const OBS* Address() const;

 private:
  void Reserve(std::size_t bytes, Origin origin);

  std::vector<std::byte> room_;
};

// What a cell that the library gives back holds.
const Cell::Origin& OriginOf(const OBS* cell);
double NumberIn(const OBS* cell);
// Of a value that is so wide, without the blanks at its end.
std::string_view StringIn(const OBS* cell, int width);

// The text filled with blanks, or cut, to the width.
std::string AtWidth(std::string_view text, int width);

}  // namespace velahost
