#include "standalone/Host/Variables.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/Host/Calls.h"
#include "standalone/Host/Cells.h"
#include "standalone/Host/DataSources.h"
#include "standalone/Host/Host.h"
#include "standalone/Host/HostAccess.h"
#include "standalone/Text/Hash.h"
#include "standalone/Text/Utf8.h"

// Every setting makes the new value first, from what may be the variable's own property, and
// changes the variable last, by what cannot fail. A value that is there already changes nothing:
// only what a command really changed counts as changed and is written.

using velahost::Called;
using velahost::DocumentationPart;
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

// The number by which the library knows a format that is not stated. It is a format of the host's
// own: to set it changes nothing.
constexpr int kFormatUnstated = 3;

// The letters of formats and the numbers that the library knows them by: the place among the
// letters, from 1.
struct FormatTypes {
  std::vector<Text> letters = {Text("A"), Text("HEX"), Text()};
  velahost::TextMap<int> numbers = {{letters[0].String(), VELA_Variable::FormatString},
                                    {letters[1].String(), VELA_Variable::FormatHexString}};
};

FormatTypes& Types() {
  static FormatTypes types;
  return types;
}

VELA_Variable::FormatType TypeOf(const Format& format) {
  FormatTypes& types = Types();
  auto found = types.numbers.find(format.letters.View());
  if (found == types.numbers.end()) {
    types.letters.push_back(format.letters);
    found = types.numbers.emplace(format.letters.String(), static_cast<int>(types.letters.size()))
                .first;
  }
  return static_cast<VELA_Variable::FormatType>(found->second);
}

void GetParts(const std::optional<Format>& format, VELA_Variable::FormatType& type, int& width,
              int& decimals) {
  type = format ? TypeOf(*format) : static_cast<VELA_Variable::FormatType>(kFormatUnstated);
  width = format ? format->width : 0;
  decimals = format ? format->decimals : 0;
}

// The format that the parts are, if the variable can be given it: a string only where its width is
// stated, and no format that is too wide to be written.
std::optional<Format> SettableFormat(const Variable& variable, VELA_Variable::FormatType type,
                                     int width, int decimals) {
  const bool hasWidth = variable.IsNumeric() || variable.hasStatedWidth;
  if (type == kFormatUnstated || !hasWidth || width > velahost::kMostWidth) return std::nullopt;
  return Format{Types().letters[static_cast<std::size_t>(type) - 1], width, decimals};
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
  const Variable& now = *impl_->now;
  if (!now.label) return nullptr;
  velahost::Host::Current().givenLabel = {*now.label, now.labelLanguages};
  return now.label->CString();
}

void VELA_Variable::SetLabel(const char* label) {
  Called("VELA_Variable::SetLabel");
  if (impl_->now->label && *impl_->now->label == label) return;
  // The text that was given last comes back with its language.
  const velahost::Host::GivenLabel& given = velahost::Host::Current().givenLabel;
  const bool isGiven = given.text.CString() == label;
  Text next = isGiven ? given.text : Text(label);
  const std::string_view language = isGiven ? given.languages.Own() : "";
  velahost::LabelLanguages languages;
  const auto others = impl_->now->labelLanguages.Others();
  if (!language.empty() || !others.empty()) {
    velahost::TextArena texts;
    languages = velahost::LabelLanguages(language, others, texts);
  }
  Variable& variable = impl_->Change();
  variable.label = std::move(next);
  variable.labelLanguages = std::move(languages);
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
  const auto next = SettableFormat(*impl_->now, type, width, decimals);
  if (next && next != impl_->now->print) impl_->Change().print = next;
}

void VELA_Variable::GetWriteFormatEx(FormatType& type, int& width, int& decimals) const {
  Called("VELA_Variable::GetWriteFormatEx");
  GetParts(impl_->now->write, type, width, decimals);
}

