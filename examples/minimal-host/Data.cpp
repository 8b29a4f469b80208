#include <algorithm>
#include <cctype>
#include <cstring>

#include "Model.h"

// Data.h: dictionaries in memory.

OBS NumberCell(double number) { return {{}, 0, number}; }

OBS StringCell(int width, const std::string& text) {
  OBS cell{{}, width, 0};
  cell.bytes.fill(' ');
  std::copy_n(text.begin(), std::min<std::size_t>(text.size(), static_cast<std::size_t>(width)),
              cell.bytes.begin());
  return cell;
}

OBS WithWidth(const OBS& cell, int width) {
  if (width == 0) return cell;
  return StringCell(width, std::string(cell.bytes.data(), static_cast<std::size_t>(cell.width)));
}

bool SameValue(const OBS& a, const OBS& b) {
  return a.width == b.width && (a.width == 0 ? a.number == b.number : a.bytes == b.bytes);
}

// Handles of value label sets are shared pointers.
VELA_VLImplPointer::VELA_VLImplPointer() = default;
VELA_VLImplPointer::VELA_VLImplPointer(const VELA_VLImplPointer&) = default;
VELA_VLImplPointer& VELA_VLImplPointer::operator=(const VELA_VLImplPointer&) = default;
VELA_VLImplPointer::~VELA_VLImplPointer() = default;
VELA_VLImplPointer::operator bool() const { return set_ != nullptr; }

struct VELA_ValueLabelMap::Impl {
  VELA_VLImplPointer handle;
  bool isOwn = false;  // whether no variable has the set yet
  mutable std::size_t next = 0;

  const VELA_VLImpl& Set() const {
    static const VELA_VLImpl none;
    const auto& set = HostAccess::SetOf(handle);
    return set ? *set : none;
  }
};
VELA_ValueLabelMap::VELA_ValueLabelMap(const VELA_VLImplPointer& set)
    : impl_(std::make_unique<Impl>(Impl{set})) {}
VELA_ValueLabelMap::~VELA_ValueLabelMap() = default;
int VELA_ValueLabelMap::Size() const { return static_cast<int>(impl_->Set().pairs.size()); }
int VELA_ValueLabelMap::Type() const { return impl_->Set().type; }
void VELA_ValueLabelMap::Reset() { impl_->next = 0; }
int VELA_ValueLabelMap::GetNextPair(const OBS*& value, const char*& label) const {
  if (impl_->next == impl_->Set().pairs.size()) return 0;
  const auto& pair = impl_->Set().pairs[impl_->next++];
  value = &pair.first;
  label = pair.second.c_str();
  return 1;
}
int VELA_ValueLabelMap::GetNextPair(std::string& value, const char*& label) const {
  const OBS* cell = nullptr;
  if (GetNextPair(cell, label) == 0) return 0;
  value.assign(cell->bytes.data(), static_cast<std::size_t>(cell->width));
  return 1;
}
const char* VELA_ValueLabelMap::GetLabel(const OBS* value) const {
  for (const auto& [cell, label] : impl_->Set().pairs) {
    if (SameValue(cell, *value)) return label.c_str();
  }
  return nullptr;
}
void VELA_ValueLabelMap::AddPair(const OBS* value, std::string label) {
  auto& set = HostAccess::SetOf(impl_->handle);
  if (!impl_->isOwn) set = std::make_shared<VELA_VLImpl>(impl_->Set());  // others keep theirs
  impl_->isOwn = true;
  set->pairs.emplace_back(*value, std::move(label));
}
VELA_ValueLabelMap::operator VELA_VLImplPointer&() { return impl_->handle; }

struct ObsValue::Impl {
  OBS cell;
};
ObsValue::ObsValue(int type, const OBS* value, int /*valueType*/)
    : impl_(std::make_unique<Impl>(Impl{WithWidth(*value, type)})) {}
ObsValue::~ObsValue() = default;
ObsValue::operator const OBS*() const { return &impl_->cell; }

