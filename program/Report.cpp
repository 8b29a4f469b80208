#include "program/Report.h"

#include <fmt/chrono.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "program/Account.h"
#include "program/Failure.h"
#include "program/Help/MessageHelp.h"
#include "program/JsonStream.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "program/ReportPage.h"
#include "standalone/Files/SaveFile.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;
using velahost::ByteSink;
using velahost::Dictionary;

// A time in this place, with its distance from universal time: 2026-11-23T16:57:03+0100.
std::string TimeText(std::time_t time) {
  return fmt::format("{:%Y-%m-%dT%H:%M:%S%z}", fmt::localtime(time));
}

template <typename T>
Json JsonOf(const std::optional<T>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json FilesJson(const std::vector<Report::OfFile>& files) {
  Json json = Json::array();
  for (const Report::OfFile& file : files) {
    json.push_back({{"role", file.role},
                    {"path", file.path},
                    {"modified", file.modified ? Json(TimeText(*file.modified)) : Json(nullptr)},
                    {"bytes", JsonOf(file.bytes)},
                    {"variables", JsonOf(file.variables)},
                    {"dataFiles", file.dataFiles},
                    {"dataFile", file.dataFile}});
  }
  return json;
}

// The labels of the variables that the report names and whose label is not among its changes.
Json LabelsJson(const Outcome& outcome) {
  const std::vector<std::shared_ptr<const velahost::Variable>>& variables =
      outcome.dictionary.variables;
  std::map<std::string, std::string> labels;
  const auto add = [&labels](const velahost::Variable& variable) {
    if (variable.label) labels.emplace(variable.name.String(), variable.label->String());
  };
  for (const velahost::Changes::OfVariable& changed : outcome.changes.changed) {
    if (!changed.properties.Has(velahost::Property::Label)) add(*variables[changed.column]);
  }
  for (std::size_t i = outcome.changes.firstAdded; i < variables.size(); ++i) add(*variables[i]);
  std::size_t next = 0;  // of the variables that were not reached: they stand in the file's order
  for (std::size_t i = 0; next < outcome.notReached.size(); ++i) {
    if (variables[i]->name != outcome.notReached[next]) continue;
    add(*variables[i]);
    ++next;
  }
  return labels;
}

// Passes JSON on so that it can stand in an element of a page: nothing in it begins a tag.
ByteSink WithoutTags(const ByteSink& sink) {
  return [&sink](std::string_view text) {
    while (true) {
      const std::size_t place = text.find('<');
      sink(text.substr(0, place));
      if (place == std::string_view::npos) return;
      sink("\\u003c");  // it stands in a string, as everything of this kind does in JSON
      text.remove_prefix(place + 1);
    }
  };
}

// What is to be known of the messages, by their texts.
Json ExplanationsJson(const std::vector<velahost::Diagnostic>& diagnostics) {
  Json explanations = Json::object();
  for (const velahost::Diagnostic& diagnostic : diagnostics) {
    const std::string& text = diagnostic.message.text;
    if (explanations.contains(text)) continue;
    const MessageHelp* help = HelpFor(text);
    if (help == nullptr) help = HelpFor(diagnostic.shown);
    if (help == nullptr) continue;
    explanations[text] = {{"what", help->what}, {"why", help->why}, {"action", help->action}};
  }
  return explanations;
}

void WriteData(const std::vector<Report::OfFile>& files, const std::string& commands,
               const std::vector<velahost::Diagnostic>& diagnostics,
               const std::optional<Outcome>& outcome, const ByteSink& sink) {
  JsonStream json(WithoutTags(sink), JsonStream::Layout::Compact);
  json.Member("program", "applydic " APPLYDIC_VERSION);
  json.Member("date", TimeText(std::time(nullptr)));
  json.Member("commands", commands);
  json.Member("files", FilesJson(files));
  json.Member("isRefused", !outcome.has_value());
  // The page shows old and new pairs beside each other, and compares them itself.
  WriteOutcomeMembers(diagnostics, outcome, LabelPairs::NotCompared, json);
  json.Member("explanations", ExplanationsJson(diagnostics));
  json.Member("labels", outcome ? LabelsJson(*outcome) : Json::object());
  json.End();
}

Report::OfFile FileAt(const char* role, const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) return {role, path, {}, {}, {}, {}};
  return {role,
          path,
          velahost::FileIdentity{status.st_dev, status.st_ino},
          status.st_mtime,
          static_cast<std::uintmax_t>(status.st_size),
          {}};
}

// Whether two paths name one file, there already or not.
bool IsSameFile(const std::string& a, const std::string& b) {
  const std::optional<velahost::FileIdentity> atA = velahost::IdentityAt(a);
  if (atA) return atA == velahost::IdentityAt(b);
  const auto whole = [](const std::string& path) {
    return std::filesystem::weakly_canonical(std::filesystem::absolute(path));
  };
  return whole(a) == whole(b);
}

}  // namespace

Report::Report(std::string path, std::string commands)
    : path_(std::move(path)), commands_(std::move(commands)) {
  velahost::CheckCanSave(path_);
}

void Report::AddFile(const char* role, const std::string& path) { Add(FileAt(role, path)); }

void Report::AddCodebook(const char* role, const std::string& specification,
                         const velahost::CodebookFile& file) {
  OfFile added = FileAt(role, file.path);
  added.path = specification;
  added.variables = file.dictionary.variables.size();
  if (file.dataFiles.size() > 1) {
    added.dataFiles = file.dataFiles;
    added.dataFile = file.dataFiles[file.place];
  }
  Add(std::move(added));
}

void Report::Add(OfFile file) {
  const bool isThere = std::any_of(files_.begin(), files_.end(), [&file](const OfFile& other) {
    return std::string_view(other.role) == file.role && other.path == file.path;
  });
  if (!isThere) files_.push_back(std::move(file));
}

void Report::RefuseFilesOfRun(const std::optional<std::string>& output) const {
  const auto refuse = [this](const std::string& role) {
    throw Failure("Cannot write the report to " + path_ + ": that is the " + role +
                  " file of the run; write it to another file.");
  };
  const std::optional<velahost::FileIdentity> there = velahost::IdentityAt(path_);
  for (const OfFile& file : files_) {
    if (there && file.identity == there) refuse(file.role);
  }
  if (output && IsSameFile(*output, path_)) refuse("output");
}

void Report::Write(const std::vector<velahost::Diagnostic>& diagnostics,
                   const std::optional<Outcome>& outcome) const {
  std::vector<OfFile> files = files_;
  const bool isInPlace = outcome && outcome->written == outcome->working.path;
  if (outcome && outcome->written && !isInPlace) {
    files.push_back(FileAt("output", *outcome->written));
    files.back().variables = outcome->dictionary.variables.size();
  }
  const Progress::Stage stage("Writing " + MakeVisible(path_));
  velahost::SaveFile(path_, [&](const ByteSink& sink) {
    sink(kPageBeforeData);
    WriteData(files, commands_, diagnostics, outcome, sink);
    sink(kPageAfterData);
  });
}

}  // namespace applydic
