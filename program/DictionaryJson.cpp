#include "program/DictionaryJson.h"

#include <numeric>

#include "program/JsonObject.h"
#include "program/JsonStream.h"
#include "program/PropertyJson.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;
using velahost::FileItem;
using velahost::Property;

Json FileJson(const velahost::Dictionary& dictionary) {
  Json json;
  for (const FileItem item : velahost::FileItemSet::All()) {
    json[NameOf(item)] = ItemJson(dictionary, item);
  }
  return json;
}

Json VariableJson(const velahost::Variable& variable,
                  const std::vector<velahost::DocumentationText>& documentation) {
  Json json = MakeObject("name", variable.name.String(), "type", variable.type);
  for (const Property property : velahost::PropertySet::All()) {
    json[NameOf(property)] = PropertyJson(variable, property, documentation);
  }
  return json;
}

}  // namespace

void WriteDictionaryJson(const velahost::Dictionary& dictionary,
                         const velahost::DocumentationLookup& documentation,
                         const velahost::ByteSink& sink) {
  std::vector<std::size_t> all(dictionary.variables.size());
  std::iota(all.begin(), all.end(), 0);
  WriteDictionaryJson(dictionary, all, documentation, sink);
}

void WriteDictionaryJson(const velahost::Dictionary& dictionary,
                         const std::vector<std::size_t>& columns,
                         const velahost::DocumentationLookup& documentation,
                         const velahost::ByteSink& sink) {
  JsonStream json(sink);
  json.Member("file", FileJson(dictionary));
  json.BeginArray("variables");
  for (const std::size_t column : columns) {
    json.Element(VariableJson(*dictionary.variables[column], documentation(column)));
  }
  json.EndArray();
  json.End();
}

}  // namespace applydic
