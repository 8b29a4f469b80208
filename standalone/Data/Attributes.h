#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/Data.h"
#include "standalone/Data/HostAccess.h"

namespace velahost {

// One custom attribute: a name, compared without regard to case, and its values in order.
struct Attribute {
  std::string name;
  std::vector<std::string> values;

  bool operator==(const Attribute&) const = default;
};

// Whether two sets hold the same attributes: the names as they are spelled, the values in order.
// The order of the attributes does not count.
bool SameAttributes(const DatasourceAttributes& a, const DatasourceAttributes& b);

}  // namespace velahost

struct DatasourceAttributes::Impl {
  // No name twice, in the order of their first values. Once Find was called it is only added to.
  std::vector<velahost::Attribute> attributes;

  // The attribute of that name, in any case; null when there is none.
  velahost::Attribute* Find(std::string_view name);
  // Adds a value to the attribute of that name, which is made, spelled so, if there is none.
  void AddValue(std::string_view name, std::string value);

 private:
  // Positions by upper-case name, built by the first look-up among more than a few attributes.
  std::unordered_map<std::string, std::size_t> positions_;
};
