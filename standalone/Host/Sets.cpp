#include <utility>
#include <vector>

#include "host/Data.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Host/Calls.h"
#include "standalone/Host/DataSources.h"
#include "standalone/Host/HostAccess.h"

using velahost::Called;
using velahost::SetKind;
using velahost::Text;
using velahost::VariableNames;

namespace {

static_assert(static_cast<int>(SetKind::Variables) == VarSetsVariableSets);
static_assert(static_cast<int>(SetKind::MultipleResponse) == VarSetsMrSets);

VariableSet HostSetOf(const velahost::VariableSet& set, VarSetsType type,
                      const VariableNames& names) {
  VariableSet result;
  result.kind = type;
  result.flags[VariableSet::HasLabel] = set.label.has_value();
  result.name = set.name.String();
  result.label = set.label.value_or(Text()).String();
  result.type = set.type.String();
  result.members.reserve(set.members.size());
  for (const int member : set.members) result.members.push_back(names.At(member).String());
  return result;
}

// The set with the members that the data source has.
velahost::VariableSet SetOf(const VariableSet& set, const VariableNames& names) {
  velahost::VariableSet result;
  result.name = Text(set.name);
  const bool hasLabel =
      set.flags.size() > VariableSet::HasLabel && set.flags[VariableSet::HasLabel];
  if (hasLabel) result.label = Text(set.label);
  result.type = Text(set.type);
  result.members.reserve(set.members.size());
  for (const std::string& member : set.members) {
    if (const int column = names.Find(member); column >= 0) result.members.push_back(column);
  }
  return result;
}

}  // namespace

std::string VariableSet::GetName(ChangeCase /*changeCase*/) const {
  Called("VariableSet::GetName");
  return name;
}

std::vector<VariableSet> VariableSets(const VELA_DataSource& dataSource, VarSetsType type) {
  Called("VariableSets");
  const VELA_DataSource::Impl& impl = HostAccess::Of(dataSource);
  const auto& sets = impl.items.SetsOf(static_cast<SetKind>(type));
  std::vector<VariableSet> result;
  result.reserve(sets.size());
  for (const velahost::VariableSet& set : sets) {
    result.push_back(HostSetOf(set, type, impl.Names()));
  }
  return result;
}

void SaveVariableSets(const std::vector<VariableSet>& sets, VELA_DataSource& dataSource,
                      VarSetsType type) {
  Called("SaveVariableSets");
  VELA_DataSource::Impl& impl = HostAccess::Of(dataSource);
  std::vector<velahost::VariableSet> next;
  next.reserve(sets.size());
  for (const VariableSet& set : sets) next.push_back(SetOf(set, impl.Names()));
  auto& present = impl.items.SetsOf(static_cast<SetKind>(type));
  if (!SameSets(next, present)) present.swap(next);
}
