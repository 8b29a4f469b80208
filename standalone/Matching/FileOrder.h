#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "standalone/Matching/LearnedRules.h"

namespace velahost {

// What the places of two variables in their files say, by the pairs around them that are sure.
class FileOrder {
 public:
  // The pairs, for a new file of so many variables.
  FileOrder(const std::vector<ColumnPair>& sure, std::size_t newCount);

  // The weight that a pair gets from its neighbours, as a logarithm of odds.
  double WeightOf(const ColumnPair& pair) const;
  // The columns of the old file at the place where a new one should come from.
  std::vector<Column> Expected(Column newColumn) const;

 private:
  // The nearest sure pairs before and behind, the column itself aside.
  std::vector<std::optional<ColumnPair>> before_;
  std::vector<std::optional<ColumnPair>> behind_;
};

// From which weight on the places count as the same.
inline constexpr double kSamePlace = 0.7;

}  // namespace velahost
