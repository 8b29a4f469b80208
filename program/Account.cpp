#include "program/Account.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>

#include "program/DifferenceJson.h"
#include "program/JsonStream.h"
#include "program/Output.h"
#include "standalone/Comparison/Difference.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;
using velahost::Changes;
using velahost::Dictionary;
using velahost::Property;
using velahost::PropertySet;

constexpr std::size_t kLineWidth = 100;

std::string NameAt(const Dictionary& dictionary, std::size_t column) {
  return dictionary.variables[column]->name.String();
}

// Adds how many variables changed in each property.
void CountProperties(const std::vector<Changes::OfVariable>& changed, std::string& text) {
  std::array<std::size_t, velahost::kItemCount<Property>> counts = {};
  for (const Changes::OfVariable& variable : changed) {
    for (std::size_t i = 0; i < counts.size(); ++i) {
      if (variable.properties.Has(static_cast<Property>(i))) ++counts[i];
    }
  }
  for (std::size_t i = 0; i < counts.size(); ++i) {
    if (counts[i] == 0) continue;
    fmt::format_to(std::back_inserter(text), "  {:<13}  {:>5}\n", NameOf(static_cast<Property>(i)),
                   counts[i]);
  }
}

// Adds a line for each changed variable: its name, in a column, and the properties that changed.
void ListVariables(const Outcome& outcome, std::string& text) {
  constexpr std::size_t kWidestName = 32;
  std::size_t width = 0;
  for (const Changes::OfVariable& variable : outcome.changes.changed) {
    width = std::max(
        width, std::min(WidthOf(outcome.dictionary.variables[variable.column]->name), kWidestName));
  }
  PropertySet listed;  // what names says: most variables change in the same properties
  std::string names;
  for (const Changes::OfVariable& variable : outcome.changes.changed) {
    if (variable.properties != listed) {
      listed = variable.properties;
      names = fmt::to_string(fmt::join(listed.Names(), ", "));
    }
    fmt::format_to(std::back_inserter(text), "  {:<{}}  {}\n",
                   MakeVisible(outcome.dictionary.variables[variable.column]->name), width, names);
  }
}

std::vector<std::string> AddedNames(const Outcome& outcome) {
  std::vector<std::string> names;
  for (std::size_t i = outcome.changes.firstAdded; i < outcome.dictionary.variables.size(); ++i) {
    names.push_back(NameAt(outcome.dictionary, i));
  }
  return names;
}

// Adds the names, as many on a line as fit.
void ListNames(const std::vector<std::string>& names, std::string& text) {
  std::string line;
  for (const std::string& name : names) {
    std::string next = MakeVisible(name);
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

std::string AccountText(const Outcome& outcome) {
  const Changes& changes = outcome.changes;
  std::string text = fmt::format("Variables changed: {}\n", changes.changed.size());
  if (!changes.changed.empty()) {
    CountProperties(changes.changed, text);
    text += '\n';
    ListVariables(outcome, text);
    text += '\n';
  }
  const std::vector<std::string> added = AddedNames(outcome);
  text += fmt::format("Variables added: {}\n", added.size());
  ListNames(added, text);
  text += changes.file.Empty() ? "File-level items changed: none\n"
                               : fmt::format("File-level items changed: {}\n",
                                             fmt::join(changes.file.Names(), ", "));
  if (outcome.written) {
    text += fmt::format("Written to {}\n", MakeVisible(*outcome.written));
  } else {
    text += "Dry run: nothing written\n";
  }
  return text;
}

namespace {

Json DiagnosticJson(const velahost::Diagnostic& diagnostic) {
  return {{"level", static_cast<int>(diagnostic.level)},
          {"show", diagnostic.show},
          {"text", diagnostic.message.text},
          {"arguments", diagnostic.message.arguments},
          {"message", diagnostic.shown}};
}

}  // namespace

void WriteOutcomeJson(const std::vector<velahost::Diagnostic>& diagnostics,
                      const std::optional<Outcome>& outcome, const velahost::ByteSink& sink) {
  static const velahost::CodebookFile kNone;
  static const Outcome kNothing = {kNone, {}, {}, {}, {}, {}};
  const Outcome& result = outcome ? *outcome : kNothing;
  const Dictionary& before = result.working.dictionary;
  JsonStream json(sink);
  json.BeginArray("diagnostics");
  for (const velahost::Diagnostic& diagnostic : diagnostics) {
    json.Element(DiagnosticJson(diagnostic));
  }
  json.EndArray();
  WriteChanged(DifferenceOf(result.changes, result.dictionary), SideOf(result.working),
               SideAfter(result.working, result.dictionary), json);
  json.Member("added", AddedNames(result));
  WriteFileItems(result.changes.file, before, result.dictionary, json);
  json.Member("notPaired", result.notPaired);
  json.Member("notReached", result.notReached);
  json.Member("written", result.written ? Json(*result.written) : Json(nullptr));
  json.End();
}

}  // namespace applydic
