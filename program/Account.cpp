#include "program/Account.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "program/Output.h"
#include "standalone/Data/DataSource.h"
#include "standalone/Data/HostAccess.h"
#include "standalone/Data/Variable.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;
using Line = std::back_insert_iterator<std::string>;

constexpr std::size_t kLineWidth = 100;

std::string Names(const std::vector<const char*>& properties) {
  return fmt::format("{}", fmt::join(properties, ", "));
}

// How many variables changed in each property.
void CountProperties(const std::vector<Changes::OfVariable>& changed, Line text) {
  for (const char* property : velahost::kPropertyNames) {
    const auto count = std::count_if(
        changed.begin(), changed.end(), [property](const Changes::OfVariable& variable) {
          return std::any_of(
              variable.properties.begin(), variable.properties.end(),
              [property](const char* other) { return std::strcmp(property, other) == 0; });
        });
    if (count > 0) fmt::format_to(text, "  {:<11}  {:>5}\n", property, count);
  }
}

// What changed of each variable, the names in a column of their own.
void ListVariables(const std::vector<Changes::OfVariable>& changed, Line text) {
  constexpr std::size_t kWidestName = 32;
  std::size_t width = 0;
  for (const Changes::OfVariable& variable : changed) {
    width = std::max(width, std::min(WidthOf(variable.variable), kWidestName));
  }
  for (const Changes::OfVariable& variable : changed) {
    fmt::format_to(text, "  {:<{}}  {}\n", Visible(variable.variable), width,
                   Names(variable.properties));
  }
}

// The names, as many on a line as it holds.
void ListNames(const std::vector<std::string>& names, Line text) {
  std::string line;
  for (const std::string& name : names) {
    std::string next = Visible(name);
    if (!line.empty() && WidthOf(line) + 2 + WidthOf(next) > kLineWidth) {
      fmt::format_to(text, "{},\n", line);
      line.clear();
    }
    line += line.empty() ? "  " : ", ";
    line += next;
  }
  if (!line.empty()) fmt::format_to(text, "{}\n", line);
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
  std::string text;
  const Line line(text);
  fmt::format_to(line, "Variables changed: {}\n", changes.changed.size());
  if (!changes.changed.empty()) {
    CountProperties(changes.changed, line);
    fmt::format_to(line, "\n");
    ListVariables(changes.changed, line);
    fmt::format_to(line, "\n");
  }
  fmt::format_to(line, "Variables added: {}\n", changes.added.size());
  ListNames(changes.added, line);
  fmt::format_to(line, "File-level items changed: {}\n",
                 changes.file.empty() ? "none" : Names(changes.file));
  if (written) {
    fmt::format_to(line, "Written to {}\n", Visible(*written));
  } else {
    fmt::format_to(line, "Dry run: nothing written\n");
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
