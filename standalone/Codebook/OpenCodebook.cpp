#include <sys/stat.h>

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Documentation.h"
#include "standalone/Codebook/Parts.h"
#include "standalone/Text/Tokens.h"
#include "standalone/Xml/Parser.h"

namespace velahost {
namespace {

// A specification's path and ID: a file whose whole name the specification is wins.
std::pair<std::string, std::optional<std::string>> SplitSpecification(
    const std::string& specification) {
  struct stat status = {};
  const std::size_t hash = specification.rfind('#');
  if (hash == std::string::npos || stat(specification.c_str(), &status) == 0) {
    return {specification, std::nullopt};
  }
  return {specification.substr(0, hash), specification.substr(hash + 1)};
}

DocumentReading ReadNamed(const std::string& path, std::string_view text, OpenFor use) {
  try {
    return ReadDocument(text, use);
  } catch (const XmlError& error) {
    throw FileError(path + ": " + error.what());
  }
}

// The place of the data file of that ID, or of the first.
std::size_t FindFile(const std::string& path, const std::vector<Reading::File>& files,
                     const std::optional<std::string>& id) {
  if (!id) return 0;
  const auto found = std::find_if(files.begin(), files.end(),
                                  [&id](const Reading::File& file) { return file.id == *id; });
  if (found != files.end() && !id->empty()) {
    return static_cast<std::size_t>(found - files.begin());
  }
  std::string known;
  for (const Reading::File& file : files) {
    if (!file.id.Empty()) known += (known.empty() ? "" : ", ") + file.id.String();
  }
  throw FileError(path + ": has no data file with the ID " + *id +
                  (known.empty() ? ": none of its data files has an ID" : ": it has " + known));
}

// Which of the document's files each variable belongs to.
class FileMembership {
 public:
  explicit FileMembership(const Reading& reading) {
    // With a single file, every variable belongs to it.
    if (reading.files.size() <= 1) return;
    std::unordered_map<std::string_view, std::size_t> files;
    for (std::size_t i = 0; i < reading.files.size(); ++i) {
      const Text& id = reading.files[i].id;
      if (!id.Empty()) files.emplace(id, i);
    }
    for (const Reading::Variable& read : reading.variables) {
      std::vector<std::size_t>& places = files_.emplace_back();
      std::vector<std::string> ids = SplitTokens(read.variable.files);
      for (const Text& id : read.variable.locations) ids.push_back(id.String());
      for (const std::string& id : ids) {
        if (const auto found = files.find(id); found != files.end()) {
          places.push_back(found->second);
        }
      }
      if (places.empty()) places.push_back(0);
      std::sort(places.begin(), places.end());
    }
  }

  bool Has(std::size_t variable, std::size_t file) const {
    return files_.empty() ||
           std::binary_search(files_[variable].begin(), files_[variable].end(), file);
  }
  // The first in the document of the variable's files.
  std::size_t FirstFile(std::size_t variable) const {
    return files_.empty() ? 0 : files_[variable].front();
  }

 private:
  std::vector<std::vector<std::size_t>> files_;  // of each variable, sorted; empty: one file
};

// The variables that something was not read of, by name.
class UnreadNames {
 public:
  void Add(std::string_view name) {
    if (!names_.empty()) names_ += ", ";
    names_ += name;
  }
  void Report(const std::string& text, const std::string& path,
              std::vector<Message>& warnings) const {
    if (!names_.empty()) warnings.push_back({text, {path, names_}});
  }

 private:
  std::string names_;
};

// Opens one data file of a document that has been read.
class Opener {
 public:
  Opener(const std::string& path, std::string_view text, Reading& reading, std::size_t place)
      : path_(path), text_(text), reading_(reading), membership_(reading) {
    file_.path = path;
    file_.place = place;
  }

  CodebookFile Open() {
    TakeVariables();
    if (!reading_.files.empty()) TakeFileItems(reading_.files[file_.place].file);
    file_.dictionary.file.weight = ReadWeight();
    TakeSets();
    return std::move(file_);
  }

  // The file that each group belongs to: that of its first member, else the first.
  std::size_t FileOfGroup(std::size_t group) const { return fileOfGroup_[group]; }

 private:
  void TakeVariables() {
    UnreadNames missing;
    UnreadNames categories;
    UnreadNames nameless;
    LineCounter lines(text_);
    file_.names.Reserve(reading_.variables.size());
    file_.dictionary.variables.reserve(reading_.variables.size());
    file_.variablePlaces.reserve(reading_.variables.size());
    for (std::size_t i = 0; i < reading_.variables.size(); ++i) {
      if (!membership_.Has(i, file_.place)) continue;
      VariableReading& read = reading_.variables[i].variable;
      const Text& name = read.variable->name;
      if (name.Empty()) {
        nameless.Add(std::to_string(lines.LineOf(BeginOf(i))));
        continue;
      }
      const int column = file_.names.FindUpperCase(read.variable->upperCaseName);
      if (column >= 0) RefuseRepeatedName(static_cast<std::size_t>(column), i);
      if (read.missingNotRead) missing.Add(name);
      if (read.longCategoriesNotRead) categories.Add(name);
      file_.names.Add(*read.variable);
      file_.variablePlaces.push_back(i);
      file_.dictionary.variables.push_back(std::move(read.variable));
    }
    missing.Report("^1: Missing values not read, more or others than a variable can have\\: ^2...",
                   path_, file_.warnings);
    categories.Report("^1: Value labels not read, values longer than the variable\\: ^2...", path_,
                      file_.warnings);
    nameless.Report("^1: Variables without a name not read, on line ^2...", path_, file_.warnings);
  }

