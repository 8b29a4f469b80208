#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace velahost {

// The names of the properties that differ.
template <std::size_t n>
std::vector<const char*> NamesWhere(const std::array<bool, n>& differs,
                                    const std::array<const char*, n>& names) {
  std::vector<const char*> chosen;
  chosen.reserve(n);
  for (std::size_t i = 0; i < n; ++i) {
    if (differs[i]) chosen.push_back(names[i]);
  }
  return chosen;
}

}  // namespace velahost
