#include "program/DictionaryJson.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <vector>

#include "standalone/Data/Attributes.h"
#include "standalone/Data/DataSource.h"
#include "standalone/Data/HostAccess.h"
#include "standalone/Data/ValueLabelSet.h"
#include "standalone/Data/Variable.h"
#include "standalone/Text/Utf8.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

Json TextJson(const std::optional<std::string>& text) { return text ? Json(*text) : Json(nullptr); }

// A whole number without a point; an infinite one, the open end of a range, as null.
Json NumberJson(double number) {
  constexpr double kIntegersEnd = 9223372036854775808.0;  // 2^63
  if (std::isinf(number)) return nullptr;
  if (number == std::trunc(number) && std::abs(number) < kIntegersEnd) {
    return static_cast<std::int64_t>(number);
  }
  return number;
}

Json StringJson(const std::string& value) {
  return std::string(velahost::TrimTrailingBlanks(value));
}

Json AttributesJson(const DatasourceAttributes& attributes) {
  const std::vector<velahost::Attribute>& all = HostAccess::Of(attributes).attributes;
  Json::object_t object;
  object.reserve(all.size());
  // No name stands there twice, so none is looked for: an ordered object looks through all it has.
  for (const velahost::Attribute& attribute : all) {
    object.emplace_back(attribute.name, attribute.values);
  }
  return object;
}

Json SetsJson(const std::vector<VariableSet>& sets) {
  Json json = Json::array();
  for (const VariableSet& set : sets) {
    const bool hasLabel = set.flags[VariableSet::HasLabel];
    json.push_back({{"name", set.name},
                    {"label", hasLabel ? Json(set.label) : Json(nullptr)},
                    {"variables", set.members}});
  }
  return json;
}

Json FileJson(const VELA_DataSource::Impl& dataSource) {
  const velahost::FileProperties& file = dataSource.now;
  Json documents = Json::array();
  for (const DSDocument& document : file.documents) {
    documents.push_back(HostAccess::TextOf(document));
  }
  Json weight = nullptr;
  if (file.weight >= 0) {
    weight = HostAccess::Of(dataSource.variables[static_cast<std::size_t>(file.weight)]).name;
  }
  return {{"label", TextJson(file.label)},
          {"documents", documents},
          {"weight", weight},
          {"attributes", AttributesJson(file.attributes)},
          {"mrsets", SetsJson(file.sets[VarSetsMrSets])},
          {"varsets", SetsJson(file.sets[VarSetsVariableSets])}};
}

Json ValueLabelsJson(const VELA_VLImplPointer& handle) {
  Json json = Json::array();
  const VELA_VLImpl* set = HostAccess::Of(handle);
  if (set == nullptr) return json;
  for (int i = 0; i < set->Size(); ++i) {
    json.push_back(
        {{"value", set->Type() == 0 ? NumberJson(set->NumberAt(i)) : StringJson(set->StringAt(i))},
         {"label", set->LabelAt(i)}});
  }
  return json;
}

Json MissingJson(const velahost::MissingValues& missing, int type) {
  Json values = Json::array();
  for (std::size_t i = 0; i < static_cast<std::size_t>(std::abs(missing.count)); ++i) {
    values.push_back(type == 0 ? NumberJson(missing.numbers[i]) : StringJson(missing.strings[i]));
  }
  return {{"count", missing.count}, {"values", values}};
}

Json FormatJson(const velahost::Format& format) {
  return {{"type", velahost::NameOf(format.type)},
          {"width", format.width},
          {"decimals", format.decimals}};
}

Json VariableJson(const VELA_Variable::Impl& variable) {
  const velahost::VariableProperties& now = variable.now;
  const char* level = velahost::NameOf(now.level);
  return {{"name", variable.name},
          {"type", variable.type},
          {"label", TextJson(now.label)},
          {"valueLabels", ValueLabelsJson(now.valueLabels)},
          {"missing", MissingJson(now.missing, variable.type)},
          {"print", FormatJson(now.print)},
          {"write", FormatJson(now.write)},
          {"columnWidth", now.columnWidth},
          {"level", level == nullptr ? Json(nullptr) : Json(level)},
          {"role", velahost::NameOf(now.role)},
          {"alignment", velahost::NameOf(now.alignment)},
          {"attributes", AttributesJson(now.attributes)}};
}

std::string Dump(const Json& json) {
  return json.dump(kIndent, ' ', false, Json::error_handler_t::replace);
}

// The text of a value, each line behind the first indented to stand so deep in another value.
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

void WriteDictionaryJson(const VELA_DataSource& dataSource, const velahost::ByteSink& sink) {
  const VELA_DataSource::Impl& impl = HostAccess::Of(dataSource);
  sink("{\n  \"file\": " + TextAt(1, FileJson(impl)) + ",\n  \"variables\": [");
  const char* before = "\n    ";
  for (const VELA_Variable& variable : impl.variables) {
    sink(before + TextAt(2, VariableJson(HostAccess::Of(variable))));
    before = ",\n    ";
  }
  sink(impl.variables.empty() ? "]\n}\n" : "\n  ]\n}\n");
}

std::string JsonText(const nlohmann::ordered_json& json) { return Dump(json) + "\n"; }

}  // namespace applydic
