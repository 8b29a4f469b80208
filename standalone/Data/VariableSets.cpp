#include <cstddef>
#include <utility>

#include "standalone/Data/DataSource.h"
#include "standalone/Data/Variable.h"
#include "standalone/HostCalls.h"

using velahost::Called;

namespace {

// The members that the data source has, spelled as its variables are.
std::vector<std::string> MembersIn(const VELA_DataSource::Impl& dataSource,
                                   const std::vector<std::string>& members) {
  std::vector<std::string> found;
  found.reserve(members.size());
  for (const std::string& member : members) {
    const int column = dataSource.Find(member);
    if (column < 0) continue;
    found.push_back(HostAccess::Of(dataSource.variables[static_cast<std::size_t>(column)]).name);
  }
  return found;
}

}  // namespace

std::string VariableSet::GetName(ChangeCase /*changeCase*/) const {
  Called("VariableSet::GetName");
  return name;
}

std::vector<VariableSet> VariableSets(const VELA_DataSource& dataSource, VarSetsType type) {
  Called("VariableSets");
  return HostAccess::Of(dataSource).now.sets[static_cast<std::size_t>(type)];
}

void SaveVariableSets(const std::vector<VariableSet>& sets, VELA_DataSource& dataSource,
                      VarSetsType type) {
  Called("SaveVariableSets");
  VELA_DataSource::Impl& impl = HostAccess::Of(dataSource);
  std::vector<VariableSet> next;
  next.reserve(sets.size());
  for (const VariableSet& set : sets) {
    next.push_back({.kind = type,
                    .flags = set.flags,
                    .name = set.name,
                    .label = set.label,
                    .type = set.type,
                    .members = MembersIn(impl, set.members)});
  }
  const auto collection = static_cast<std::size_t>(type);
  if (!velahost::SameSets(next, impl.now.sets[collection])) {
    impl.Change().sets[collection].swap(next);
  }
}
