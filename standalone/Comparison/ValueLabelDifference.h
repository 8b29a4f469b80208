#pragma once

#include <vector>

#include "standalone/Dictionary/ValueLabels.h"

namespace velahost {

// What differs between two sets of value labels, value by value. The pairs live as long as their
// sets.
struct ValueLabelDifference {
  struct Relabeled {
    const ValueLabel* before;
    const ValueLabel* now;
  };

  std::vector<const ValueLabel*> added;    // in the order of the new set
  std::vector<const ValueLabel*> removed;  // in the order of the old set
  std::vector<Relabeled> changed;          // in the order of the new set
  bool isReordered = false;                // values of both stand in another order

  bool Empty() const { return added.empty() && removed.empty() && changed.empty() && !isReordered; }
};

// Pairs the labels by value; null is a set without pairs. Strings of different widths are the same
// value where they differ in blanks at their ends alone. No number is the same value as a string.
ValueLabelDifference DifferenceBetween(const SharedValueLabels& before,
                                       const SharedValueLabels& now);

}  // namespace velahost
