#include "standalone/Comparison/ValueLabelDifference.h"

#include <cstddef>

namespace velahost {
namespace {

// The pair of the same value in another set; null when there is none.
const ValueLabel* FindIn(const SharedValueLabels& set, const ValueLabel& pair, bool isNumeric) {
  if (!set || set->IsNumeric() != isNumeric) return nullptr;
  return set->FindValueOf(pair);
}

}  // namespace

ValueLabelDifference DifferenceBetween(const SharedValueLabels& before,
                                       const SharedValueLabels& now) {
  ValueLabelDifference difference;
  if (before) {
    for (const ValueLabel& pair : *before) {
      if (FindIn(now, pair, before->IsNumeric()) == nullptr) difference.removed.push_back(&pair);
    }
  }
  if (!now) return difference;
  std::size_t next = 0;  // the first place in the old set that keeps its order
  for (const ValueLabel& pair : *now) {
    const ValueLabel* const old = FindIn(before, pair, now->IsNumeric());
    if (old == nullptr) {
      difference.added.push_back(&pair);
      continue;
    }
    if (old->label != pair.label) difference.changed.push_back({old, &pair});
    const std::size_t place = before->PlaceOf(old);
    if (place < next) difference.isReordered = true;
    next = place;
  }
  return difference;
}

}  // namespace velahost
