#include "backend/ApplyDictionary/MergeVariableSets.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace {

// Orders sets by name. std::string compares its bytes as unsigned values, the shorter one first.
struct VarSetLess {
  bool operator()(const VariableSet& a, const VariableSet& b) const {
    return a.GetName(VariableSet::AsStored) < b.GetName(VariableSet::AsStored);
  }
};

// The sets of the working file that the source has none of the same name for, sorted. Of several of
// one name the first is taken. REQUIRES: the source's sets are sorted.
std::vector<VariableSet> OwnSets(std::vector<VariableSet> working,
                                 const std::vector<VariableSet>& source) {
  const VarSetLess less;
  std::erase_if(working, [&](const VariableSet& set) {
    return std::binary_search(source.begin(), source.end(), set, less);
  });
  std::stable_sort(working.begin(), working.end(), less);
  const auto isRepeated = [&less](const VariableSet& a, const VariableSet& b) {
    return !less(a, b);
  };
  working.erase(std::unique(working.begin(), working.end(), isRepeated), working.end());
  return working;
}

}  // namespace

void MergeVariableSets(VELA_DataSource& working, const VELA_DataSource* source, VarSetsType type) {
  if (source == nullptr || source == &working) return;

  std::vector<VariableSet> sets = VariableSets(*source, type);
  std::sort(sets.begin(), sets.end(), VarSetLess());
  std::vector<VariableSet> own = OwnSets(VariableSets(working, type), sets);
  std::vector<VariableSet> merged;
  merged.reserve(sets.size() + own.size());
  std::merge(std::make_move_iterator(sets.begin()), std::make_move_iterator(sets.end()),
             std::make_move_iterator(own.begin()), std::make_move_iterator(own.end()),
             std::back_inserter(merged), VarSetLess());
  SaveVariableSets(merged, working, type);
}
