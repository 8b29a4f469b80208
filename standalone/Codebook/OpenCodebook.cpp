#include "standalone/Codebook/OpenCodebook.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unordered_map>
#include <utility>

#include "standalone/Codebook/ReadCodebook.h"
#include "standalone/Data/DataSource.h"
#include "standalone/Data/Variable.h"
#include "standalone/Files/Descriptor.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

struct FileText {
  std::string text;
  FileIdentity identity;
};

[[noreturn]] void CannotRead(const std::string& path, const std::string& why) {
  throw CodebookError(path + ": cannot be read: " + why);
}

FileText ReadText(const std::string& path) {
  if (path.find('\0') != std::string::npos) CannotRead(path, "there is a zero byte in its name");
  // Without O_NONBLOCK a pipe that nobody writes to would never be opened.
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.IsOpen()) CannotRead(path, std::strerror(errno));
  struct stat status = {};
  if (fstat(file.Number(), &status) != 0) CannotRead(path, std::strerror(errno));
  if (!S_ISREG(status.st_mode)) {
    CannotRead(path, S_ISDIR(status.st_mode) ? "it is a folder" : "it is not a regular file");
  }
  FileText result{.text = {}, .identity = {status.st_dev, status.st_ino}};
  // One byte more than expected shows the end of the file without another turn.
  result.text.resize(static_cast<std::size_t>(status.st_size) + 1);
  std::size_t length = 0;
  for (;;) {
    const ssize_t count =
        read(file.Number(), result.text.data() + length, result.text.size() - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) CannotRead(path, std::strerror(errno));
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
    if (length == result.text.size()) result.text.resize(2 * length);
  }
  result.text.resize(length);
  return result;
}

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

std::size_t FindFile(const Codebook& codebook, const std::optional<std::string>& id) {
  if (!id) return 0;
  const auto found = std::find_if(codebook.files.begin(), codebook.files.end(),
                                  [&](const Codebook::File& file) { return file.id == *id; });
  if (found != codebook.files.end() && !id->empty()) {
    return static_cast<std::size_t>(found - codebook.files.begin());
  }
  std::string known;
  for (const Codebook::File& file : codebook.files) {
    if (!file.id.empty()) known += (known.empty() ? "" : ", ") + file.id;
  }
  throw CodebookError(codebook.path + ": has no data file with the ID " + *id +
                      (known.empty() ? ": none of its data files has an ID" : ": it has " + known));
}

// Which of the document's files each variable belongs to.
class FileMembership {
 public:
  explicit FileMembership(const CodebookReading& reading) {
    // Of one file alone every variable is.
    if (reading.codebook->files.size() == 1) return;
    std::unordered_map<std::string_view, std::size_t> files;
    for (std::size_t i = 0; i < reading.codebook->files.size(); ++i) {
      const std::string& id = reading.codebook->files[i].id;
      if (!id.empty()) files.emplace(id, i);
    }
    for (const VariableReading& variable : reading.variables) {
      std::vector<std::size_t>& ofVariable = files_.emplace_back();
      std::vector<std::string> ids = SplitTokens(variable.files);
      ids.insert(ids.end(), variable.locations.begin(), variable.locations.end());
      for (const std::string& id : ids) {
        if (const auto found = files.find(id); found != files.end()) {
          ofVariable.push_back(found->second);
        }
      }
      if (ofVariable.empty()) ofVariable.push_back(0);
      std::sort(ofVariable.begin(), ofVariable.end());
    }
  }

