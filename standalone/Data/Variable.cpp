#include "standalone/Data/Variable.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <utility>

#include "standalone/Data/Attributes.h"
#include "standalone/Data/Cells.h"
#include "standalone/Data/LabelOrder.h"
#include "standalone/Data/ValueLabelSet.h"
#include "standalone/HostCalls.h"
#include "standalone/Text/Utf8.h"

// Every setting makes the new value first, from what may be the variable's own property, and
// changes the variable last, by what cannot fail. A value that is there already changes nothing:
// only what a command really changed counts as changed and is written.

using velahost::Called;
using velahost::Format;
using velahost::MissingValues;
using velahost::Released;
using velahost::VariableProperties;

std::int64_t velahost::NewIdentity() {
  static std::atomic<std::int64_t> last = 0;
  return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

VELA_Variable::Impl::Impl(const Impl& other)
    : name(other.name),
      upperCaseName(other.upperCaseName),
      type(other.type),
      identity(other.identity),
      now(other.now),
      before(other.before ? std::make_unique<VariableProperties>(*other.before) : nullptr),
      document(other.document),
      place(other.place),
      categories(other.categories),
      documentation(other.documentation) {}

void VELA_Variable::Impl::SetName(std::string_view newName) {
  std::string cut(velahost::CutToBytes(newName, velahost::kNameBytes));
  std::string upperCase = velahost::UpperCase(cut);
  name = std::move(cut);
  upperCaseName = std::move(upperCase);
  if (isIndexed != nullptr) *isIndexed = false;
}

VariableProperties& VELA_Variable::Impl::Change() {
  if (!before) before = std::make_unique<VariableProperties>(now);
  return now;
}

VELA_Variable::VELA_Variable(const VELA_Variable& other) {
  Called("VELA_Variable::VELA_Variable");
  impl_ = std::make_unique<Impl>(*other.impl_);
}

VELA_Variable::VELA_Variable(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

VELA_Variable::~VELA_Variable() { Released("VELA_Variable::~VELA_Variable"); }

const char* VELA_Variable::GetName() const {
  Called("VELA_Variable::GetName");
  return impl_->name.c_str();
}

const char* VELA_Variable::GetUpperCaseName() const {
  Called("VELA_Variable::GetUpperCaseName");
  return impl_->upperCaseName.c_str();
}

void VELA_Variable::SetName(const char* name) {
  Called("VELA_Variable::SetName");
  impl_->SetName(name);
}

void VELA_Variable::NewID() {
  Called("VELA_Variable::NewID");
  impl_->identity = velahost::NewIdentity();
}

int VELA_Variable::GetType() const {
  Called("VELA_Variable::GetType");
  return impl_->type;
}

const char* VELA_Variable::GetLabel() const {
  Called("VELA_Variable::GetLabel");
  return impl_->now.label ? impl_->now.label->c_str() : nullptr;
}

void VELA_Variable::SetLabel(const char* label) {
  Called("VELA_Variable::SetLabel");
  if (impl_->now.label && *impl_->now.label == label) return;
  std::string next(label);
  impl_->Change().label = std::move(next);
}

velahost::Alignment VELA_Variable::GetAlignment() const {
  Called("VELA_Variable::GetAlignment");
  return impl_->now.alignment;
}

void VELA_Variable::SetAlignment(velahost::Alignment alignment) {
  Called("VELA_Variable::SetAlignment");
  if (alignment != impl_->now.alignment) impl_->Change().alignment = alignment;
}

void VELA_Variable::GetFormat(FormatType& type, int& width, int& decimals) const {
  Called("VELA_Variable::GetFormat");
  type = impl_->now.print.type;
  width = impl_->now.print.width;
  decimals = impl_->now.print.decimals;
}

void VELA_Variable::SetFormat(FormatType type, int width, int decimals) {
  Called("VELA_Variable::SetFormat");
  const Format next = {type, width, decimals};
  if (next != impl_->now.print) impl_->Change().print = next;
}

void VELA_Variable::GetWriteFormatEx(FormatType& type, int& width, int& decimals) const {
  Called("VELA_Variable::GetWriteFormatEx");
  type = impl_->now.write.type;
  width = impl_->now.write.width;
  decimals = impl_->now.write.decimals;
}

void VELA_Variable::SetWriteFormat(FormatType type, int width, int decimals) {
  Called("VELA_Variable::SetWriteFormat");
  const Format next = {type, width, decimals};
  if (next != impl_->now.write) impl_->Change().write = next;
}

velahost::Level VELA_Variable::GetMeasurementLevel() const {
  Called("VELA_Variable::GetMeasurementLevel");
  return impl_->now.level;
}

void VELA_Variable::SetMeasurementLevel(velahost::Level level) {
  Called("VELA_Variable::SetMeasurementLevel");
  if (level != impl_->now.level) impl_->Change().level = level;
}

int VELA_Variable::GetMissingValues(const OBS*& first, const OBS*& second,
                                    const OBS*& third) const {
  Called("VELA_Variable::GetMissingValues");
  const MissingValues& missing = impl_->now.missing;
  const std::array<const OBS**, 3> cells = {&first, &second, &third};
  for (std::size_t i = 0; i < static_cast<std::size_t>(std::abs(missing.count)); ++i) {
    *cells[i] = impl_->type == 0 ? velahost::CellOf(missing.numbers[i])
                                 : velahost::CellOf(missing.strings[i]);
  }
  return missing.count;
}

void VELA_Variable::SetMissingValues(int count, const OBS* first, const OBS* second,
                                     const OBS* third) {
  Called("VELA_Variable::SetMissingValues");
  MissingValues next;
  next.count = count;
  const std::array<const OBS*, 3> cells = {first, second, third};
  for (std::size_t i = 0; i < static_cast<std::size_t>(std::abs(count)); ++i) {
    if (impl_->type == 0) {
      next.numbers[i] = velahost::NumberIn(cells[i]);
    } else {
      next.strings.push_back(velahost::StringIn(cells[i], impl_->type));
    }
  }
  if (next != impl_->now.missing) impl_->Change().missing = std::move(next);
}

velahost::Role VELA_Variable::GetRole() const {
  Called("VELA_Variable::GetRole");
  return impl_->now.role;
}

void VELA_Variable::SetRole(velahost::Role role) {
  Called("VELA_Variable::SetRole");
  if (role != impl_->now.role) impl_->Change().role = role;
}

const VELA_VLImplPointer& VELA_Variable::GetValueLabels() const {
  Called("VELA_Variable::GetValueLabels");
  return impl_->now.valueLabels;
}

void VELA_Variable::SetValueLabels(const VELA_VLImplPointer& set) {
  Called("VELA_Variable::SetValueLabels");
  const VELA_VLImplPointer& present = impl_->now.valueLabels;
  std::shared_ptr<VELA_VLImpl> next = HostAccess::SharedOf(set);
  if (next && next->Size() == 0) next = nullptr;
  if (next == HostAccess::SharedOf(present)) return;
  if (next) {
    if (next->Type() != impl_->type) next = next->AtWidth(impl_->type);
    next = velahost::InDocumentOrder(*impl_, next);
    const VELA_VLImpl* const held = HostAccess::Of(present);
    if (held != nullptr && *held == *next) return;
  }
  HostAccess::Share(impl_->Change().valueLabels, std::move(next));
}

short VELA_Variable::GetDisplayWidth() const {
  Called("VELA_Variable::GetDisplayWidth");
  return impl_->now.columnWidth;
}

void VELA_Variable::SetDisplayWidth(short width) {
  Called("VELA_Variable::SetDisplayWidth");
  if (width != impl_->now.columnWidth) impl_->Change().columnWidth = width;
}

const DatasourceAttributes& VELA_Variable::GetAttributes() const {
  Called("VELA_Variable::GetAttributes");
  return impl_->now.attributes;
}

void VELA_Variable::SetAttributes(const DatasourceAttributes& attributes) {
  Called("VELA_Variable::SetAttributes");
  if (velahost::SameAttributes(attributes, impl_->now.attributes)) return;
  DatasourceAttributes next = HostAccess::CopyOf(attributes);
  HostAccess::Swap(impl_->Change().attributes, next);
}
