#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "host/Data.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Host/Calls.h"
#include "standalone/Host/DataSources.h"
#include "standalone/Host/Host.h"
#include "standalone/Host/HostAccess.h"
#include "standalone/Text/Hash.h"

using velahost::Called;
using velahost::Host;
using velahost::SetKind;
using velahost::Text;
using velahost::VariableNames;

namespace {

static_assert(static_cast<int>(SetKind::Variables) == VarSetsVariableSets);
static_assert(static_cast<int>(SetKind::MultipleResponse) == VarSetsMrSets);

// Keeps what the library does not carry of a set. Returns the set's reference to it.
std::int32_t Keep(const velahost::VariableSet& set, const VELA_DataSource::Impl& owner) {
  Host::GivenSet given{owner.readFrom, set};
  given.set.members.clear();
  std::vector<Host::GivenSet>& all = Host::Current().givenSets;
  all.push_back(std::move(given));
  return static_cast<std::int32_t>(all.size());
}

// What was kept of a set; null for nothing.
const Host::GivenSet* KeptOf(const VariableSet& set) {
  const std::vector<Host::GivenSet>& all = Host::Current().givenSets;
  const auto place = static_cast<std::size_t>(set.reference);
  return place == 0 || place > all.size() ? nullptr : &all[place - 1];
}

VariableSet HostSetOf(const velahost::VariableSet& set, const VELA_DataSource::Impl& owner) {
  VariableSet result;
  result.reference = Keep(set, owner);
  result.flags[VariableSet::HasLabel] = set.label.has_value();
  result.name = set.name.String();
  result.label = set.label.value_or(Text()).String();
  result.type = set.type.String();
  const VariableNames& names = owner.Names();
  result.members.reserve(set.members.size());
  for (const int member : set.members) result.members.push_back(names.At(member).String());
  return result;
}

// The columns of the members that the data source has.
std::vector<int> ColumnsOf(const VariableSet& set, const VariableNames& names) {
  std::vector<int> columns;
  columns.reserve(set.members.size());
  for (const std::string& member : set.members) {
    if (const int column = names.Find(member); column >= 0) columns.push_back(column);
  }
  return columns;
}

bool HasLabel(const VariableSet& set) {
  return set.flags.size() > VariableSet::HasLabel && set.flags[VariableSet::HasLabel];
}

// A set that the data source does not have yet. It brings what its document says of it.
velahost::VariableSet NewSetOf(const VariableSet& set, const VELA_DataSource::Impl& owner) {
  const VariableNames& names = owner.Names();
  velahost::VariableSet result;
  result.name = Text(set.name);
  if (HasLabel(set)) result.label = Text(set.label);
  result.type = Text(set.type);
  result.members = ColumnsOf(set, names);
  const Host::GivenSet* const kept = KeptOf(set);
  if (kept == nullptr) return result;
  result.isNamedByLabel = kept->set.isNamedByLabel;
  result.languages = kept->set.languages;
  result.brought = kept->set.brought;
  if (kept->file && kept->set.place) {
    auto brought = std::make_shared<velahost::BroughtSet>(BroughtWith(*kept->file, kept->set));
    velahost::LeaveOut(brought->documentation, owner.readFrom.get(), set.name);
    result.brought = std::move(brought);
  }
  return result;
}

// A set that the data source has, as the other one of its name says. A label stays where the other
// one has none.
velahost::VariableSet Updated(const velahost::VariableSet& present, const VariableSet& set,
                              const VariableNames& names) {
  velahost::VariableSet result = present;
  result.members = ColumnsOf(set, names);
  if (!HasLabel(set)) return result;
  result.label = Text(set.label);
  result.isNamedByLabel = false;
  if (const Host::GivenSet* const kept = KeptOf(set)) result.languages = kept->set.languages;
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
  for (const velahost::VariableSet& set : sets) result.push_back(HostSetOf(set, impl));
  return result;
}

void SaveVariableSets(const std::vector<VariableSet>& sets, VELA_DataSource& dataSource,
                      VarSetsType type) {
  Called("SaveVariableSets");
  VELA_DataSource::Impl& impl = HostAccess::Of(dataSource);
  const VariableNames& names = impl.Names();
  auto& present = impl.items.SetsOf(static_cast<SetKind>(type));
  velahost::ViewMap<const velahost::VariableSet*> known;
  for (const velahost::VariableSet& set : present) known.emplace(set.name, &set);
  std::vector<velahost::VariableSet> next;
  next.reserve(sets.size());
  for (const VariableSet& set : sets) {
    const auto found = known.find(set.name);
    next.push_back(found == known.end() ? NewSetOf(set, impl)
                                        : Updated(*found->second, set, names));
  }
  present.swap(next);
}
