#include "standalone/Host/Variables.h"

#include <array>
#include <cstdlib>
#include <unordered_map>
#include <utility>
#include <vector>

#include "standalone/Host/Calls.h"
#include "standalone/Host/Cells.h"
#include "standalone/Host/DataSources.h"
#include "standalone/Host/HostAccess.h"
#include "standalone/Text/Utf8.h"

// Every setting makes the new value first, from what may be the variable's own property, and
// changes the variable last, by what cannot fail. A value that is there already changes nothing:
// only what a command really changed counts as changed and is written.

using velahost::Called;
using velahost::Format;
using velahost::MissingValues;
using velahost::Released;
using velahost::Text;
using velahost::Variable;
using Enumerations = VELA_Variable_Enumerations;

namespace {

static_assert(static_cast<int>(velahost::Role::Split) == Enumerations::RoleSplit);
static_assert(static_cast<int>(velahost::Alignment::Center) == Enumerations::AlignCenter);
static_assert(static_cast<int>(velahost::Level::None) == Enumerations::NoLevel);

// The letters of formats and the numbers that the library knows them by: the place among the
// letters, from 1.
struct FormatTypes {
  std::vector<Text> letters = {Text("A"), Text("HEX")};
  std::unordered_map<Text, int> numbers = {{letters[0], VELA_Variable::FormatString},
                                           {letters[1], VELA_Variable::FormatHexString}};
};

FormatTypes& Types() {
  static FormatTypes types;
  return types;
}

VELA_Variable::FormatType TypeOf(const Format& format) {
  FormatTypes& types = Types();
  auto found = types.numbers.find(format.letters);
  if (found == types.numbers.end()) {
    types.letters.push_back(format.letters);
    found = types.numbers.emplace(format.letters, static_cast<int>(types.letters.size())).first;
  }
  return static_cast<VELA_Variable::FormatType>(found->second);
}

Format FormatOf(VELA_Variable::FormatType type, int width, int decimals) {
  return {Types().letters[static_cast<std::size_t>(type) - 1], width, decimals};
}

void GetParts(const Format& format, VELA_Variable::FormatType& type, int& width, int& decimals) {
  type = TypeOf(format);
  width = format.width;
  decimals = format.decimals;
}

}  // namespace

std::int64_t velahost::NewIdentity() {
  static std::int64_t last = 0;
  return ++last;
}

VELA_Variable::Impl::Impl(const Impl& other)
    : now(other.now), identity(other.identity), file(other.file), column(other.column) {}

Variable& VELA_Variable::Impl::Change() {
  if (now.use_count() > 1) now = std::make_shared<Variable>(*now);
  return const_cast<Variable&>(*now);  // every variable is made as one that may be changed
}

VELA_Variable::VELA_Variable(const VELA_Variable& other) {
  Called("VELA_Variable::VELA_Variable");
  impl_ = std::make_unique<Impl>(*other.impl_);
}

