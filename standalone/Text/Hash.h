#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace velahost {

// The hash of a text or of a number, with a seed that is another in every process: no document can
// be made so that its texts meet in one place.
std::size_t HashOf(std::string_view text);
// Zero and negative zero are the same number, as in a comparison.
std::size_t HashOf(double number);

struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return HashOf(text); }
};

// Texts of documents and commands, for look-ups. The views live as long as the collection.
using TextSet = std::unordered_set<std::string, TextHash, std::equal_to<>>;
using ViewSet = std::unordered_set<std::string_view, TextHash, std::equal_to<>>;
template <class Value>
using TextMap = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;
template <class Value>
using ViewMap = std::unordered_map<std::string_view, Value, TextHash, std::equal_to<>>;

}  // namespace velahost
