#include "standalone/Dictionary/Dictionary.h"

#include <algorithm>

namespace velahost {

bool SameSets(const std::vector<VariableSet>& a, const std::vector<VariableSet>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const VariableSet& x, const VariableSet& y) {
                      return x.name == y.name && x.label == y.label && x.members == y.members;
                    });
}

}  // namespace velahost
