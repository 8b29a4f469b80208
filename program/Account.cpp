#include "program/Account.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>

#include "program/Output.h"
#include "standalone/Data/DataSource.h"
#include "standalone/Data/HostAccess.h"
#include "standalone/Data/Variable.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kLineWidth = 100;

std::string Names(const std::vector<const char*>& properties) {
  return fmt::format("{}", fmt::join(properties, ", "));
}

// How many variables changed in each property.
void CountProperties(const std::vector<Changes::OfVariable>& changed, std::string& text) {
  std::map<std::string_view, int> counts;
  for (const Changes::OfVariable& variable : changed) {
    for (const char* property : variable.properties) ++counts[property];
  }
  for (const char* property : velahost::kPropertyNames) {
    if (counts[property] == 0) continue;
    fmt::format_to(std::back_inserter(text), "  {:<11}  {:>5}\n", property, counts[property]);
  }
}

// What changed of each variable, the names in a column of their own.
void ListVariables(const std::vector<Changes::OfVariable>& changed, std::string& text) {
  constexpr std::size_t kWidestName = 32;
  std::size_t width = 0;
  for (const Changes::OfVariable& variable : changed) {
    width = std::max(width, std::min(WidthOf(variable.variable), kWidestName));
  }
  for (const Changes::OfVariable& variable : changed) {
    fmt::format_to(std::back_inserter(text), "  {:<{}}  {}\n", Visible(variable.variable), width,
                   fmt::join(variable.properties, ", "));
  }
}

// The names, as many on a line as it holds.
void ListNames(const std::vector<std::string>& names, std::string& text) {
  std::string line;
  for (const std::string& name : names) {
    std::string next = Visible(name);
    if (!line.empty() && WidthOf(line) + 2 + WidthOf(next) > kLineWidth) {
      text += line + ",\n";
      line.clear();
    }
    line += line.empty() ? "  " : ", ";
    line += next;
  }
  if (!line.empty()) text += line + "\n";
}

}  // namespace

Changes ChangesOf(const VELA_DataSource& dataSource) {
  const VELA_DataSource::Impl& impl = HostAccess::Of(dataSource);
  Changes changes;
  for (std::size_t column = 0; column < impl.variables.size(); ++column) {
    const VELA_Variable::Impl& variable = HostAccess::Of(impl.variables[column]);
    if (column >= impl.readCount) {
      changes.added.push_back(variable.name);
      continue;
    }
    std::vector<const char*> properties =
        velahost::DifferingProperties(variable.AsRead(), variable.now);
    if (!properties.empty()) changes.changed.push_back({variable.name, std::move(properties)});
  }
  changes.file = velahost::DifferingProperties(impl.AsRead(), impl.now);
  return changes;
}

std::string AccountText(const Changes& changes, const std::optional<std::string>& written) {
  std::string text = fmt::format("Variables changed: {}\n", changes.changed.size());
  if (!changes.changed.empty()) {
    CountProperties(changes.changed, text);
    text += '\n';
    ListVariables(changes.changed, text);
    text += '\n';
  }
  text += fmt::format("Variables added: {}\n", changes.added.size());
  ListNames(changes.added, text);
  text += fmt::format("File-level items changed: {}\n",
                      changes.file.empty() ? "none" : Names(changes.file));
  if (written) {
    text += fmt::format("Written to {}\n", Visible(*written));
  } else {
    text += "Dry run: nothing written\n";
  }
  return text;
}

nlohmann::ordered_json OutcomeJson(const std::vector<velahost::Diagnostic>& diagnostics,
                                   const Changes& changes,
                                   const std::optional<std::string>& written) {
  Json issued = Json::array();
  for (const velahost::Diagnostic& diagnostic : diagnostics) {
    issued.push_back({{"level", diagnostic.level},
                      {"show", diagnostic.show},
                      {"text", diagnostic.text},
                      {"arguments", diagnostic.arguments},
                      {"message", diagnostic.message}});
  }
  Json changed = Json::array();
  for (const Changes::OfVariable& variable : changes.changed) {
    changed.push_back({{"variable", variable.variable}, {"properties", variable.properties}});
  }
  return {{"diagnostics", std::move(issued)},
          {"changed", std::move(changed)},
          {"added", changes.added},
          {"file", changes.file},
          {"written", written ? Json(*written) : Json(nullptr)}};
}

}  // namespace applydic
