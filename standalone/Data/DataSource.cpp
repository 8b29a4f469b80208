#include "standalone/Data/DataSource.h"

#include <utility>

#include "standalone/Data/Attributes.h"
#include "standalone/Data/Documents.h"
#include "standalone/Data/Variable.h"
#include "standalone/HostCalls.h"
#include "standalone/Text/Utf8.h"

// Every setting makes the new value first, from what may be the data source's own, and changes the
// data source last, by what cannot fail. A value that is there already changes nothing.

using velahost::Called;
using velahost::FileProperties;
using velahost::Released;

VELA_DataSource::Impl::Impl(const Impl& other)
    : now(other.now),
      before(other.before ? std::make_unique<FileProperties>(*other.before) : nullptr),
      document(other.document),
      place(other.place),
      readCount(other.readCount) {
  for (const VELA_Variable& variable : other.variables) {
    variables.emplace_back(std::make_unique<VELA_Variable::Impl>(HostAccess::Of(variable)));
  }
}

FileProperties& VELA_DataSource::Impl::Change() {
  if (!before) before = std::make_unique<FileProperties>(now);
  return now;
}

int VELA_DataSource::Impl::Find(std::string_view name) const {
  if (!isIndexed_) BuildIndex();
  char key[velahost::kNameBytes + 1];
  const std::string_view cut = velahost::CutToBytes(name, velahost::kNameBytes);
  key[cut.copy(key, cut.size())] = '\0';
  velahost::UpperCaseInPlace(key);
  const auto found = columns_.find(key);
  return found == columns_.end() ? -1 : found->second;
}

// The names stay where the variables hold them, so the index keeps no copy of them.
void VELA_DataSource::Impl::BuildIndex() const {
  columns_.clear();
  columns_.reserve(variables.size());
  int column = 0;
  for (const VELA_Variable& variable : variables) {
    const VELA_Variable::Impl& impl = HostAccess::Of(variable);
    columns_.emplace(impl.upperCaseName, column++);
    impl.isIndexed = &isIndexed_;
  }
  isIndexed_ = true;
}

void VELA_DataSource::Impl::Add(std::unique_ptr<VELA_Variable::Impl> variable) {
  const VELA_Variable::Impl& added = *variable;
  variables.emplace_back(std::move(variable));
  if (!isIndexed_) return;
  try {
    columns_.emplace(added.upperCaseName, static_cast<int>(variables.size()) - 1);
  } catch (...) {
    variables.pop_back();
    throw;
  }
  added.isIndexed = &isIndexed_;
}

VELA_DataSource::VELA_DataSource(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

VELA_DataSource::~VELA_DataSource() { Released("VELA_DataSource::~VELA_DataSource"); }

int VELA_DataSource::ColumnCount() const {
  Called("VELA_DataSource::ColumnCount");
  return static_cast<int>(impl_->variables.size());
}

const VELA_Variable& VELA_DataSource::GetVariable(int column) const {
  Called("VELA_DataSource::GetVariable");
  return impl_->variables[static_cast<std::size_t>(column)];
}

VELA_Variable& VELA_DataSource::GetVariable(int column) {
  Called("VELA_DataSource::GetVariable");
  return impl_->variables[static_cast<std::size_t>(column)];
}

int VELA_DataSource::FindVarIndex(const char* name, int /*mode*/) const {
  Called("VELA_DataSource::FindVarIndex");
  return impl_->Find(name);
}

int VELA_DataSource::ObsIndex(int column) const {
  Called("VELA_DataSource::ObsIndex");
  return column;
}

int VELA_DataSource::GetWeightVarIndex() const {
  Called("VELA_DataSource::GetWeightVarIndex");
  return impl_->now.weight;
}

void VELA_DataSource::SetWeightVar(int column) {
  Called("VELA_DataSource::SetWeightVar");
  if (column != impl_->now.weight) impl_->Change().weight = column;
}

const char* VELA_DataSource::GetLabel() const {
  Called("VELA_DataSource::GetLabel");
  return impl_->now.label ? impl_->now.label->c_str() : nullptr;
}

void VELA_DataSource::SetLabel(const char* label) {
  Called("VELA_DataSource::SetLabel");
  if (impl_->now.label && *impl_->now.label == label) return;
  std::string next(label);
  impl_->Change().label = std::move(next);
}

const DatasourceAttributes& VELA_DataSource::GetAttributes() const {
  Called("VELA_DataSource::GetAttributes");
  return impl_->now.attributes;
}

void VELA_DataSource::SetAttributes(const DatasourceAttributes& attributes) {
  Called("VELA_DataSource::SetAttributes");
  if (velahost::SameAttributes(attributes, impl_->now.attributes)) return;
  DatasourceAttributes next = HostAccess::CopyOf(attributes);
  HostAccess::Swap(impl_->Change().attributes, next);
}

// The documents are the only block.
bool VELA_DataSource::HasExtension(int number) const {
  Called("VELA_DataSource::HasExtension");
  return number == 0 && !impl_->now.documents.empty();
}

void VELA_DataSource::SetExtension(int number, Extension extension) {
  Called("VELA_DataSource::SetExtension");
  if (number == 0) velahost::SetDocuments(*impl_, extension.impl_->documents);
}
