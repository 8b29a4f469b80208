#include "standalone/Dictionary/Dictionary.h"

#include <algorithm>

namespace velahost {

bool SameSets(const std::vector<VariableSet>& a, const std::vector<VariableSet>& b) {
  const auto isSame = [](const VariableSet& x, const VariableSet& y) {
    return x.name == y.name && x.label == y.label && x.members == y.members;
  };
  if (a.size() != b.size()) return false;
  if (std::equal(a.begin(), a.end(), b.begin(), isSame)) return true;
  const auto byName = [](const std::vector<VariableSet>& sets) {
    std::vector<const VariableSet*> sorted;
    sorted.reserve(sets.size());
    for (const VariableSet& set : sets) sorted.push_back(&set);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto* x, const auto* y) { return x->name < y->name; });
    return sorted;
  };
  const auto sortedA = byName(a);
  return std::equal(sortedA.begin(), sortedA.end(), byName(b).begin(),
                    [&](const auto* x, const auto* y) { return isSame(*x, *y); });
}

}  // namespace velahost
