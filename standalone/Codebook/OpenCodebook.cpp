#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <functional>
#include <set>
#include <string_view>
#include <utility>

#include "standalone/Codebook/CarriedMarkup.h"
#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Documentation.h"
#include "standalone/Codebook/Parts.h"
#include "standalone/Text/Hash.h"
#include "standalone/Text/Tokens.h"
#include "standalone/Text/Utf8.h"
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

// Throws the error as one of the file, with its line.
[[noreturn]] void Refuse(const std::string& path, std::string_view text, const XmlError& error) {
  std::size_t begin = 0;
  for (std::size_t line = 1; line < error.line && begin < text.size(); ++line) {
    begin = std::min(text.find('\n', begin), text.size() - 1) + 1;
  }
  const std::string_view rest = error.line == 0 ? std::string_view() : text.substr(begin);
  constexpr std::size_t kMostOfLine = 1 << 16;
  const std::string_view line = rest.substr(0, kMostOfLine).substr(0, rest.find('\n'));
  throw FileError(path + ": " + error.what(),
                  MarkedLine{std::string(line), static_cast<int>(error.column)});
}

DocumentReading ReadNamed(const std::string& path, std::string_view text, OpenFor use,
                          const std::optional<std::string>& language) {
  try {
    return ReadDocument(text, use, language);
  } catch (const XmlError& error) {
    Refuse(path, text, error);
  }
}

// What looks at the first bytes of a document, and throws FileError when they begin none.
std::function<void(std::string_view first)> StartChecker(const std::string& path) {
  return [&path](std::string_view first) {
    try {
      CheckStart(first);
    } catch (const XmlError& error) {
      Refuse(path, first, error);
    }
  };
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
    ViewMap<std::size_t> files;
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

 private:
  std::vector<std::vector<std::size_t>> files_;  // of each variable, sorted; empty: one file
};

// What was not taken into the dictionary: how often, and where first.
class Unread {
 public:
  void Add(std::string_view where, std::size_t count = 1) {
    constexpr std::size_t kFew = 3;
    if (places_ < kFew) where_.append(places_ == 0 ? "" : ", ").append(where);
    if (places_ == kFew) where_ += "...";
    ++places_;
    count_ += count;
  }
  // The text has placeholders for the path, for the count with its noun, and for where.
  void Report(const std::string& text, const std::string& noun, const std::string& nouns,
              const std::string& path, std::vector<Message>& warnings) const {
    if (count_ == 0) return;
    warnings.push_back(
        {text, {path, std::to_string(count_) + " " + (count_ == 1 ? noun : nouns), where_}});
  }

 private:
  std::string where_;
  std::size_t places_ = 0;
  std::size_t count_ = 0;
};

// Opens one data file of a document that has been read.
class Opener {
 public:
  Opener(const std::string& path, std::string_view text, Reading& reading, std::size_t place)
      : path_(path), text_(text), reading_(reading), membership_(reading) {
    file_.path = path;
    file_.language = reading.languages.run;
    file_.place = place;
    for (const Reading::File& file : reading.files) file_.dataFiles.push_back(file.id.String());
  }

  CodebookFile Open(OpenFor use) {
    TakeVariables();
    if (use == OpenFor::Reading) WarnOfLanguage();
    if (!reading_.files.empty()) TakeFileItems(reading_.files[file_.place].file);
    file_.dictionary.file.weight = ReadWeight();
    TakeSets();
    return std::move(file_);
  }

  // Whether each group belongs to the file.
  const std::vector<bool>& GroupsOfFile() const { return groupsOfFile_; }

