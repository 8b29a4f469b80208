#include "standalone/Text/Suggestion.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

constexpr std::size_t kLongest = 64;  // bytes of a word that is compared

// How many mistakes a word of so many bytes may have.
std::size_t MostMistakes(std::size_t size) { return size <= 4 ? 1 : size <= 8 ? 2 : 3; }

// How many mistakes lead from one word to the other; more than `most` where there are more. Only
// the numbers near the diagonal of the table are made.
std::size_t Mistakes(std::string_view a, std::string_view b, std::size_t most) {
  const std::size_t differ = a.size() < b.size() ? b.size() - a.size() : a.size() - b.size();
  if (differ > most) return most + 1;
  std::array<std::array<std::size_t, kLongest + 1>, 3> rows;
  for (std::size_t j = 0; j <= b.size(); ++j) rows[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    auto& row = rows[i % 3];
    const auto& above = rows[(i - 1) % 3];
    const auto& aboveThat = rows[(i + 1) % 3];
    const std::size_t begin = i > most ? i - most : 1;
    const std::size_t end = std::min(b.size(), i + most);
    row.fill(most + 1);
    row[0] = i;
    std::size_t least = most + 1;
    for (std::size_t j = begin; j <= end; ++j) {
      row[j] =
          std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      const bool isSwapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (isSwapped) row[j] = std::min(row[j], aboveThat[j - 2] + 1);
      least = std::min(least, row[j]);
    }
    if (least > most) return most + 1;
  }
  return rows[a.size() % 3][b.size()];
}

}  // namespace

std::string_view Nearest(std::string_view word, const std::vector<std::string_view>& candidates) {
  if (word.empty() || word.size() > kLongest) return {};
  const std::string upper = UpperCase(word);
  std::string_view nearest;
  std::size_t most = MostMistakes(word.size());
  for (const std::string_view candidate : candidates) {
    if (candidate.size() > kLongest) continue;
    const std::size_t mistakes = Mistakes(upper, UpperCase(candidate), most);
    if (mistakes > most) continue;
    nearest = candidate;
    if (mistakes == 0) break;
    most = mistakes - 1;
  }
  return nearest;
}

}  // namespace velahost
