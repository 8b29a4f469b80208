#include "standalone/Host/DataSources.h"

#include <utility>

#include "host/Exceptions.h"
#include "standalone/Host/Calls.h"
#include "standalone/Host/Documents.h"
#include "standalone/Host/Host.h"
#include "standalone/Host/HostAccess.h"
#include "standalone/Host/Variables.h"
#include "standalone/Text/Message.h"

// Every setting makes the new value first, from what may be the data source's own, and changes the
// data source last, by what cannot fail. A value that is there already changes nothing.

using velahost::Called;
using velahost::Released;
using velahost::Text;

VELA_DataSource::Impl::Impl(const std::shared_ptr<const velahost::CodebookFile>& file)
    : items(file->dictionary.file),
      readFrom(file),
      count_(file->dictionary.variables.size()),
      namesOf_(file) {}

VELA_DataSource::Impl::Impl(const Impl& other)
    : items(other.items), readFrom(other.readFrom), namesOf_(other.namesOf_) {
  for (std::size_t column = 0; column < other.Count(); ++column) {
    const VELA_Variable* const variable = other.Made(column);
    if (variable != nullptr) {
      Append(std::make_unique<VELA_Variable::Impl>(HostAccess::Of(*variable)));
    } else {
      ++count_;
    }
  }
}

const VELA_Variable* VELA_DataSource::Impl::Made(std::size_t column) const {
  const std::size_t block = column / kBlockSize;
  if (block >= blocks_.size() || !blocks_[block]) return nullptr;
  const std::optional<VELA_Variable>& place = (*blocks_[block])[column % kBlockSize];
  return place ? &*place : nullptr;
}

std::optional<VELA_Variable>& VELA_DataSource::Impl::PlaceOf(std::size_t column) {
  const std::size_t block = column / kBlockSize;
  if (block >= blocks_.size()) blocks_.resize(block + 1);
  if (!blocks_[block]) blocks_[block] = std::make_unique<Block>();
  return (*blocks_[block])[column % kBlockSize];
}

VELA_Variable& VELA_DataSource::Impl::At(std::size_t column) {
  std::optional<VELA_Variable>& place = PlaceOf(column);
  if (place) return *place;
  auto variable = std::make_unique<VELA_Variable::Impl>();
  variable->now = readFrom->dictionary.variables[column];
  variable->file = readFrom;
  variable->column = column;
  variable->owner = this;
  return place.emplace(std::move(variable));
}

const std::shared_ptr<const velahost::Variable>& VELA_DataSource::Impl::Now(
    std::size_t column) const {
  const VELA_Variable* const variable = Made(column);
  return variable != nullptr ? HostAccess::Of(*variable).now
                             : readFrom->dictionary.variables[column];
}

velahost::Dictionary VELA_DataSource::Impl::DictionaryNow() const {
  velahost::Dictionary dictionary;
  dictionary.variables.reserve(Count());
  for (std::size_t column = 0; column < Count(); ++column) {
    dictionary.variables.push_back(Now(column));
  }
  dictionary.file = items;
  return dictionary;
}

const velahost::VariableNames& VELA_DataSource::Impl::Names() const {
  if (namesOf_) return namesOf_->names;
  if (names_) return *names_;
  velahost::VariableNames names;
  names.Reserve(Count());
  for (std::size_t column = 0; column < Count(); ++column) names.Add(*Now(column));
  return names_.emplace(std::move(names));
}

void VELA_DataSource::Impl::ForgetNames() {
  namesOf_ = nullptr;
  names_.reset();
}

void VELA_DataSource::Impl::Append(std::unique_ptr<VELA_Variable::Impl> variable) {
  variable->owner = this;
  PlaceOf(count_).emplace(std::move(variable));
  ++count_;
}

void VELA_DataSource::Impl::Add(std::unique_ptr<VELA_Variable::Impl> variable) {
  // Where the rest fails, the names are made again when they are asked for.
  std::optional<velahost::VariableNames> names = std::exchange(names_, std::nullopt);
  if (namesOf_) names = namesOf_->names;
  if (names) names->Add(*variable->now);
  Append(std::move(variable));
  namesOf_ = nullptr;
  names_ = std::move(names);
}

