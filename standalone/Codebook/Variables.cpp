#include "standalone/Codebook/Variables.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "standalone/Codebook/Categories.h"
#include "standalone/Codebook/Documentation.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/Formats.h"
#include "standalone/Codebook/Labels.h"
#include "standalone/Codebook/Missing.h"
#include "standalone/Codebook/Notes.h"
#include "standalone/Dictionary/Changes.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Tokens.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

constexpr std::string_view kLabelLevel = "variable";

// The attributes of a var that are read, in this order.
enum VarAttribute : std::size_t { kName, kId, kFiles, kWeight, kNature };
constexpr std::array<std::string_view, 5> kVarAttributes = {"name", "ID", "files", "wgt", "nature"};

Level LevelOf(std::string_view name) {
  if (name == "nominal") return Level::Nominal;
  if (name == "ordinal") return Level::Ordinal;
  if (name == "interval" || name == "ratio" || name == "percent") return Level::Scale;
  return Level::None;
}

// How the standard names a level. REQUIRES: a level other than none.
const char* NatureOf(Level level) { return level == Level::Scale ? "interval" : NameOf(level); }

// What the first note of a type says; empty where there is none.
std::string ValueInNote(Element var, std::string_view type) {
  const Element note = FindNote(var, type);
  return std::string(Trim(note.Text()));
}

// Reads the notes of the host's own that a var may have besides that of its write format.
void ReadNotes(Element var, Variable& variable) {
  constexpr int kMost = std::numeric_limits<short>::max();
  variable.columnWidth =
      static_cast<short>(ReadInteger(ValueInNote(var, kColumnWidthNote), 0, kMost).value_or(0));
  variable.role = RoleNamed(ValueInNote(var, kRoleNote)).value_or(variable.role);
  variable.alignment =
      AlignmentNamed(ValueInNote(var, kAlignmentNote)).value_or(variable.alignment);
}

// What a note says, or nothing where it would say the default.
std::optional<std::string> ColumnWidthNote(const Variable& variable) {
  if (variable.columnWidth == 0) return std::nullopt;
  return std::to_string(variable.columnWidth);
}
std::optional<std::string> RoleNote(const Variable& variable) {
  if (variable.role == Role::Input) return std::nullopt;
  return NameOf(variable.role);
}
std::optional<std::string> AlignmentNote(const Variable& variable) {
  if (variable.alignment == DefaultAlignment(variable.type)) return std::nullopt;
  return NameOf(variable.alignment);
}

Text NameOf(std::string_view name, std::string_view id, TextArena& texts) {
  std::string collapsed = Collapse(name);
  if (collapsed.empty()) collapsed = Collapse(id);
  return texts.Add(CutToBytes(collapsed, kNameBytes));
}

// The IDs of files that the locations of a var name.
std::vector<Text> ReadLocations(Element var, TextArena& texts) {
  std::vector<Text> ids;
  for (const Element location : var.All(element::location)) {
    const MarkupText id = location.Attribute("fileid");
    if (id.IsThere()) ids.push_back(texts.Add(Trim(id)));
  }
  return ids;
}

}  // namespace

std::shared_ptr<Variable> VariablePool::Add() {
  if (used_ == kInBlock) {
    block_ = std::make_shared<Block>();
    used_ = 0;
  }
  return {block_, &(*block_)[used_++]};
}

