#include "standalone/Matching/FileOrder.h"

#include <cstdint>
#include <cstdlib>

namespace velahost {
namespace {

constexpr double kNextToOne = 0.8;
constexpr double kBetweenBoth = 0.4;
constexpr double kElsewhere = -0.6;

// How far a neighbour may be, and how far off its distance.
constexpr std::int64_t kMostDistance = 10;
constexpr std::int64_t kMostOff = 2;

bool IsNextTo(const std::optional<ColumnPair>& neighbour, const ColumnPair& pair) {
  if (!neighbour) return false;
  const std::int64_t inOld = std::int64_t{pair.oldColumn} - neighbour->oldColumn;
  const std::int64_t inNew = std::int64_t{pair.newColumn} - neighbour->newColumn;
  return std::abs(inNew) <= kMostDistance && std::abs(inOld - inNew) <= kMostOff &&
         (inOld > 0) == (inNew > 0);
}

}  // namespace

FileOrder::FileOrder(const std::vector<ColumnPair>& sure, std::size_t newCount)
    : before_(newCount), behind_(newCount) {
  std::vector<std::optional<ColumnPair>> at(newCount);
  for (const ColumnPair& pair : sure) at[pair.newColumn] = pair;
  for (std::size_t i = 1; i < newCount; ++i) before_[i] = at[i - 1] ? at[i - 1] : before_[i - 1];
  for (std::size_t i = newCount; i-- > 1;) behind_[i - 1] = at[i] ? at[i] : behind_[i];
}

double FileOrder::WeightOf(const ColumnPair& pair) const {
  const std::optional<ColumnPair>& before = before_[pair.newColumn];
  const std::optional<ColumnPair>& behind = behind_[pair.newColumn];
  if (!before && !behind) return 0;
  double weight = 0;
  if (IsNextTo(before, pair)) weight += kNextToOne;
  if (IsNextTo(behind, pair)) weight += kNextToOne;
  if (weight > 0) return weight;
  const bool isBetween =
      before && behind && before->oldColumn < pair.oldColumn && pair.oldColumn < behind->oldColumn;
  return isBetween ? kBetweenBoth : kElsewhere;
}

std::vector<Column> FileOrder::Expected(Column newColumn) const {
  std::vector<Column> columns;
  for (const std::optional<ColumnPair>& neighbour : {before_[newColumn], behind_[newColumn]}) {
    if (!neighbour) continue;
    const std::int64_t distance = std::int64_t{newColumn} - neighbour->newColumn;
    if (std::abs(distance) > kMostDistance) continue;
    for (std::int64_t off = -1; off <= 1; ++off) {
      const std::int64_t column = neighbour->oldColumn + distance + off;
      if (column >= 0) columns.push_back(static_cast<Column>(column));
    }
  }
  return columns;
}

}  // namespace velahost
