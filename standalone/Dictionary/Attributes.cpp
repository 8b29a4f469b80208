#include "standalone/Dictionary/Attributes.h"

#include <algorithm>
#include <utility>

#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// Up to this many attributes are searched one by one.
constexpr std::size_t kFew = 16;

std::vector<const Attribute*> SortedByName(const CustomAttributes& attributes) {
  std::vector<const Attribute*> sorted;
  sorted.reserve(attributes.size());
  for (const Attribute& attribute : attributes) sorted.push_back(&attribute);
  std::sort(sorted.begin(), sorted.end(),
            [](const Attribute* a, const Attribute* b) { return a->name < b->name; });
  return sorted;
}

}  // namespace

bool SameAttributes(const CustomAttributes& a, const CustomAttributes& b) {
  if (a.size() != b.size()) return false;
  if (a == b) return true;
  const std::vector<const Attribute*> sortedA = SortedByName(a);
  const std::vector<const Attribute*> sortedB = SortedByName(b);
  return std::equal(sortedA.begin(), sortedA.end(), sortedB.begin(),
                    [](const Attribute* x, const Attribute* y) { return *x == *y; });
}

Attribute* AttributeIndex::Find(std::string_view name) {
  if (attributes_.size() <= kFew) {
    const auto found = std::find_if(
        attributes_.begin(), attributes_.end(),
        [name](const Attribute& attribute) { return EqualIgnoringCase(attribute.name, name); });
    return found == attributes_.end() ? nullptr : &*found;
  }
  for (std::size_t i = places_.size(); i < attributes_.size(); ++i) {
    places_.emplace(UpperCase(attributes_[i].name), i);
  }
  const auto found = places_.find(UpperCase(name));
  return found == places_.end() ? nullptr : &attributes_[found->second];
}

void AttributeIndex::AddValue(const Text& name, Text value) {
  Attribute* attribute = Find(name);
  if (attribute == nullptr) attribute = &attributes_.emplace_back(Attribute{name, {}});
  attribute->values.push_back(std::move(value));
}

}  // namespace velahost