 private:
  void TakeVariables() {
    Unread missing;
    Unread tooLong;
    Unread valueless;
    Unread nameless;
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
      if (read.hasOtherMissing) missing.Add(name);
      if (read.hasTooLongCategory) tooLong.Add(name);
      if (read.valuelessCategories > 0) valueless.Add(name, read.valuelessCategories);
      file_.names.Add(*read.variable);
      file_.variablePlaces.push_back(i);
      file_.dictionary.variables.push_back(std::move(read.variable));
    }
    missing.Report(
        "^1: ^2 with missing values that a variable cannot have (^3)\\: a second range, a range of "
        "strings, a bound that is excluded or no number, or a value longer than the string. They "
        "stay in the file and count as none. Write them as single values and one range...",
        "variable", "variables", path_, file_.warnings);
    tooLong.Report(
        "^1: ^2 with labels for values that are longer than the variable (^3). These labels stay "
        "in the file and do not count. Shorten the values, or widen the variable...",
        "variable", "variables", path_, file_.warnings);
    valueless.Report(
        "^1: ^2 with a label and no value (^3). They stay in the file and do not count. Give each "
        "a value (catValu)...",
        "category", "categories", path_, file_.warnings);
    nameless.Report(
        "^1: ^2 without a name and an ID (line ^3). They stay in the file and do not count. Give "
        "each a name...",
        "variable", "variables", path_, file_.warnings);
  }

  // A source in other languages than the run's gives no labels.
  void WarnOfLanguage() {
    if (file_.language.empty()) return;
    std::set<std::string> languages;
    for (const std::shared_ptr<const Variable>& variable : file_.dictionary.variables) {
      if (variable->label || variable->valueLabels) return;
      for (const auto& other : variable->labelLanguages.Others()) {
        languages.emplace(other.language);
      }
    }
    if (languages.empty()) return;
    std::string list;
    for (const std::string& language : languages) list += (list.empty() ? "" : ", ") + language;
    file_.warnings.push_back(
        {"^1: No label is in the language of this run (^2). The labels there are in other "
         "languages (^3)\\: choose one of them for the run...",
         {path_, file_.language, list}});
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

  // Finds the groups of the file, and gives it its sets.
  void TakeSets() {
    if (reading_.groups.empty()) return;
    ViewMap<std::size_t> places;  // of variables, by ID
    for (std::size_t i = 0; i < reading_.variables.size(); ++i) {
      const Text& id = reading_.variables[i].variable.id;
      if (!id.Empty()) places.emplace(id, i);
    }
    std::vector<int> columns(reading_.variables.size(), -1);  // of variables, by place
    for (std::size_t column = 0; column < file_.variablePlaces.size(); ++column) {
      columns[file_.variablePlaces[column]] = static_cast<int>(column);
    }
    std::array<ViewSet, kSetKinds.size()> names;  // by kind
    for (std::size_t i = 0; i < reading_.groups.size(); ++i) {
      const GroupReading& read = reading_.groups[i].group;
      std::vector<std::size_t> members;
      for (const std::string& id : SplitTokens(read.members)) {
        if (const auto found = places.find(id); found != places.end()) {
          members.push_back(found->second);
        }
      }
      groupsOfFile_.push_back(BelongsToFile(read, members));
      if (!read.IsSet() || !groupsOfFile_.back()) continue;
      // Of several sets of one name the first counts.
      if (!names[static_cast<std::size_t>(read.kind)].insert(read.set.name).second) continue;
      VariableSet set = read.set;
      set.place = i;
      for (const std::size_t member : members) {
        if (columns[member] >= 0) set.members.push_back(columns[member]);
      }
      file_.dictionary.file.SetsOf(read.kind).push_back(std::move(set));
    }
  }

  // A group belongs to the file that its note names, else to those of its first member, else to the
  // first.
  bool BelongsToFile(const GroupReading& group, const std::vector<std::size_t>& members) const {
    if (!group.file.Empty()) {
      const auto named =
          std::find_if(reading_.files.begin(), reading_.files.end(),
                       [&](const Reading::File& file) { return file.id == group.file; });
      if (named != reading_.files.end()) {
        return static_cast<std::size_t>(named - reading_.files.begin()) == file_.place;
      }
    }
    return members.empty() ? file_.place == 0 : membership_.Has(members.front(), file_.place);
  }

  const std::string& path_;
  const std::string_view text_;
  Reading& reading_;
  const FileMembership membership_;
  CodebookFile file_;
  std::vector<bool> groupsOfFile_;
};

// What was read of a document as the codebook that it is written by.
std::shared_ptr<const Codebook> MakeCodebook(const std::string& path, Bytes bytes,
                                             DocumentReading read, const Opener& opener) {
  Reading& reading = read.reading;
  auto codebook =
      std::make_shared<Codebook>(path, std::move(bytes), read.encoding, std::move(read.namespaces),
                                 std::move(reading.elements), std::move(reading.languages));
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
        {document.At(group.place), group.scope, std::move(group.group), opener.GroupsOfFile()[i]});
  }
  return codebook;
}

}  // namespace

CodebookFile OpenCodebook(const std::string& specification, OpenFor use,
                          const std::optional<std::string>& language) {
  return OpenCodebook(ReadCodebook(specification), use, language);
}

std::string CodebookBytes::GuessLanguage() const { return GuessLabelLanguage(read.bytes.View()); }

std::string PathIn(const std::string& specification) {
  return SplitSpecification(specification).first;
}

CodebookBytes ReadCodebook(const std::string& specification) {
  auto [path, id] = SplitSpecification(specification);
  FileBytes read = ReadFile(path, kMostBytes, StartChecker(path));
  return {std::move(path), std::move(id), std::move(read)};
}

CodebookBytes ReadCodebook(int file, const std::string& name,
                           const std::optional<std::string>& id) {
  return {name, id, ReadInput(file, name, kMostBytes, StartChecker(name))};
}

CodebookFile OpenCodebook(CodebookBytes bytes, OpenFor use,
                          const std::optional<std::string>& language) {
  const FileIdentity identity = bytes.read.identity;
  CodebookFile file =
      OpenCodebook(bytes.path, std::move(bytes.read.bytes), bytes.id, use, language);
  file.identity = identity;
  return file;
}

