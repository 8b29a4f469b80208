#pragma once

#include <cstddef>
#include <tuple>
#include <vector>

#include "standalone/Matching/Profiles.h"
#include "standalone/Matching/RenameRule.h"

namespace velahost {

// The variables of each file that have no partner yet, by column, ascending.
struct Pools {
  std::vector<Column> oldColumns;
  std::vector<Column> newColumns;
};

// A pair of columns: of the old file, and of the new.
struct ColumnPair {
  Column oldColumn;
  Column newColumn;
  bool operator==(const ColumnPair&) const = default;
  friend bool operator<(const ColumnPair& a, const ColumnPair& b) {
    return std::tie(a.oldColumn, a.newColumn) < std::tie(b.oldColumn, b.newColumn);
  }
};

// A change of names that holds for several variables.
struct LearnedRule {
  RenameRule rule;
  double weight;                  // that it gives to a pair, as a logarithm of odds
  std::vector<ColumnPair> pairs;  // of variables that are there
};

// Pairs whose labels, or questions, no other variable of the pools has: most of them are right.
std::vector<ColumnPair> UniquelyAlike(const Profiles& profiles, const Pools& pools);

// Pairs whose names are the same but for one place.
std::vector<ColumnPair> NearlySameNames(const Profiles& profiles, const Pools& pools);

// Learns how names have changed from pairs that may be right: a rule that explains many counts by
// what the variables say that it brings together; where they say nothing, by how many of the
// names that it applies to it leads to one that is there. Best first.
std::vector<LearnedRule> LearnRules(Profiles& profiles, const Pools& pools,
                                    const std::vector<ColumnPair>& examples);

}  // namespace velahost