void VELA_Variable::SetWriteFormat(FormatType type, int width, int decimals) {
  Called("VELA_Variable::SetWriteFormat");
  const auto next = SettableFormat(*impl_->now, type, width, decimals);
  if (next && next != impl_->now->write) impl_->Change().write = next;
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

namespace {

// The most that the library carries, and how many of them are left beside a range.
constexpr std::size_t kMostValues = 3;
constexpr std::size_t kMostBesideRange = 1;

// The numbers of a list that is short: the library carries it whole, so its numbers are cells
// enough. None of any other list.
std::vector<const double*> ShortListOf(const MissingValues& missing) {
  std::vector<const double*> numbers;
  if (!missing.strings.empty() || std::abs(missing.Count()) >= static_cast<int>(kMostValues)) {
    return numbers;
  }
  if (missing.range) numbers = {&missing.range->first, &missing.range->second};
  for (const double& number : missing.numbers) numbers.push_back(&number);
  return numbers;
}

// The list that the library carries in these cells of a variable of numbers, if it is a short one.
MissingValues ShortListIn(int count, const OBS* first, const OBS* second) {
  MissingValues missing;
  if (count < 0) missing.range = {velahost::NumberIn(first), velahost::NumberIn(second)};
  if (count > 0) missing.numbers.push_back(velahost::NumberIn(first));
  if (count > 1) missing.numbers.push_back(velahost::NumberIn(second));
  return missing;
}

// The cells that the library is given of any other list. Of strings the longest come first: so the
// library's test of lengths sees them.
std::vector<velahost::Cell> CellsOf(const MissingValues& missing, int width) {
  const velahost::Cell::Origin origin{.missing = &missing};
  const std::size_t singles = missing.numbers.size() + missing.strings.size();
  const std::size_t bounds = missing.range ? 2 : 0;
  std::vector<velahost::Cell> cells(
      bounds + std::min(singles, missing.range ? kMostBesideRange : kMostValues));
  if (missing.range) {
    cells[0].SetNumber(missing.range->first, origin);
    cells[1].SetNumber(missing.range->second, origin);
  }
  std::vector<std::string_view> strings(missing.strings.begin(), missing.strings.end());
  const std::size_t longest = std::min(strings.size(), kMostValues);
  if (strings.size() > longest) {
    std::partial_sort(strings.begin(), strings.begin() + static_cast<std::ptrdiff_t>(longest),
                      strings.end(), [](auto a, auto b) { return a.size() > b.size(); });
  }
  for (std::size_t i = bounds; i < cells.size(); ++i) {
    if (missing.strings.empty()) {
      cells[i].SetNumber(missing.numbers[i - bounds], origin);
    } else {
      cells[i].SetString(strings[i - bounds], width, origin);
    }
  }
  return cells;
}

}  // namespace

// One to three single values; -2 is a range, -3 a range and a value after it. Where there may be
// more values, the cells know the whole list, and SetMissingValues sets it.
int VELA_Variable::GetMissingValues(const OBS*& first, const OBS*& second,
                                    const OBS*& third) const {
  Called("VELA_Variable::GetMissingValues");
  const MissingValues& missing = impl_->now->missing;
  if (missing.Empty()) return 0;
  const std::array<const OBS**, kMostValues> pointers = {&first, &second, &third};
  if (const auto numbers = ShortListOf(missing); !numbers.empty()) {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      *pointers[i] = reinterpret_cast<const OBS*>(numbers[i]);
    }
    return missing.Count();
  }
  if (!impl_->missingCells) {
    impl_->missingCells = std::make_unique<Impl::MissingCells>(
        Impl::MissingCells{impl_->now, CellsOf(missing, impl_->now->type)});
  }
  const std::vector<velahost::Cell>& cells = impl_->missingCells->cells;
  for (std::size_t i = 0; i < cells.size(); ++i) *pointers[i] = cells[i].Address();
  const auto count = static_cast<int>(cells.size());
  return missing.range ? -count : count;
}

void VELA_Variable::SetMissingValues(int count, const OBS* first, const OBS* second,
                                     const OBS* /*third*/) {
  Called("VELA_Variable::SetMissingValues");
  const bool isShort = impl_->now->IsNumeric() && std::abs(count) < static_cast<int>(kMostValues);
  MissingValues next;
  if (isShort) {
    next = ShortListIn(count, first, second);
  } else if (count != 0) {
    next = *velahost::OriginOf(first).missing;
  }
  if (next == impl_->now->missing) return;
  if (impl_->file) {
    next = InDocumentOrder(*impl_->file->dictionary.variables[impl_->column], next);
  }
  impl_->Change().missing = std::move(next);
  impl_->missingCells = nullptr;
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
  if (!impl_->attributes) {
    impl_->attributes =
        HostAccess::MakeAttributes(impl_->now->attributes, impl_->DocumentationNow());
  }
  return impl_->attributes ? *impl_->attributes : none;
}

// What documents comes with the attributes: of the kinds that the variable lacks. Where nothing
// else comes, the variable keeps its attributes.
void VELA_Variable::SetAttributes(const DatasourceAttributes& attributes) {
  Called("VELA_Variable::SetAttributes");
  const velahost::CustomAttributes& given = HostAccess::Of(attributes);
  const std::vector<DocumentationPart>& parts = HostAccess::DocumentationOf(attributes);
  auto brought = std::make_unique<velahost::Brought>();
  velahost::DocumentationSet documented = impl_->now->documented;
  for (const DocumentationPart& part : parts) {
    DocumentationPart lacking = part;
    lacking.kinds = part.kinds.Without(documented);
    std::vector<velahost::DocumentationElement> elements = ElementsOf(lacking);
    const velahost::CodebookFile* const into =
        impl_->owner == nullptr ? impl_->file.get() : impl_->owner->readFrom.get();
    LeaveOut(elements, into, impl_->now->name.String());
    for (velahost::DocumentationElement& element : elements) {
      documented.Add(element.kind);
      brought->documentation.push_back(std::move(element));
    }
  }
  const bool keeps = given.empty() && !parts.empty();
  const bool isSame = keeps || SameAttributes(given, impl_->now->attributes);
  if (isSame && brought->documentation.empty()) return;
  velahost::CustomAttributes next = isSame ? impl_->now->attributes : given;
  if (const auto& before = impl_->now->brought) {
    brought->interval = before->interval;
    brought->weightNames = before->weightNames;
    brought->documentation.insert(brought->documentation.begin(), before->documentation.begin(),
                                  before->documentation.end());
  }
  const bool bringsAny = !brought->documentation.empty() || impl_->now->brought;
  std::shared_ptr<const velahost::Brought> nextBrought;
  if (bringsAny) nextBrought = std::move(brought);
  Variable& variable = impl_->Change();
  variable.attributes = std::move(next);
  variable.documented = documented;
  variable.brought = std::move(nextBrought);
  impl_->attributes = nullptr;
}
