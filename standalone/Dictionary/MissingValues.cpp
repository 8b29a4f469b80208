#include "standalone/Dictionary/MissingValues.h"

#include <algorithm>

#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

template <class Value>
bool AreSameValues(const std::vector<Value>& a, const std::vector<Value>& b) {
  if (a.size() != b.size()) return false;
  if (a == b) return true;
  std::vector<Value> sortedA = a;
  std::vector<Value> sortedB = b;
  std::sort(sortedA.begin(), sortedA.end());
  std::sort(sortedB.begin(), sortedB.end());
  return sortedA == sortedB;
}

}  // namespace

bool MissingValues::operator==(const MissingValues& other) const {
  return range == other.range && AreSameValues(numbers, other.numbers) &&
         AreSameValues(strings, other.strings);
}

int MissingValues::Count() const {
  const auto singles = static_cast<int>(numbers.size() + strings.size());
  return range ? -(2 + singles) : singles;
}

bool MissingValues::IsInRange(double number) const {
  return range && range->first <= number && number <= range->second;
}

bool MissingValues::Contains(double number) const {
  return IsInRange(number) || std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

bool MissingValues::Contains(std::string_view string) const {
  const std::string_view value = TrimTrailingBlanks(string);
  return std::find(strings.begin(), strings.end(), value) != strings.end();
}

}  // namespace velahost
