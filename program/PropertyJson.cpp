#include "program/PropertyJson.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

#include "program/JsonObject.h"
#include "standalone/Text/Text.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;
using velahost::Dictionary;
using velahost::FileItem;
using velahost::Property;
using velahost::Text;

Json TextJson(const std::optional<Text>& text) {
  return text ? Json(text->String()) : Json(nullptr);
}

// Writes whole numbers without a point, and infinite ones, the open ends of ranges, as null.
Json NumberJson(double number) {
  constexpr double kIntegersEnd = 9223372036854775808.0;  // 2^63
  if (std::isinf(number)) return nullptr;
  if (number == std::trunc(number) && std::abs(number) < kIntegersEnd) {
    return static_cast<std::int64_t>(number);
  }
  return number;
}

Json AttributesJson(const velahost::CustomAttributes& attributes) {
  Json::object_t object;
  object.reserve(attributes.size());
  // Add without a search for the name, which takes linear time: no attribute stands there twice.
  for (const velahost::Attribute& attribute : attributes) {
    Json values = Json::array();
    for (const Text& value : attribute.values) values.push_back(value.String());
    object.emplace_back(attribute.name.String(), std::move(values));
  }
  return object;
}

Json SetsJson(const Dictionary& dictionary, velahost::SetKind kind) {
  Json json = Json::array();
  for (const velahost::VariableSet& set : dictionary.file.SetsOf(kind)) {
    Json members = Json::array();
    for (const int member : set.members) {
      members.push_back(dictionary.variables[static_cast<std::size_t>(member)]->name.String());
    }
    json.push_back(MakeObject("name", set.name.String(),     //
                              "label", TextJson(set.label),  //
                              "variables", std::move(members)));
  }
  return json;
}

Json DocumentsJson(const std::vector<Text>& documents) {
  Json json = Json::array();
  for (const Text& document : documents) json.push_back(document.String());
  return json;
}

Json WeightJson(const Dictionary& dictionary) {
  const int weight = dictionary.file.weight;
  if (weight < 0) return nullptr;
  return dictionary.variables[static_cast<std::size_t>(weight)]->name.String();
}

Json ValueLabelsJson(const velahost::SharedValueLabels& set) {
  Json json = Json::array();
  if (!set) return json;
  for (const velahost::ValueLabel& pair : *set) {
    json.push_back(MakeObject("value", LabelledValueJson(pair, set->IsNumeric()),  //
                              "label", pair.label.String()));
  }
  return json;
}

Json MissingJson(const velahost::MissingValues& missing) {
  Json values = Json::array();
  if (missing.range) {
    values.push_back(NumberJson(missing.range->first));
    values.push_back(NumberJson(missing.range->second));
  }
  for (const double number : missing.numbers) values.push_back(NumberJson(number));
  for (const Text& string : missing.strings) values.push_back(string.String());
  return MakeObject("count", missing.Count(), "values", std::move(values));
}

Json FormatJson(const std::optional<velahost::Format>& format) {
  if (!format) return nullptr;
  return MakeObject("type", format->letters.String(),  //
                    "width", format->width,            //
                    "decimals", format->decimals);
}

Json DocumentationJson(const std::vector<velahost::DocumentationText>& texts) {
  Json json = Json::object();
  for (const velahost::DocumentationText& text : texts)
    json[NameOf(text.kind)].push_back(text.text);
  return json;
}

Json LevelJson(velahost::Level level) {
  const char* const name = NameOf(level);
  return name == nullptr ? Json(nullptr) : Json(name);
}

}  // namespace

Json LabelledValueJson(const velahost::ValueLabel& pair, bool isNumeric) {
  return isNumeric ? NumberJson(pair.number) : Json(pair.string.String());
}

Json PropertyJson(const velahost::Variable& variable, Property property,
                  const std::vector<velahost::DocumentationText>& documentation) {
  switch (property) {
    case Property::Label:
      return TextJson(variable.label);
    case Property::ValueLabels:
      return ValueLabelsJson(variable.valueLabels);
    case Property::Missing:
      return MissingJson(variable.missing);
    case Property::Print:
      return FormatJson(variable.print);
    case Property::Write:
      return FormatJson(variable.write);
    case Property::ColumnWidth:
      return variable.columnWidth;
    case Property::Level:
      return LevelJson(variable.level);
    case Property::Role:
      return NameOf(variable.role);
    case Property::Alignment:
      return NameOf(variable.alignment);
    case Property::Attributes:
      return AttributesJson(variable.attributes);
    case Property::Documentation:
      return DocumentationJson(documentation);
  }
  return nullptr;
}

Json ItemJson(const Dictionary& dictionary, FileItem item) {
  switch (item) {
    case FileItem::Label:
      return TextJson(dictionary.file.label);
    case FileItem::Documents:
      return DocumentsJson(dictionary.file.documents);
    case FileItem::Weight:
      return WeightJson(dictionary);
    case FileItem::Attributes:
      return AttributesJson(dictionary.file.attributes);
    case FileItem::MrSets:
      return SetsJson(dictionary, velahost::SetKind::MultipleResponse);
    case FileItem::VarSets:
      return SetsJson(dictionary, velahost::SetKind::Variables);
  }
  return nullptr;
}

}  // namespace applydic