VELA_Variable::VELA_Variable(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

VELA_Variable::~VELA_Variable() { Released("VELA_Variable::~VELA_Variable"); }

const char* VELA_Variable::GetName() const {
  Called("VELA_Variable::GetName");
  return impl_->now->name.CString();
}

const char* VELA_Variable::GetUpperCaseName() const {
  Called("VELA_Variable::GetUpperCaseName");
  return impl_->now->upperCaseName.CString();
}

void VELA_Variable::SetName(const char* name) {
  Called("VELA_Variable::SetName");
  impl_->Change().SetName(name);
  if (impl_->owner != nullptr) impl_->owner->ForgetNames();
}

void VELA_Variable::NewID() {
  Called("VELA_Variable::NewID");
  impl_->identity = velahost::NewIdentity();
}

int VELA_Variable::GetType() const {
  Called("VELA_Variable::GetType");
  return impl_->now->type;
}

const char* VELA_Variable::GetLabel() const {
  Called("VELA_Variable::GetLabel");
  return impl_->now->label ? impl_->now->label->CString() : nullptr;
}

void VELA_Variable::SetLabel(const char* label) {
  Called("VELA_Variable::SetLabel");
  if (impl_->now->label && *impl_->now->label == label) return;
  Text next(label);
  impl_->Change().label = std::move(next);
}

Enumerations::Alignment VELA_Variable::GetAlignment() const {
  Called("VELA_Variable::GetAlignment");
  return static_cast<Enumerations::Alignment>(impl_->now->alignment);
}

void VELA_Variable::SetAlignment(Enumerations::Alignment alignment) {
  Called("VELA_Variable::SetAlignment");
  const auto next = static_cast<velahost::Alignment>(alignment);
  if (next != impl_->now->alignment) impl_->Change().alignment = next;
}

void VELA_Variable::GetFormat(FormatType& type, int& width, int& decimals) const {
  Called("VELA_Variable::GetFormat");
  GetParts(impl_->now->print, type, width, decimals);
}

void VELA_Variable::SetFormat(FormatType type, int width, int decimals) {
  Called("VELA_Variable::SetFormat");
  const Format next = FormatOf(type, width, decimals);
  if (next != impl_->now->print) impl_->Change().print = next;
}

void VELA_Variable::GetWriteFormatEx(FormatType& type, int& width, int& decimals) const {
  Called("VELA_Variable::GetWriteFormatEx");
  GetParts(impl_->now->write, type, width, decimals);
}

void VELA_Variable::SetWriteFormat(FormatType type, int width, int decimals) {
  Called("VELA_Variable::SetWriteFormat");
  const Format next = FormatOf(type, width, decimals);
  if (next != impl_->now->write) impl_->Change().write = next;
}

Enumerations::MeasurementLevel VELA_Variable::GetMeasurementLevel() const {
  Called("VELA_Variable::GetMeasurementLevel");
  return static_cast<Enumerations::MeasurementLevel>(impl_->now->level);
}

void VELA_Variable::SetMeasurementLevel(Enumerations::MeasurementLevel level) {
  Called("VELA_Variable::SetMeasurementLevel");
  const auto next = static_cast<velahost::Level>(level);
  if (next != impl_->now->level) impl_->Change().level = next;
}

// One to three single values; -2 is a range, -3 a range and a value after it.
int VELA_Variable::GetMissingValues(const OBS*& first, const OBS*& second,
                                    const OBS*& third) const {
  Called("VELA_Variable::GetMissingValues");
  const MissingValues& missing = impl_->now->missing;
  const std::array<const OBS**, 3> cells = {&first, &second, &third};
  std::size_t next = 0;
  if (missing.range) {
    *cells[next++] = velahost::CellOf(missing.range->first);
    *cells[next++] = velahost::CellOf(missing.range->second);
  }
  for (const double& number : missing.numbers) *cells[next++] = velahost::CellOf(number);
  if (impl_->missingCells.empty()) {
    std::vector<std::string> strings;
    for (const Text& string : missing.strings) {
      strings.push_back(velahost::AtWidth(string, impl_->now->type));
    }
    impl_->missingCells.swap(strings);
  }
  for (const std::string& cell : impl_->missingCells) *cells[next++] = velahost::CellOf(cell);
  return missing.Count();
}

void VELA_Variable::SetMissingValues(int count, const OBS* first, const OBS* second,
                                     const OBS* third) {
  Called("VELA_Variable::SetMissingValues");
  MissingValues next;
  const std::array<const OBS*, 3> cells = {first, second, third};
  std::size_t i = 0;
  if (count < 0) {
    next.range = {velahost::NumberIn(first), velahost::NumberIn(second)};
    i = 2;
  }
  for (; i < static_cast<std::size_t>(std::abs(count)); ++i) {
    if (impl_->now->IsNumeric()) {
      next.numbers.push_back(velahost::NumberIn(cells[i]));
    } else {
      next.strings.emplace_back(velahost::StringIn(cells[i], impl_->now->type));
    }
  }
  if (next == impl_->now->missing) return;
  impl_->Change().missing = std::move(next);
  impl_->missingCells.clear();
}

Enumerations::Role VELA_Variable::GetRole() const {
  Called("VELA_Variable::GetRole");
  return static_cast<Enumerations::Role>(impl_->now->role);
}

void VELA_Variable::SetRole(Enumerations::Role role) {
  Called("VELA_Variable::SetRole");
  const auto next = static_cast<velahost::Role>(role);
  if (next != impl_->now->role) impl_->Change().role = next;
}

const VELA_VLImplPointer& VELA_Variable::GetValueLabels() const {
  Called("VELA_Variable::GetValueLabels");
  HostAccess::Share(impl_->valueLabels, impl_->now->valueLabels);
  return impl_->valueLabels;
}

void VELA_Variable::SetValueLabels(const VELA_VLImplPointer& set) {
  Called("VELA_Variable::SetValueLabels");
  velahost::SharedValueLabels next = HostAccess::SetOf(set);
  if (next && next->Empty()) next = nullptr;
  if (next && next->Type() != impl_->now->type) next = AtWidth(next, impl_->now->type);
  if (next && impl_->file) {
    next = InDocumentOrder(*impl_->file->dictionary.variables[impl_->column], next);
  }
  if (SameValueLabels(next, impl_->now->valueLabels)) return;
  impl_->Change().valueLabels = std::move(next);
  HostAccess::Share(impl_->valueLabels, impl_->now->valueLabels);
}

short VELA_Variable::GetDisplayWidth() const {
  Called("VELA_Variable::GetDisplayWidth");
  return impl_->now->columnWidth;
}

void VELA_Variable::SetDisplayWidth(short width) {
  Called("VELA_Variable::SetDisplayWidth");
  if (width != impl_->now->columnWidth) impl_->Change().columnWidth = width;
}

const DatasourceAttributes& VELA_Variable::GetAttributes() const {
  Called("VELA_Variable::GetAttributes");
  static const DatasourceAttributes none;
  if (!impl_->attributes) impl_->attributes = HostAccess::MakeAttributes(impl_->now->attributes);
  return impl_->attributes ? *impl_->attributes : none;
}

void VELA_Variable::SetAttributes(const DatasourceAttributes& attributes) {
  Called("VELA_Variable::SetAttributes");
  const velahost::CustomAttributes& given = HostAccess::Of(attributes);
  if (SameAttributes(given, impl_->now->attributes)) return;
  velahost::CustomAttributes next = given;
  impl_->Change().attributes = std::move(next);
  impl_->attributes = nullptr;
}