  std::size_t BeginOf(std::size_t variable) const {
    return reading_.elements[reading_.variables[variable].place].begin;
  }

  [[noreturn]] void RefuseRepeatedName(std::size_t column, std::size_t second) const {
    const auto line = [this](std::size_t variable) {
      return std::to_string(LineCounter(text_).LineOf(BeginOf(variable)));
    };
    const std::string name = reading_.variables[second].variable.variable->name.String();
    const std::string first = file_.dictionary.variables[column]->name.String();
    throw FileError(path_ + ": line " + line(second) + ": variable " + name +
                    " stands in the file already, on line " + line(file_.variablePlaces[column]) +
                    (first == name ? "" : " as " + first) +
                    ": names must differ in more than case");
  }

  void TakeFileItems(FileReading& read) {
    FileItems& items = file_.dictionary.file;
    items.label = std::move(read.label);
    items.documents = std::move(read.documents);
    items.attributes = std::move(read.attributes);
  }

  int ReadWeight() const {
    if (!reading_.files.empty()) {
      const std::optional<Text>& named = reading_.files[file_.place].file.weight;
      if (named) return file_.names.Find(*named);
    }
    int weight = -1;
    for (std::size_t column = 0; column < file_.variablePlaces.size(); ++column) {
      if (!reading_.variables[file_.variablePlaces[column]].variable.weights) continue;
      if (weight >= 0) return -1;
      weight = static_cast<int>(column);
    }
    return weight;
  }

  // Gives each group its file, and the file its sets.
  void TakeSets() {
    if (reading_.groups.empty()) return;
    std::unordered_map<std::string_view, std::size_t> places;  // of variables, by ID
    for (std::size_t i = 0; i < reading_.variables.size(); ++i) {
      const Text& id = reading_.variables[i].variable.id;
      if (!id.Empty()) places.emplace(id, i);
    }
    std::vector<int> columns(reading_.variables.size(), -1);  // of variables, by place
    for (std::size_t column = 0; column < file_.variablePlaces.size(); ++column) {
      columns[file_.variablePlaces[column]] = static_cast<int>(column);
    }
    for (const Reading::Group& read : reading_.groups) {
      std::vector<std::size_t> members;
      for (const std::string& id : SplitTokens(read.group.members)) {
        if (const auto found = places.find(id); found != places.end()) {
          members.push_back(found->second);
        }
      }
      fileOfGroup_.push_back(members.empty() ? 0 : membership_.FirstFile(members.front()));
      if (!read.group.IsSet() || fileOfGroup_.back() != file_.place) continue;
      VariableSet set = read.group.set;
      for (const std::size_t member : members) {
        if (columns[member] >= 0) set.members.push_back(columns[member]);
      }
      file_.dictionary.file.SetsOf(read.group.kind).push_back(std::move(set));
    }
  }

  const std::string& path_;
  const std::string_view text_;
  Reading& reading_;
  const FileMembership membership_;
  CodebookFile file_;
  std::vector<std::size_t> fileOfGroup_;
};

// What was read of a document as the codebook that it is written by.
std::shared_ptr<const Codebook> MakeCodebook(const std::string& path, Bytes bytes,
                                             DocumentReading read, const Opener& opener) {
  Reading& reading = read.reading;
  auto codebook =
      std::make_shared<Codebook>(path, std::move(bytes), read.encoding, std::move(read.namespaces),
                                 std::move(reading.elements));
  const Document& document = codebook->document;
  for (const Reading::File& file : reading.files) {
    codebook->files.push_back({document.At(file.place), file.id});
  }
  if (codebook->files.empty()) codebook->files.emplace_back();
  codebook->variables.reserve(reading.variables.size());
  for (Reading::Variable& variable : reading.variables) {
    codebook->variables.push_back({document.At(variable.place), variable.scope,
                                   std::move(variable.variable.id), variable.variable.weights});
  }
  for (std::size_t i = 0; i < reading.groups.size(); ++i) {
    Reading::Group& group = reading.groups[i];
    codebook->groups.push_back(
        {document.At(group.place), std::move(group.group), opener.FileOfGroup(i)});
  }
  return codebook;
}

}  // namespace

CodebookFile OpenCodebook(const std::string& specification, OpenFor use) {
  const auto [path, id] = SplitSpecification(specification);
  FileBytes read = ReadFile(path);
  CodebookFile file = OpenCodebook(path, std::move(read.bytes), id, use);
  file.identity = read.identity;
  return file;
}

CodebookFile OpenCodebook(const std::string& path, Bytes bytes,
                          const std::optional<std::string>& id, OpenFor use) {
  DocumentReading read = ReadNamed(path, bytes.View(), use);
  const std::size_t place = FindFile(path, read.reading.files, id);
  Opener opener(path, bytes.View(), read.reading, place);
  CodebookFile file = opener.Open();
  file.codebook = MakeCodebook(path, std::move(bytes), std::move(read), opener);
  return file;
}

Text DocumentationOf(const CodebookFile& file, std::size_t column) {
  if (!file.codebook) return {};
  const Codebook& codebook = *file.codebook;
  const Codebook::Variable& variable = codebook.variables[file.variablePlaces[column]];
  return ReadDocumentation(codebook.document, variable.element, variable.scope);
}

}  // namespace velahost