  bool Belongs(std::size_t variable, std::size_t file) const {
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

// Gives each group its file and its members' names.
void ResolveGroups(CodebookReading& reading, const FileMembership& membership) {
  Codebook& codebook = *reading.codebook;
  if (codebook.groups.empty()) return;
  std::unordered_map<std::string, std::size_t> places;
  for (std::size_t i = 0; i < codebook.variables.size(); ++i) {
    if (!codebook.variables[i].id.empty()) places.emplace(codebook.variables[i].id, i);
  }
  for (std::size_t i = 0; i < codebook.groups.size(); ++i) {
    Codebook::Group& group = codebook.groups[i];
    std::vector<std::size_t> members;
    for (const std::string& id : SplitTokens(reading.groupMembers[i])) {
      if (const auto found = places.find(id); found != places.end()) {
        members.push_back(found->second);
      }
    }
    if (!members.empty()) group.file = membership.FirstFile(members.front());
    for (const std::size_t member : members) {
      if (membership.Belongs(member, group.file)) {
        group.members.push_back(static_cast<int>(member));
      }
    }
  }
}

void RefuseRepeatedName(const Codebook& codebook, const VELA_Variable::Impl& first,
                        const VELA_Variable::Impl& second) {
  const auto line = [&](const VELA_Variable::Impl& variable) {
    return std::to_string(
        LineCounter(codebook.text).LineOf(codebook.variables[variable.place].begin));
  };
  throw CodebookError(codebook.path + ": line " + line(second) + ": variable " + second.name +
                      " stands in the file already, on line " + line(first) +
                      (first.name == second.name ? "" : " as " + first.name) +
                      ": names must differ in more than case");
}

// The variables that something was not read of, by name.
class UnreadNames {
 public:
  void Add(const std::string& name) { names_ += (names_.empty() ? "" : ", ") + name; }
  void Report(const std::string& text, const std::string& path,
              std::vector<ReadingWarning>& warnings) const {
    if (!names_.empty()) warnings.push_back({text, {path, names_}});
  }

 private:
  std::string names_;
};

void TakeVariables(CodebookReading& reading, const FileMembership& membership, std::size_t file,
                   VELA_DataSource::Impl& dataSource, std::vector<ReadingWarning>& warnings) {
  const Codebook& codebook = *reading.codebook;
  UnreadNames missing;
  UnreadNames categories;
  UnreadNames nameless;
  LineCounter lines(codebook.text);
  for (std::size_t i = 0; i < reading.variables.size(); ++i) {
    if (!membership.Belongs(i, file)) continue;
    VariableReading& variable = reading.variables[i];
    const std::string& name = variable.variable->name;
    variable.variable->document = reading.codebook;
    variable.variable->place = i;
    if (name.empty()) {
      nameless.Add(std::to_string(lines.LineOf(codebook.variables[i].begin)));
      continue;
    }
    if (const int column = dataSource.Find(name); column >= 0) {
      RefuseRepeatedName(codebook,
                         HostAccess::Of(dataSource.variables[static_cast<std::size_t>(column)]),
                         *variable.variable);
    }
    if (variable.missingNotRead) missing.Add(name);
    if (variable.longCategoriesNotRead) categories.Add(name);
    dataSource.Add(std::move(variable.variable));
  }
  dataSource.readCount = dataSource.variables.size();
  missing.Report("^1: Missing values not read, more or others than a variable can have\\: ^2...",
                 codebook.path, warnings);
  categories.Report("^1: Value labels not read, values longer than the variable\\: ^2...",
                    codebook.path, warnings);
  nameless.Report("^1: Variables without a name not read, on line ^2...", codebook.path, warnings);
}

int ReadWeight(const FileReading& file, const VELA_DataSource::Impl& dataSource,
               const Codebook& codebook) {
  if (file.weight) return dataSource.Find(*file.weight);
  int weight = -1;
  for (std::size_t i = 0; i < dataSource.variables.size(); ++i) {
    if (!codebook.variables[HostAccess::Of(dataSource.variables[i]).place].weights) continue;
    if (weight >= 0) return -1;
    weight = static_cast<int>(i);
  }
  return weight;
}

void TakeFileProperties(FileReading& file, std::size_t place, VELA_DataSource::Impl& dataSource,
                        const Codebook& codebook) {
  FileProperties& now = dataSource.now;
  now.label = std::move(file.label);
  now.documents = std::move(file.documents);
  now.attributes = file.attributes;
  now.weight = ReadWeight(file, dataSource, codebook);
  for (const Codebook::Group& group : codebook.groups) {
    if (!group.IsSet() || group.file != place) continue;
    VariableSet set = group.set;
    set.members = codebook.MemberNames(group);
    now.sets[static_cast<std::size_t>(set.kind)].push_back(std::move(set));
  }
}

}  // namespace

OpenedCodebook OpenCodebook(const std::string& specification, OpenFor use) {
  const auto [path, id] = SplitSpecification(specification);
  FileText file = ReadText(path);
  OpenedCodebook opened = OpenCodebookText(path, std::move(file.text), id, use);
  opened.identity = file.identity;
  return opened;
}

OpenedCodebook OpenCodebookText(const std::string& path, std::string text,
                                const std::optional<std::string>& id, OpenFor use) {
  CodebookReading reading = ReadCodebook(path, std::move(text), use);
  const std::size_t place = FindFile(*reading.codebook, id);
  const FileMembership membership(reading);
  ResolveGroups(reading, membership);

  OpenedCodebook opened{.dataSource = {}, .path = path, .identity = {}, .warnings = {}};
  auto impl = std::make_unique<VELA_DataSource::Impl>();
  impl->document = reading.codebook;
  impl->place = place;
  TakeVariables(reading, membership, place, *impl, opened.warnings);
  TakeFileProperties(reading.files[place], place, *impl, *reading.codebook);
  opened.dataSource = std::make_unique<VELA_DataSource>(std::move(impl));
  return opened;
}

}  // namespace velahost
