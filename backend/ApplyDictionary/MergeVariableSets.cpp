#include "backend/ApplyDictionary/MergeVariableSets.h"

#include <algorithm>
#include <vector>

namespace {

// Orders sets by name. std::string compares its bytes as unsigned values, the shorter one first.
struct VarSetLess {
  bool operator()(const VariableSet& a, const VariableSet& b) const {
    return a.GetName(VariableSet::AsStored) < b.GetName(VariableSet::AsStored);
  }
};

}  // namespace

void MergeVariableSets(VELA_DataSource& working, const VELA_DataSource* source, VarSetsType type) {
  if (source == nullptr || source == &working) return;

  std::vector<VariableSet> sets = VariableSets(*source, type);
  std::sort(sets.begin(), sets.end(), VarSetLess());
  for (const VariableSet& set : VariableSets(working, type)) {
    const auto place = std::lower_bound(sets.begin(), sets.end(), set, VarSetLess());
    if (place == sets.end() || VarSetLess()(set, *place)) sets.insert(place, set);
  }
  SaveVariableSets(sets, working, type);
}
