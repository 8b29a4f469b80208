#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "standalone/Data/Variable.h"

namespace velahost {

// A format as a document spells it: letters, a width from 1 to 32767, and decimals behind a point.
struct FormatName {
  std::string letters;  // in upper case
  int width = 0;
  int decimals = 0;

  bool IsString() const { return letters == "A" || letters == "HEX"; }
  // The width in bytes of the string that the name is for; nothing if it is for none.
  std::optional<int> StringWidth() const;
};

// The bounds of a width.
inline constexpr int kLeastWidth = 1;
inline constexpr int kMostWidth = 32767;

// The format that the text spells; nothing if it spells none.
std::optional<FormatName> ReadFormatName(std::string_view text);

// The format that a name is for a variable of the type: of a string, A or HEX at its own width; of
// a number the format named, nothing where that is for strings or there is none.
std::optional<Format> FormatFor(const std::optional<FormatName>& name, int type);

// The text that reads as the format.
std::string WriteFormatName(const Format& format);

}  // namespace velahost
