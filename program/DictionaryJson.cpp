#include "program/DictionaryJson.h"

#include <cmath>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "standalone/Text/Text.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;
using velahost::Dictionary;
using velahost::Text;

constexpr int kIndent = 2;

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
    json.push_back({{"name", set.name.String()},
                    {"label", TextJson(set.label)},
                    {"variables", std::move(members)}});
  }
  return json;
}

Json FileJson(const Dictionary& dictionary) {
  const velahost::FileItems& file = dictionary.file;
  Json documents = Json::array();
  for (const Text& document : file.documents) documents.push_back(document.String());
  Json weight = nullptr;
  if (file.weight >= 0) {
    weight = dictionary.variables[static_cast<std::size_t>(file.weight)]->name.String();
  }
  return {{"label", TextJson(file.label)},
          {"documents", documents},
          {"weight", weight},
          {"attributes", AttributesJson(file.attributes)},
          {"mrsets", SetsJson(dictionary, velahost::SetKind::MultipleResponse)},
          {"varsets", SetsJson(dictionary, velahost::SetKind::Variables)}};
}

Json ValueLabelsJson(const velahost::SharedValueLabels& set) {
  Json json = Json::array();
  if (!set) return json;
  for (const velahost::ValueLabel& pair : *set) {
    json.push_back(
        {{"value", set->IsNumeric() ? NumberJson(pair.number) : Json(pair.string.String())},
         {"label", pair.label.String()}});
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
  return {{"count", missing.Count()}, {"values", values}};
}

Json FormatJson(const std::optional<velahost::Format>& format) {
  if (!format) return nullptr;
  return {
      {"type", format->letters.String()}, {"width", format->width}, {"decimals", format->decimals}};
}

Json DocumentationJson(const std::vector<velahost::DocumentationText>& texts) {
  Json json = Json::object();
  for (const velahost::DocumentationText& text : texts)
    json[NameOf(text.kind)].push_back(text.text);
  return json;
}

Json VariableJson(const velahost::Variable& variable,
                  const std::vector<velahost::DocumentationText>& documentation) {
  const char* level = NameOf(variable.level);
  return {{"name", variable.name.String()},
          {"type", variable.type},
          {"label", TextJson(variable.label)},
          {"valueLabels", ValueLabelsJson(variable.valueLabels)},
          {"missing", MissingJson(variable.missing)},
          {"print", FormatJson(variable.print)},
          {"write", FormatJson(variable.write)},
          {"columnWidth", variable.columnWidth},
          {"level", level == nullptr ? Json(nullptr) : Json(level)},
          {"role", NameOf(variable.role)},
          {"alignment", NameOf(variable.alignment)},
          {"attributes", AttributesJson(variable.attributes)},
          {"documentation", DocumentationJson(documentation)}};
}

std::string Dump(const Json& json) {
  return json.dump(kIndent, ' ', false, Json::error_handler_t::replace);
}

// Returns the text of a value, with each line after the first indented for that depth.
std::string TextAt(std::size_t depth, const Json& json) {
  std::string indented;
  // A line feed in a string is spelled \n, so each that stands here ends a line.
  for (const char c : Dump(json)) {
    indented += c;
    if (c == '\n') indented.append(depth * kIndent, ' ');
  }
  return indented;
}

}  // namespace

DocumentationLookup DocumentationIn(const velahost::CodebookFile& file) {
  return [&file](std::size_t column) { return DocumentationTexts(file, column); };
}

void WriteDictionaryJson(const Dictionary& dictionary, const DocumentationLookup& documentation,
                         const velahost::ByteSink& sink) {
  sink("{\n  \"file\": " + TextAt(1, FileJson(dictionary)) + ",\n  \"variables\": [");
  const char* before = "\n    ";
  for (std::size_t column = 0; column < dictionary.variables.size(); ++column) {
    sink(before + TextAt(2, VariableJson(*dictionary.variables[column], documentation(column))));
    before = ",\n    ";
  }
  sink(dictionary.variables.empty() ? "]\n}\n" : "\n  ]\n}\n");
}

std::string JsonText(const nlohmann::ordered_json& json) { return Dump(json) + "\n"; }

}  // namespace applydic