DatasourceAttributes::DatasourceAttributes() : impl_(std::make_unique<Impl>()) {}
DatasourceAttributes::DatasourceAttributes(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
DatasourceAttributes::DatasourceAttributes(const DatasourceAttributes& other)
    : impl_(std::make_unique<Impl>(*other.impl_)) {}
DatasourceAttributes& DatasourceAttributes::operator=(const DatasourceAttributes& other) {
  *impl_ = *other.impl_;
  return *this;
}
DatasourceAttributes::~DatasourceAttributes() = default;
int DatasourceAttributes::Size() const { return static_cast<int>(impl_->values.size()); }
bool DatasourceAttributes::Merge(const DatasourceAttributes& other, bool /*flag*/) {
  const std::size_t before = impl_->values.size();
  for (const auto& attribute : other.impl_->values) {
    const bool isThere = std::any_of(impl_->values.begin(), impl_->values.end(),
                                     [&](const auto& own) { return own.first == attribute.first; });
    if (!isThere) impl_->values.push_back(attribute);
  }
  return impl_->values.size() != before;
}

VELA_Variable::VELA_Variable(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
  SetName(std::string(impl_->name).c_str());
}
VELA_Variable::VELA_Variable(const VELA_Variable& other)
    : impl_(std::make_unique<Impl>(*other.impl_)) {}
VELA_Variable::~VELA_Variable() = default;
const char* VELA_Variable::GetName() const { return impl_->name.c_str(); }
const char* VELA_Variable::GetUpperCaseName() const { return impl_->upperCaseName.c_str(); }
void VELA_Variable::SetName(const char* name) {
  std::string upper = name;
  VELAMBstrupr_A(upper.data());
  impl_->name = name;
  impl_->upperCaseName = upper;
}
void VELA_Variable::NewID() {
  static long long last = 0;
  impl_->identity = ++last;
}
int VELA_Variable::GetType() const { return impl_->type; }
const char* VELA_Variable::GetLabel() const {
  return impl_->label ? impl_->label->c_str() : nullptr;
}
// The text may be the variable's own, so it is copied before the old one goes. So with all setters.
void VELA_Variable::SetLabel(const char* label) { impl_->label = std::string(label); }
VELA_Variable_Enumerations::Alignment VELA_Variable::GetAlignment() const {
  return static_cast<VELA_Variable_Enumerations::Alignment>(impl_->alignment);
}
void VELA_Variable::SetAlignment(VELA_Variable_Enumerations::Alignment alignment) {
  impl_->alignment = alignment;
}
void VELA_Variable::GetFormat(FormatType& type, int& width, int& decimals) const {
  type = impl_->print.type, width = impl_->print.width, decimals = impl_->print.decimals;
}
void VELA_Variable::SetFormat(FormatType type, int width, int decimals) {
  impl_->print = {type, width, decimals};
}
void VELA_Variable::GetWriteFormatEx(FormatType& type, int& width, int& decimals) const {
  type = impl_->write.type, width = impl_->write.width, decimals = impl_->write.decimals;
}
void VELA_Variable::SetWriteFormat(FormatType type, int width, int decimals) {
  impl_->write = {type, width, decimals};
}
VELA_Variable_Enumerations::MeasurementLevel VELA_Variable::GetMeasurementLevel() const {
  return static_cast<VELA_Variable_Enumerations::MeasurementLevel>(impl_->level);
}
void VELA_Variable::SetMeasurementLevel(VELA_Variable_Enumerations::MeasurementLevel level) {
  impl_->level = level;
}
int VELA_Variable::GetMissingValues(const OBS*& first, const OBS*& second,
                                    const OBS*& third) const {
  const std::array<const OBS**, 3> places = {&first, &second, &third};
  for (int i = 0; i < std::abs(impl_->missingCount); ++i) {
    *places[static_cast<std::size_t>(i)] = &impl_->missing[static_cast<std::size_t>(i)];
  }
  return impl_->missingCount;
}
void VELA_Variable::SetMissingValues(int count, const OBS* first, const OBS* second,
                                     const OBS* third) {
  const std::array<const OBS*, 3> cells = {first, second, third};
  std::array<OBS, 3> values = {};
  for (std::size_t i = 0; i < static_cast<std::size_t>(std::abs(count)); ++i) {
    values[i] = WithWidth(*cells[i], impl_->type);
  }
  impl_->missing = values;
  impl_->missingCount = count;
}
VELA_Variable_Enumerations::Role VELA_Variable::GetRole() const {
  return static_cast<VELA_Variable_Enumerations::Role>(impl_->role);
}
void VELA_Variable::SetRole(VELA_Variable_Enumerations::Role role) { impl_->role = role; }
const VELA_VLImplPointer& VELA_Variable::GetValueLabels() const { return impl_->valueLabels; }
void VELA_Variable::SetValueLabels(const VELA_VLImplPointer& set) {
  const auto& given = HostAccess::SetOf(set);
  if (!given || given->type == impl_->type) {
    impl_->valueLabels = set;
    return;
  }
  const auto own = std::make_shared<VELA_VLImpl>();  // strings of another width
  own->type = impl_->type;
  for (const auto& [value, label] : given->pairs) {
    own->pairs.emplace_back(WithWidth(value, impl_->type), label);
  }
  HostAccess::SetOf(impl_->valueLabels) = own;
}
short VELA_Variable::GetDisplayWidth() const { return impl_->displayWidth; }
void VELA_Variable::SetDisplayWidth(short width) { impl_->displayWidth = width; }
const DatasourceAttributes& VELA_Variable::GetAttributes() const { return impl_->attributes; }
void VELA_Variable::SetAttributes(const DatasourceAttributes& attributes) {
  impl_->attributes = attributes;
}

VELA_DataSource::Impl CopyOf(const VELA_DataSource::Impl& other) {
  VELA_DataSource::Impl copy;
  for (const auto& variable : other.variables) {
    copy.variables.push_back(std::make_unique<VELA_Variable>(*variable));
  }
  copy.label = other.label;
  copy.weight = other.weight;
  copy.attributes = other.attributes;
  return copy;
}
VELA_DataSource::VELA_DataSource(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
VELA_DataSource::~VELA_DataSource() = default;
int VELA_DataSource::ColumnCount() const { return static_cast<int>(impl_->variables.size()); }
const VELA_Variable& VELA_DataSource::GetVariable(int column) const {
  return *impl_->variables[static_cast<std::size_t>(column)];
}
VELA_Variable& VELA_DataSource::GetVariable(int column) {
  return *impl_->variables[static_cast<std::size_t>(column)];
}
int VELA_DataSource::FindVarIndex(const char* name, int /*mode*/) const {
  std::string upper = name;
  VELAMBstrupr_A(upper.data());
  for (int column = 0; column < ColumnCount(); ++column) {
    if (upper == GetVariable(column).GetUpperCaseName()) return column;
  }
  return -1;
}
int VELA_DataSource::ObsIndex(int column) const { return column; }
int VELA_DataSource::GetWeightVarIndex() const { return impl_->weight; }
void VELA_DataSource::SetWeightVar(int column) { impl_->weight = column; }
const char* VELA_DataSource::GetLabel() const {
  return impl_->label ? impl_->label->c_str() : nullptr;
}
void VELA_DataSource::SetLabel(const char* label) { impl_->label = std::string(label); }
const DatasourceAttributes& VELA_DataSource::GetAttributes() const { return impl_->attributes; }
void VELA_DataSource::SetAttributes(const DatasourceAttributes& attributes) {
  impl_->attributes = attributes;
}

DEDataStore::DEDataStore(const VELA_DataSource* base)
    : VELA_DataSource(std::make_unique<Impl>(CopyOf(HostAccess::Of(*base)))) {}
DEDataStore::~DEDataStore() = default;
void DEDataStore::InsertVariable(unsigned int position, const VELA_Variable& variable) {
  auto& variables = HostAccess::Of(*static_cast<VELA_DataSource*>(this)).variables;
  variables.insert(variables.begin() + position, std::make_unique<VELA_Variable>(variable));
}

// This host has no documents and no sets: these operations are all that the library needs of them.
struct VELA_DataSource::Extension::Impl {};
VELA_DataSource::Extension::Extension(const VELA_DataSource&, int) {}
VELA_DataSource::Extension::Extension(const Extension&) {}
VELA_DataSource::Extension::~Extension() = default;
bool VELA_DataSource::HasExtension(int) const { return false; }
void VELA_DataSource::SetExtension(int, Extension) {}
DSDocument::DSDocument(const DSDocument&) = default;
DSDocument& DSDocument::operator=(const DSDocument&) = default;
DSDocument::~DSDocument() = default;
std::vector<DSDocument> GetDocuments(const VELA_DataSource&) { return {}; }
void DeDup(std::vector<DSDocument>&) {}
void SaveDocuments(const std::vector<DSDocument>&, VELA_DataSource&) {}
std::string VariableSet::GetName(ChangeCase) const { return name; }
std::vector<VariableSet> VariableSets(const VELA_DataSource&, VarSetsType) { return {}; }
void SaveVariableSets(const std::vector<VariableSet>&, VELA_DataSource&, VarSetsType) {}

char* VELAMBzstncpy_A(char* buffer, const char* text, std::size_t bound) {
  const std::size_t size = std::min(std::strlen(text), bound - 1);
  std::memcpy(buffer, text, size);
  buffer[size] = '\0';
  return buffer;
}
char* VELAMBstrupr_A(char* text) {
  for (char* c = text; *c != '\0'; ++c) {
    *c = static_cast<char>(std::toupper(static_cast<unsigned char>(*c)));
  }
  return text;
}
