#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/Text/Text.h"

namespace velahost {

// The missing values of a variable: any number of single values, none of them twice, and for a
// number also a range.
struct MissingValues {
  // From the lowest to the highest, both included; an open end is an infinite number.
  std::optional<std::pair<double, double>> range;
  std::vector<double> numbers;  // of a numeric variable
  std::vector<Text> strings;    // of a string variable, without the blanks at their ends

  // The same range and the same single values, in whatever order.
  bool operator==(const MissingValues& other) const;

  bool Empty() const { return !range && numbers.empty() && strings.empty(); }
  // What the host's interface and `show --json` give: the number of single values; with a range
  // -(2 + that number).
  int Count() const;
  // Whether a number is in the range, if there is one.
  bool IsInRange(double number) const;
  // Whether a value is one of them. A string counts without the blanks at its end.
  bool Contains(double number) const;
  bool Contains(std::string_view string) const;
};

}  // namespace velahost
