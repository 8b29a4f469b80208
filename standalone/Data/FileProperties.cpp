#include <algorithm>
#include <cstddef>

#include "standalone/Data/Attributes.h"
#include "standalone/Data/DataSource.h"
#include "standalone/Data/Differences.h"

namespace velahost {
namespace {

bool HasLabel(const VariableSet& set) {
  return set.flags.size() > VariableSet::HasLabel && set.flags[VariableSet::HasLabel];
}

bool SameSet(const VariableSet& a, const VariableSet& b) {
  return a.name == b.name && HasLabel(a) == HasLabel(b) && (!HasLabel(a) || a.label == b.label) &&
         a.members == b.members;
}

}  // namespace

// Written out so that the documents and the attributes are copied inside the host, not by a host
// operation.
FileProperties::FileProperties(const FileProperties& other)
    : label(other.label),
      documents(HostAccess::CopyOf(other.documents)),
      weight(other.weight),
      attributes(HostAccess::CopyOf(other.attributes)),
      sets(other.sets) {}

bool SameDocuments(const std::vector<DSDocument>& a, const std::vector<DSDocument>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const DSDocument& x, const DSDocument& y) {
                      return HostAccess::TextOf(x) == HostAccess::TextOf(y);
                    });
}

bool SameSets(const std::vector<VariableSet>& a, const std::vector<VariableSet>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameSet);
}

std::vector<const char*> DifferingProperties(const FileProperties& a, const FileProperties& b) {
  const std::array<bool, kFilePropertyNames.size()> differs = {
      a.label != b.label,
      !SameDocuments(a.documents, b.documents),
      a.weight != b.weight,
      !SameAttributes(a.attributes, b.attributes),
      !SameSets(a.sets[VarSetsMrSets], b.sets[VarSetsMrSets]),
      !SameSets(a.sets[VarSetsVariableSets], b.sets[VarSetsVariableSets])};
  return NamesWhere(differs, kFilePropertyNames);
}

}  // namespace velahost
