#include "tests/cases/Notation.h"

#include <algorithm>

#include "host/Output.h"

namespace cases {
namespace {

std::string Quoted(const Json& text) {
  std::string quoted = "\"";
  for (const char c : text.get<std::string>()) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + "\"";
}

std::string ValueText(const Json& value) {
  return value.is_string() ? Quoted(value) : value.dump();
}

std::string FormatText(const Json& format) {
  const std::string decimals = format["decimals"].dump();
  return format["type"].get<std::string>() + format["width"].dump() +
         (decimals == "0" ? "" : "." + decimals);
}

std::string LabelsText(const Json& pairs) {
  std::string text;
  for (const Json& pair : pairs) {
    text += (text.empty() ? "" : " ") + ValueText(pair["value"]) + " " + Quoted(pair["label"]);
  }
  return "{" + text + "}";
}

std::string MissingText(const Json& missing) {
  const Json& values = missing["values"];
  const bool hasRange = missing["count"] < 0;
  std::string text;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::string open = i == 0 ? "lo" : "hi";
    const std::string separator = i == 0 ? "" : hasRange && i == 1 ? ":" : " ";
    text += separator + (values[i].is_null() ? open : ValueText(values[i]));
  }
  return "missing(" + text + ")";
}

std::string AttributesText(const Json& attributes) {
  std::string text;
  for (const auto& [name, values] : attributes.items()) {
    text += (text.empty() ? "" : " ") + name;
    for (const Json& value : values) text += " " + Quoted(value);
  }
  return "attr(" + text + ")";
}

std::string DocumentationText(const Json& documentation) {
  std::string text;
  for (const auto& [element, texts] : documentation.items()) {
    for (const Json& value : texts) {
      text += (text.empty() ? "" : " ") + element + " " + Quoted(value);
    }
  }
  return "doc(" + text + ")";
}

// The properties of a variable that differ from another's, each with a blank before it.
std::string PropertiesText(const Json& variable, const Json& other) {
  std::string text;
  const auto add = [&](const char* property, const std::string& key, auto render) {
    if (variable[property] != other[property]) text += " " + key + render(variable[property]);
  };
  const auto word = [](const Json& value) {
    return value.is_string() ? value.get<std::string>() : value.dump();
  };
  add("print", "", FormatText);
  add("write", "write=", FormatText);
  add("label", "", ValueText);
  add("valueLabels", "", LabelsText);
  add("missing", "", MissingText);
  add("columnWidth", "width=", word);
  add("level", "level=", word);
  add("role", "role=", word);
  add("alignment", "align=", word);
  add("attributes", "", AttributesText);
  add("documentation", "", DocumentationText);
  return text;
}

// The whole variable: what differs from one of its type for which nothing is given.
std::string VariableText(const Json& variable) {
  const Json nothing = {{"print", nullptr},
                        {"write", variable["print"]},
                        {"label", nullptr},
                        {"valueLabels", Json::array()},
                        {"missing", {{"count", 0}, {"values", Json::array()}}},
                        {"columnWidth", 0},
                        {"level", nullptr},
                        {"role", "input"},
                        {"alignment", variable["type"] == 0 ? "right" : "left"},
                        {"attributes", Json::object()},
                        {"documentation", Json::object()}};
  const std::string unstated = variable["type"] == 0 ? " -" : " A-";
  const bool hasFormat = !variable["print"].is_null();
  return variable["name"].get<std::string>() + (hasFormat ? "" : unstated) +
         PropertiesText(variable, nothing);
}

// Whether two lists have the same sets, in whatever order.
bool AreSameSets(const Json& a, const Json& b) {
  return a.size() == b.size() && std::is_permutation(a.begin(), a.end(), b.begin());
}

void AddSets(const std::string& kind, const Json& sets, Lines& lines) {
  if (sets.empty()) lines.push_back("file " + kind + "s none");
  for (const Json& set : sets) {
    std::string members;
    for (const Json& member : set["variables"]) {
      members += (members.empty() ? "" : " ") + member.get<std::string>();
    }
    std::string line = "file " + kind + " " + set["name"].get<std::string>();
    if (!set["label"].is_null()) line += " " + Quoted(set["label"]);
    lines.push_back(line.append(" (").append(members).append(")"));
  }
}

// The items of a file that differ from another's.
void AddFileLines(const Json& file, const Json& other, Lines& lines) {
  const auto differs = [&](const char* item) { return file[item] != other[item]; };
  if (differs("label")) lines.push_back("file label " + ValueText(file["label"]));
  if (differs("documents")) {
    if (file["documents"].empty()) lines.push_back("file documents none");
    for (const Json& text : file["documents"]) lines.push_back("file document " + Quoted(text));
  }
  if (differs("weight")) lines.push_back("file weight " + file["weight"].get<std::string>());
  if (differs("attributes")) lines.push_back("file " + AttributesText(file["attributes"]));
  if (!AreSameSets(file["mrsets"], other["mrsets"])) AddSets("mrset", file["mrsets"], lines);
  if (!AreSameSets(file["varsets"], other["varsets"])) AddSets("varset", file["varsets"], lines);
}

}  // namespace

Lines DictionaryLines(const Json& dictionary) {
  const Json nothing = {{"label", nullptr},        {"documents", Json::array()},
                        {"weight", nullptr},       {"attributes", Json::object()},
                        {"mrsets", Json::array()}, {"varsets", Json::array()}};
  Lines lines;
  AddFileLines(dictionary["file"], nothing, lines);
  for (const Json& variable : dictionary["variables"]) lines.push_back(VariableText(variable));
  return lines;
}

Lines ChangeLines(const Json& before, const Json& after) {
  Lines lines;
  const Json& variables = after["variables"];
  for (std::size_t i = 0; i < variables.size(); ++i) {
    if (i >= before["variables"].size()) {
      lines.push_back("added " + VariableText(variables[i]));
      continue;
    }
    const std::string text = PropertiesText(variables[i], before["variables"][i]);
    if (!text.empty()) lines.push_back(variables[i]["name"].get<std::string>() + text);
  }
  AddFileLines(after["file"], before["file"], lines);
  return lines;
}

std::string DiagnosticLine(const velahost::Diagnostic& diagnostic) {
  std::string text = diagnostic.message.text;
  for (std::size_t i = 0; i < diagnostic.message.arguments.size(); ++i) {
    const std::size_t place = text.find("^" + std::to_string(i + 1));
    if (place != std::string::npos)
      text.replace(place, 2, "{" + diagnostic.message.arguments[i] + "}");
  }
  const std::string show =
      diagnostic.show == BpShowMessage ? "" : " show " + std::to_string(diagnostic.show);
  return (diagnostic.level >= velahost::Severity::Error ? "error " : "warning ") +
         std::to_string(static_cast<int>(diagnostic.level)) + show + ": " + text;
}

}  // namespace cases
