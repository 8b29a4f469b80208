#pragma once

#include <string_view>
#include <vector>

namespace velahost {

// The candidate that a misspelt word most likely means: the one that the fewest letters left out,
// added, changed or swapped lead to, without regard to case; of several the first. Empty where none
// is near: a short word may have one mistake, a long one three.
std::string_view Nearest(std::string_view word, const std::vector<std::string_view>& candidates);

}  // namespace velahost
