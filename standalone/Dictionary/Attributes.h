#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "standalone/Text/Hash.h"
#include "standalone/Text/Text.h"

namespace velahost {

// One custom attribute, of a variable or of a file: its values in order.
struct Attribute {
  Text name;
  std::vector<Text> values;

  bool operator==(const Attribute&) const = default;
};

// Custom attributes in the order of their first values. No name stands there twice: names compare
// without regard to case.
using CustomAttributes = std::vector<Attribute>;

// Whether two hold the same attributes: the names as they are spelled, the values in order. The
// order of the attributes does not count.
bool SameAttributes(const CustomAttributes& a, const CustomAttributes& b);

// Finds attributes by name among many, and adds to them.
class AttributeIndex {
 public:
  // The attributes outlive this object; nothing else adds to them meanwhile.
  explicit AttributeIndex(CustomAttributes& attributes) : attributes_(attributes) {}

  // The attribute of that name, in any case; null when there is none.
  Attribute* Find(std::string_view name);
  // Adds a value to the attribute of that name, which is made, spelled so, if there is none.
  void AddValue(const Text& name, Text value);

 private:
  CustomAttributes& attributes_;
  // Places by upper-case name, made by the first look-up among more than a few attributes.
  TextMap<std::size_t> places_;
};

}  // namespace velahost
