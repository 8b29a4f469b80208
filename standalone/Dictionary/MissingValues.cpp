#include "standalone/Dictionary/MissingValues.h"

#include <algorithm>

#include "standalone/Text/Utf8.h"

namespace velahost {

int MissingValues::Count() const {
  const auto singles = static_cast<int>(numbers.size() + strings.size());
  return range ? -(2 + singles) : singles;
}

bool MissingValues::Contains(double number) const {
  if (range && range->first <= number && number <= range->second) return true;
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

bool MissingValues::Contains(std::string_view string) const {
  const std::string_view value = TrimTrailingBlanks(string);
  return std::find(strings.begin(), strings.end(), value) != strings.end();
}

}  // namespace velahost