VELA_DataSource::VELA_DataSource(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

VELA_DataSource::~VELA_DataSource() { Released("VELA_DataSource::~VELA_DataSource"); }

int VELA_DataSource::ColumnCount() const {
  Called("VELA_DataSource::ColumnCount");
  return static_cast<int>(impl_->Count());
}

const VELA_Variable& VELA_DataSource::GetVariable(int column) const {
  Called("VELA_DataSource::GetVariable");
  return impl_->At(static_cast<std::size_t>(column));
}

VELA_Variable& VELA_DataSource::GetVariable(int column) {
  Called("VELA_DataSource::GetVariable");
  return impl_->At(static_cast<std::size_t>(column));
}

int VELA_DataSource::FindVarIndex(const char* name, int /*mode*/) const {
  Called("VELA_DataSource::FindVarIndex");
  return impl_->Names().Find(name);
}

int VELA_DataSource::ObsIndex(int column) const {
  Called("VELA_DataSource::ObsIndex");
  return column;
}

int VELA_DataSource::GetWeightVarIndex() const {
  Called("VELA_DataSource::GetWeightVarIndex");
  return impl_->items.weight;
}

void VELA_DataSource::SetWeightVar(int column) {
  Called("VELA_DataSource::SetWeightVar");
  velahost::Host& host = velahost::Host::Current();
  if (host.notesWeight && impl_->items.weight != column) {
    const velahost::Variable& weight = *impl_->Now(static_cast<std::size_t>(column));
    host.diagnostics.Report(velahost::Severity::TransferWarning,
                            {"The weight is ^1 now\\: without FILEINFO it is carried over too...",
                             {weight.name.String()}},
                            {}, "Write /FILEINFO with nothing after it to leave the weight alone.");
  }
  impl_->items.weight = column;
}

const char* VELA_DataSource::GetLabel() const {
  Called("VELA_DataSource::GetLabel");
  return impl_->items.label ? impl_->items.label->CString() : nullptr;
}

void VELA_DataSource::SetLabel(const char* label) {
  Called("VELA_DataSource::SetLabel");
  impl_->items.label = Text(label);
}

const DatasourceAttributes& VELA_DataSource::GetAttributes() const {
  Called("VELA_DataSource::GetAttributes");
  static const DatasourceAttributes none;
  if (!impl_->attributes) impl_->attributes = HostAccess::MakeAttributes(impl_->items.attributes);
  return impl_->attributes ? *impl_->attributes : none;
}

void VELA_DataSource::SetAttributes(const DatasourceAttributes& attributes) {
  Called("VELA_DataSource::SetAttributes");
  const velahost::CustomAttributes& given = HostAccess::Of(attributes);
  if (SameAttributes(given, impl_->items.attributes)) return;
  velahost::CustomAttributes next = given;
  impl_->items.attributes.swap(next);
  impl_->attributes = nullptr;
}

// The documents are the only block.
bool VELA_DataSource::HasExtension(int number) const {
  Called("VELA_DataSource::HasExtension");
  return number == 0 && !impl_->items.documents.empty();
}

void VELA_DataSource::SetExtension(int number, Extension extension) {
  Called("VELA_DataSource::SetExtension");
  if (number == 0) impl_->items.documents.swap(extension.impl_->documents);
}

namespace {

// What a variable brings besides its dictionary: from the document that it was read from, and what
// it has been given.
velahost::Brought BroughtBy(const VELA_Variable::Impl& variable) {
  velahost::Brought brought;
  if (variable.file) brought = BroughtWith(*variable.file, variable.column);
  if (!variable.now->brought) return brought;
  const velahost::Brought& given = *variable.now->brought;
  AddGiven(brought.documentation, given, velahost::DocumentationSet::All());
  if (brought.interval.Empty()) brought.interval = given.interval;
  if (brought.weightNames.empty()) brought.weightNames = given.weightNames;
  return brought;
}

// What a new column keeps of the variable: all that the variable says, and of the document that it
// was read from what goes with it, but no place there.
std::unique_ptr<VELA_Variable::Impl> ColumnOf(const VELA_Variable::Impl& inserted,
                                              const velahost::CodebookFile* into) {
  auto variable = std::make_shared<velahost::Variable>(*inserted.now);
  variable->categories = nullptr;
  velahost::Brought brought = BroughtBy(inserted);
  LeaveOut(brought.documentation, into, variable->name.String());
  variable->documented = {};
  for (const velahost::DocumentationElement& element : brought.documentation) {
    if (!IsOfNewVariables(element.kind)) variable->documented.Add(element.kind);
  }
  variable->brought = std::make_shared<const velahost::Brought>(std::move(brought));
  // The width of a string is written as its format.
  if (!variable->IsNumeric() && variable->hasStatedWidth && !variable->print) {
    variable->print = velahost::StringFormat(variable->type);
    if (!variable->write) variable->write = variable->print;
  }
  auto column = std::make_unique<VELA_Variable::Impl>();
  column->now = std::move(variable);
  column->identity = inserted.identity;
  return column;
}

std::unique_ptr<VELA_DataSource::Impl> ContentsOf(const VELA_DataSource& base) {
  velahost::Host::Current().ReserveOwned();
  return std::make_unique<VELA_DataSource::Impl>(HostAccess::Of(base));
}

}  // namespace

DEDataStore::DEDataStore(const VELA_DataSource* base)
    : VELA_DataSource((Called("DEDataStore::DEDataStore"), ContentsOf(*base))) {
  // Last, and it cannot fail: a store whose construction fails has no other owner.
  velahost::Host::Current().Own(this);
}

DEDataStore::~DEDataStore() { Released("DEDataStore::~DEDataStore"); }

void DEDataStore::InsertVariable(unsigned int position, const VELA_Variable& variable) {
  Called("DEDataStore::InsertVariable");
  VELA_DataSource::Impl& store = HostAccess::Of(*this);
  const VELA_Variable::Impl& inserted = HostAccess::Of(variable);
  const auto refuse = [&inserted](const std::string& why) {
    throw ErrorText(why + ": " + velahost::EscapeMessage(inserted.now->name.String()) + "...");
  };
  if (position != store.Count()) {
    refuse("A variable can be inserted only behind the last one");
  }
  if (store.Names().Find(inserted.now->name) >= 0) {
    refuse("The working file has a variable of that name already");
  }
  store.Add(ColumnOf(inserted, store.readFrom.get()));
}
