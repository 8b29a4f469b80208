#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <span>

#include "standalone/Data/Variable.h"

namespace velahost {

bool MissingValues::Contains(double number) const {
  // The single values stand behind the range, if there is one.
  const std::size_t firstSingle = count < 0 ? 2 : 0;
  if (count < 0 && numbers[0] <= number && number <= numbers[1]) return true;
  const auto valueCount = static_cast<std::size_t>(std::abs(count));
  const auto singles = std::span(numbers).subspan(firstSingle, valueCount - firstSingle);
  return std::find(singles.begin(), singles.end(), number) != singles.end();
}

bool MissingValues::Contains(std::string_view text) const {
  return std::find(strings.begin(), strings.end(), text) != strings.end();
}

}  // namespace velahost
