#include "standalone/Dictionary/Dictionary.h"

#include <algorithm>

namespace velahost {
namespace {

void Fetch(const void* memory, std::size_t bytes) {
  constexpr std::size_t kLine = 64;  // so many bytes come together
  for (std::size_t at = 0; at < bytes; at += kLine) {
    __builtin_prefetch(static_cast<const char*>(memory) + at);
  }
}

}  // namespace

// What a variable refers to is known only once the variable itself is there.
void Dictionary::FetchAfter(std::size_t column) const {
  constexpr std::size_t kFar = 6;
  constexpr std::size_t kNear = 4;
  if (column + kFar >= variables.size()) return;
  Fetch(variables[column + kFar].get(), sizeof(Variable));
  const Variable& near = *variables[column + kNear];
  if (near.label) Fetch(near.label->CString(), 1);
  Fetch(near.valueLabels.get(), sizeof(ValueLabels));
  Fetch(near.brought.get(), sizeof(Brought));
}

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
