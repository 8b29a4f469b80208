#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "standalone/Dictionary/ValueLabels.h"
#include "standalone/Matching/Words.h"
#include "standalone/Text/Hash.h"

namespace velahost {

// The sets of value labels of two files, each once, and how far two of them agree. A pair agrees
// with another one of the same value whose label has the same words, years aside.
class ValueSets {
 public:
  using Id = std::size_t;

  struct Agreement {
    std::size_t agreeing = 0;  // pairs
    std::size_t most = 0;      // pairs of the larger set, so far as they are compared

    double Share() const {
      return most == 0 ? 0 : static_cast<double>(agreeing) / static_cast<double>(most);
    }
  };

  // Counts a variable's set; nothing where it has none.
  std::optional<Id> Read(const SharedValueLabels& set, MatchSide side);
  // How many variables of a file have the set.
  std::size_t Count(Id id, MatchSide side) const;
  // Only the first kMostPairs of each are compared.
  Agreement Compare(Id a, Id b);

 private:
  static constexpr std::size_t kMostPairs = 500;

  struct Pair {
    std::uint64_t value;
    std::uint64_t label;
    bool operator==(const Pair&) const = default;
    friend bool operator<(const Pair& a, const Pair& b) {
      return a.value != b.value ? a.value < b.value : a.label < b.label;
    }
  };
  struct Set {
    std::vector<Pair> pairs;  // ascending
    std::array<std::size_t, 2> counts = {};
  };

  std::uint64_t KeyOf(const Text& label);

  Lexicon words_;
  TextMap<std::uint64_t> labelKeys_;  // by label as it is spelled
  std::vector<Set> sets_;
  TextMap<Id> ids_;  // by the bytes of the pairs
  std::unordered_map<std::uint64_t, Agreement> compared_;
};

}  // namespace velahost
