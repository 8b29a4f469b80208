#include "program/PropertyText.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstddef>

#include "program/Output.h"
#include "standalone/Text/Numbers.h"

namespace applydic {

using velahost::Dictionary;
using velahost::Documentation;
using velahost::Property;
using velahost::Text;

namespace {

// By the value of the enumerator.
constexpr std::array<const char*, velahost::kItemCount<Property>> kProperties = {
    "label", "value labels", "missing values", "print format", "write format", "column width",
    "level", "role",         "alignment",      "attributes",   "documentation"};
constexpr std::array<const char*, velahost::kItemCount<Documentation>> kDocumentation = {
    "imputation", "security",    "embargo", "response unit", "analysis unit", "question",
    "universe",   "description", "coding",  "concept",       "notes"};

std::string StringText(const Text& value) { return "'" + MakeVisible(value) + "'"; }

std::string BoundText(double number) {
  if (std::isinf(number)) return number < 0 ? "lowest" : "highest";
  return velahost::WriteNumber(number);
}

std::optional<std::string> FormatText(const std::optional<velahost::Format>& format) {
  if (!format) return std::nullopt;
  return MakeVisible(TextOf(*format));
}

std::optional<std::string> LevelText(velahost::Level level) {
  const char* const name = NameOf(level);
  if (name == nullptr) return std::nullopt;
  return name;
}

}  // namespace

const char* TitleOf(Property property) { return kProperties[static_cast<std::size_t>(property)]; }

const char* TitleOf(Documentation kind) { return kDocumentation[static_cast<std::size_t>(kind)]; }

std::string TypeText(const velahost::Variable& variable) {
  if (variable.IsNumeric()) return "number";
  return variable.hasStatedWidth ? "string of " + std::to_string(variable.type) : "string";
}

std::string LabelledValueText(const velahost::ValueLabel& pair, bool isNumeric) {
  return isNumeric ? velahost::WriteNumber(pair.number) : StringText(pair.string);
}

std::string MissingText(const velahost::MissingValues& missing) {
  std::vector<std::string> texts;
  if (missing.range) {
    texts.push_back(BoundText(missing.range->first) + " to " + BoundText(missing.range->second));
  }
  for (const double number : missing.numbers) texts.push_back(velahost::WriteNumber(number));
  for (const Text& string : missing.strings) texts.push_back(StringText(string));
  return fmt::format("{}", fmt::join(texts, ", "));
}

std::optional<std::string> PropertyText(const velahost::Variable& variable, Property property) {
  switch (property) {
    case Property::Label:
      if (!variable.label) return std::nullopt;
      return MakeVisible(*variable.label);
    case Property::Missing:
      if (variable.missing.Empty()) return std::nullopt;
      return MissingText(variable.missing);
    case Property::Print:
      return FormatText(variable.print);
    case Property::Write:
      return FormatText(variable.write);
    case Property::ColumnWidth:
      if (variable.columnWidth == 0) return std::nullopt;
      return std::to_string(variable.columnWidth);
    case Property::Level:
      return LevelText(variable.level);
    case Property::Role:
      return NameOf(variable.role);
    case Property::Alignment:
      return NameOf(variable.alignment);
    case Property::ValueLabels:
    case Property::Attributes:
    case Property::Documentation:
      break;
  }
  return std::nullopt;
}

std::vector<std::string> AttributeTexts(const velahost::CustomAttributes& attributes) {
  std::vector<std::string> texts;
  for (const velahost::Attribute& attribute : attributes) {
    const std::vector<std::string> values(attribute.values.begin(), attribute.values.end());
    texts.push_back(MakeVisible(attribute.name) + ": " + JoinVisible(values));
  }
  return texts;
}

std::vector<std::string> LineTexts(std::string_view text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end = 0; (end = text.find('\n', start)) != std::string_view::npos;
       start = end + 1) {
    lines.push_back(MakeVisible(text.substr(start, end - start)));
  }
  lines.push_back(MakeVisible(text.substr(start)));
  return lines;
}

std::vector<std::string> SetTexts(const Dictionary& dictionary, velahost::SetKind kind) {
  std::vector<std::string> texts;
  for (const velahost::VariableSet& set : dictionary.file.SetsOf(kind)) {
    const std::string label = set.label ? " (" + set.label->String() + ")" : "";
    std::vector<std::string> members;
    for (const int member : set.members) {
      members.push_back(dictionary.variables[static_cast<std::size_t>(member)]->name.String());
    }
    texts.push_back(MakeVisible(set.name.String() + label) + ": " + JoinVisible(members));
  }
  return texts;
}

std::optional<std::string> NameText(const Dictionary& dictionary, int column) {
  if (column < 0) return std::nullopt;
  return MakeVisible(dictionary.variables[static_cast<std::size_t>(column)]->name);
}

}  // namespace applydic