VariableReading ReadVariable(Element var, VariablePool& variables, LabelReader& labels,
                             TextArena& texts) {
  VariableReading reading;
  reading.variable = variables.Add();
  Variable& variable = *reading.variable;
  const auto attributes = var.Attributes(kVarAttributes);
  variable.name = NameOf(attributes[kName], attributes[kId], texts);
  std::string upperCase = UpperCase(variable.name);
  variable.upperCaseName =
      variable.name == std::string_view(upperCase) ? variable.name : texts.Add(upperCase);
  ReadFormats(var, variable, texts);
  variable.alignment = DefaultAlignment(variable.type);

  labels.LookForFirst(var);
  const Element label = labels.Find(var);
  if (label) variable.label = texts.AddCollapsed(label.Text());
  variable.labelLanguages = labels.LanguagesOf(var, label, texts);
  const std::vector<CategoryReading> categories =
      ReadCategories(var, variable.type, labels.Languages(), texts);
  TakeValueLabels(categories, variable, labels, texts);
  for (const CategoryReading& category : categories) {
    if (!category.label) continue;
    if (!category.hasValue) ++reading.valuelessCategories;
    reading.hasTooLongCategory |= category.hasValue && !category.fits && !variable.IsNumeric();
  }
  auto missing = ReadMissing(var, variable.type, categories, texts);
  reading.hasOtherMissing = !missing;
  if (missing) variable.missing = std::move(*missing);
  variable.level = LevelOf(attributes[kNature]);
  ReadNotes(var, variable);
  variable.attributes = ReadAttributes(var, texts);
  variable.documented = DocumentedIn(var);

  reading.id = texts.Add(Trim(attributes[kId]));
  reading.weights = attributes[kWeight].View() == "wgt";
  reading.files = texts.Add(attributes[kFiles]);
  reading.locations = ReadLocations(var, texts);
  return reading;
}

void WriteVariable(Element var, const Variable& read, const Variable& now, PropertySet changed,
                   const Languages& languages, const MarkupPlace& place, Editor& editor) {
  if (changed.Has(Property::Label) && now.label) {
    WriteLabel(var, kLabelLevel, *now.label, now.labelLanguages, languages, editor);
  }
  if (changed.Has(Property::ValueLabels) || changed.Has(Property::Missing)) {
    WriteCategories(var, now, changed, languages, editor);
  }
  if (changed.Has(Property::Missing)) WriteMissing(var, now, editor);
  WriteFormats(var, now, changed, editor);
  if (changed.Has(Property::Level)) editor.SetAttribute(var, "nature", NatureOf(now.level));
  if (changed.Has(Property::ColumnWidth)) {
    WriteNote(var, kColumnWidthNote, ColumnWidthNote(now), editor);
  }
  if (changed.Has(Property::Role)) WriteNote(var, kRoleNote, RoleNote(now), editor);
  if (changed.Has(Property::Alignment)) WriteNote(var, kAlignmentNote, AlignmentNote(now), editor);
  if (changed.Has(Property::Attributes)) WriteAttributes(now.attributes, var, editor);
  if (changed.Has(Property::Documentation)) WriteDocumentation(var, read, now, place, editor);
}

NewElement NewVariable(const Variable& variable, const NewVariablePlace& place,
                       const Languages& languages) {
  static const Brought kNothing;
  const Brought& brought = variable.brought ? *variable.brought : kNothing;
  NewElement var{.element = element::var};
  var.attributes = {{"ID", place.id}, {"name", variable.name.String()}};
  const auto add = [&var](const char* name, std::string value) {
    if (!value.empty()) var.attributes.emplace_back(name, std::move(value));
  };
  add("files", place.files);
  if (place.weights) add("wgt", "wgt");
  add("wgt-var", JoinTokens(place.weightIds));
  add("intrvl", brought.interval.String());
  if (variable.level != Level::None) add("nature", NatureOf(variable.level));

  if (!place.locationFile.empty()) {
    var.children.push_back(
        {.element = element::location, .attributes = {{"fileid", place.locationFile}}});
  }
  AddLabels(var, kLabelLevel, variable.label, variable.labelLanguages, languages);
  AddMissing(variable, var);
  AddCategories(variable, languages, var);
  AddFormats(variable, var);
  const std::pair<std::string_view, std::optional<std::string>> notes[] = {
      {kColumnWidthNote, ColumnWidthNote(variable)},
      {kRoleNote, RoleNote(variable)},
      {kAlignmentNote, AlignmentNote(variable)}};
  for (const auto& [type, text] : notes) {
    if (text) var.children.push_back(NewNote(element::var, type, *text));
  }
  AddAttributes(variable.attributes, var);
  for (const DocumentationElement& element : brought.documentation) {
    var.children.push_back(NewCarried(place.markup, element.markup));
  }
  SortChildren(var, CodebookVocabulary());
  return var;
}

}  // namespace velahost