CodebookFile OpenCodebook(const std::string& path, Bytes bytes,
                          const std::optional<std::string>& id, OpenFor use,
                          const std::optional<std::string>& language) {
  DocumentReading read = ReadNamed(path, bytes.View(), use, language);
  const std::size_t place = FindFile(path, read.reading.files, id);
  Opener opener(path, bytes.View(), read.reading, place);
  CodebookFile file = opener.Open(use);
  if (read.saysUtf16) {
    file.warnings.push_back(
        {"^1: The first line says UTF-16, but the document is in single bytes. It is read as "
         "UTF-8\\: let the first line say UTF-8...",
         {path}});
  }
  file.codebook = MakeCodebook(path, std::move(bytes), std::move(read), opener);
  return file;
}

namespace {

const Codebook::Variable& VariableAt(const CodebookFile& file, std::size_t column) {
  return file.codebook->variables[file.variablePlaces[column]];
}

// The names of the file's variables of these IDs.
std::vector<Text> NamesOf(const CodebookFile& file, const std::vector<std::string>& ids) {
  std::vector<Text> names;
  for (const std::string& id : ids) {
    const auto place = file.codebook->VariableOfId(id);
    if (!place) continue;
    // The places ascend.
    const auto column =
        std::lower_bound(file.variablePlaces.begin(), file.variablePlaces.end(), *place);
    if (column == file.variablePlaces.end() || *column != *place) continue;
    const auto at = static_cast<std::size_t>(column - file.variablePlaces.begin());
    names.push_back(file.dictionary.variables[at]->name);
  }
  return names;
}

}  // namespace

std::vector<DocumentationElement> DocumentationOf(const CodebookFile& file, std::size_t column,
                                                  DocumentationSet kinds) {
  if (!file.codebook) return {};
  const Codebook::Variable& variable = VariableAt(file, column);
  return ReadDocumentation(file.codebook->document, variable.element, variable.scope, kinds);
}

std::vector<DocumentationText> DocumentationTexts(const CodebookFile& file, std::size_t column) {
  if (!file.codebook) return {};
  return DocumentationTexts(VariableAt(file, column).element, file.codebook->languages);
}

namespace {

// What has been brought to a variable of these kinds, as it reads where it is saved.
std::vector<DocumentationText> BroughtTexts(const CodebookFile& file, const Brought& brought,
                                            DocumentationSet kinds) {
  std::string document = "<codeBook><dataDscr><var name='v'>";
  for (const DocumentationElement& element : brought.documentation) {
    if (kinds.Has(element.kind)) document += NewCarried({}, element.markup).markup;
  }
  document += "</var></dataDscr></codeBook>";
  return DocumentationTexts(
      OpenCodebook(file.path, Bytes(document), std::nullopt, OpenFor::Showing, file.language), 0);
}

}  // namespace

std::vector<DocumentationText> DocumentationTexts(const CodebookFile& file, std::size_t column,
                                                  const Variable& now) {
  const DocumentationSet read = file.dictionary.variables[column]->documented;
  std::vector<DocumentationText> texts = DocumentationTexts(file, column);
  const DocumentationSet given = now.documented.Without(read);
  if (given.Empty() || !now.brought) return texts;
  for (DocumentationText& text : BroughtTexts(file, *now.brought, given)) {
    texts.push_back(std::move(text));
  }
  std::stable_sort(texts.begin(), texts.end(),
                   [](const auto& a, const auto& b) { return a.kind < b.kind; });
  return texts;
}

DocumentationLookup DocumentationIn(const CodebookFile& file) {
  return [&file](std::size_t column) { return DocumentationTexts(file, column); };
}

std::optional<std::string> WhyNotIn(const CodebookFile& file, const std::string& markup) {
  return file.codebook ? WhyNotIn(file.codebook->document, markup) : std::nullopt;
}

Brought BroughtWith(const CodebookFile& file, std::size_t column) {
  Brought brought;
  if (!file.codebook) return brought;
  brought.documentation = DocumentationOf(file, column, DocumentationSet::All());
  const Element var = VariableAt(file, column).element;
  brought.interval = Text(Trim(var.Attribute("intrvl")));
  brought.weightNames = NamesOf(file, SplitTokens(var.Attribute("wgt-var")));
  return brought;
}

BroughtSet BroughtWith(const CodebookFile& file, const VariableSet& set) {
  BroughtSet brought;
  if (!file.codebook || !set.place) return brought;
  const Codebook& codebook = *file.codebook;
  const Codebook::Group& group = codebook.groups[*set.place];
  brought.place = *set.place;
  for (CarriedElement& element :
       ReadSetDocumentation(codebook.document, group.element, group.scope)) {
    brought.documentation.push_back(std::move(element.markup));
  }
  for (const std::string& id : SplitTokens(group.reading.subsets)) {
    const auto place = codebook.GroupOfId(id);
    if (!place || !codebook.groups[*place].reading.IsSet()) continue;
    const GroupReading& subset = codebook.groups[*place].reading;
    brought.subsets.emplace_back(subset.kind, subset.set.name);
  }
  return brought;
}

}  // namespace velahost
