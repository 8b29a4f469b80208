#include "standalone/Matching/Namesakes.h"

#include "standalone/Matching/Evidence.h"
#include "standalone/Text/Hash.h"

namespace velahost {
namespace {

// From where down on labels say something else.
constexpr double kOther = 0.2;
// How many of the namesakes with labels must be doubted for names to count as reused.
constexpr std::size_t kLeastDoubted = 5;
constexpr double kLeastShare = 0.3;

bool SaySomethingElse(const Evidence& evidence) {
  if (!evidence.label || *evidence.label > kOther) return false;
  return !evidence.values || evidence.values->Share() < 0.5;
}

std::vector<Column> Without(std::size_t count, const std::vector<bool>& isTaken) {
  std::vector<Column> columns;
  for (Column column = 0; column < count; ++column) {
    if (!isTaken[column]) columns.push_back(column);
  }
  return columns;
}

}  // namespace

Namesakes FindNamesakes(Profiles& profiles) {
  ViewMap<Column> oldColumns;
  for (Column column = 0; column < profiles.Count(MatchSide::Old); ++column) {
    oldColumns.emplace(profiles.At(MatchSide::Old, column).name.upperCase, column);
  }
  Namesakes namesakes;
  std::vector<ColumnPair> unlikeOnes;  // trusted only where names are not reused
  std::size_t labelled = 0;
  for (Column column = 0; column < profiles.Count(MatchSide::New); ++column) {
    const auto found = oldColumns.find(profiles.At(MatchSide::New, column).name.upperCase);
    if (found == oldColumns.end()) continue;
    const Evidence evidence = CompareContent(profiles, found->second, column);
    if (evidence.label) ++labelled;
    const ColumnPair pair = {found->second, column};
    if (SaySomethingElse(evidence)) {
      namesakes.doubted.push_back(pair);
    } else if (evidence.label && *evidence.label < kMuchAlike) {
      unlikeOnes.push_back(pair);
    } else {
      namesakes.trusted.push_back(pair);
    }
  }
  const std::size_t doubted = namesakes.doubted.size();
  namesakes.namesAreReused =
      doubted >= kLeastDoubted &&
      static_cast<double>(doubted) >= kLeastShare * static_cast<double>(labelled);
  std::vector<ColumnPair>& kind = namesakes.namesAreReused ? namesakes.doubted : namesakes.trusted;
  kind.insert(kind.end(), unlikeOnes.begin(), unlikeOnes.end());
  return namesakes;
}

Pools PoolsOf(const Profiles& profiles, const Namesakes& namesakes) {
  std::vector<bool> oldTaken(profiles.Count(MatchSide::Old));
  std::vector<bool> newTaken(profiles.Count(MatchSide::New));
  for (const auto& [oldColumn, newColumn] : namesakes.trusted) {
    oldTaken[oldColumn] = true;
    newTaken[newColumn] = true;
  }
  return {Without(oldTaken.size(), oldTaken), Without(newTaken.size(), newTaken)};
}

}  // namespace velahost
