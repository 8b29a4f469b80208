#include "program/DifferenceJson.h"

#include <utility>
#include <vector>

#include "program/JsonObject.h"
#include "program/PropertyJson.h"
#include "standalone/Comparison/ValueLabelDifference.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;
using velahost::Difference;
using velahost::DocumentationText;
using velahost::FileItem;
using velahost::Property;
using velahost::Side;
using velahost::Variable;

Json PairsJson(const std::vector<const velahost::ValueLabel*>& pairs, bool isNumeric) {
  Json json = Json::array();
  for (const velahost::ValueLabel* const pair : pairs) {
    json.push_back(MakeObject("value", LabelledValueJson(*pair, isNumeric),  //
                              "label", pair->label.String()));
  }
  return json;
}

Json ValueLabelsJson(const Variable& before, const Variable& now) {
  const velahost::ValueLabelDifference difference =
      DifferenceBetween(before.valueLabels, now.valueLabels);
  Json changed = Json::array();
  for (const auto& [old, pair] : difference.changed) {
    changed.push_back(MakeObject("value", LabelledValueJson(*pair, now.IsNumeric()),  //
                                 "old", old->label.String(),                          //
                                 "new", pair->label.String()));
  }
  return MakeObject("added", PairsJson(difference.added, now.IsNumeric()),         //
                    "removed", PairsJson(difference.removed, before.IsNumeric()),  //
                    "changed", std::move(changed),                                 //
                    "reordered", difference.isReordered);
}

// The values of one side, in the properties that differ.
Json ValuesJson(const Difference::OfVariable& difference, const Side& side, std::size_t column) {
  const Variable& variable = *side.dictionary.variables[column];
  Json json = Json::object();
  if (difference.isRenamed) json["name"] = variable.name.String();
  if (difference.isRetyped) json["type"] = variable.type;
  std::vector<DocumentationText> documentation;
  if (difference.properties.Has(Property::Documentation))
    documentation = side.documentation(column);
  for (const Property property : difference.properties) {
    json[NameOf(property)] = PropertyJson(variable, property, documentation);
  }
  return json;
}

Json VariableJson(const Difference::OfVariable& difference, const Side& before, const Side& now,
                  LabelPairs pairs) {
  const Variable& old = *before.dictionary.variables[difference.oldColumn];
  const Variable& variable = *now.dictionary.variables[difference.newColumn];
  Json values = ValuesJson(difference, now, difference.newColumn);
  Json properties = Json::array();
  for (const auto& [name, value] : values.items()) properties.push_back(name);
  Json json = MakeObject("variable", variable.name.String(),                           //
                         "properties", std::move(properties),                          //
                         "old", ValuesJson(difference, before, difference.oldColumn),  //
                         "new", std::move(values));
  if (pairs == LabelPairs::Compared && difference.properties.Has(Property::ValueLabels)) {
    json["valueLabels"] = ValueLabelsJson(old, variable);
  }
  return json;
}

Json ItemsJson(velahost::FileItemSet items, const velahost::Dictionary& dictionary) {
  Json json = Json::object();
  for (const FileItem item : items) json[NameOf(item)] = ItemJson(dictionary, item);
  return json;
}

}  // namespace

void WriteChanged(const Difference& difference, const Side& before, const Side& now,
                  LabelPairs pairs, JsonStream& json) {
  json.BeginArray("changed");
  for (const Difference::OfVariable& changed : difference.changed) {
    json.Element(VariableJson(changed, before, now, pairs));
  }
  json.EndArray();
}

void WriteFileItems(velahost::FileItemSet items, const velahost::Dictionary& before,
                    const velahost::Dictionary& now, JsonStream& json) {
  json.Member("file", items.Names());
  json.Member("fileValues", {{"old", ItemsJson(items, before)}, {"new", ItemsJson(items, now)}});
}

}  // namespace applydic
