#include "program/Run.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <new>
#include <string_view>
#include <utility>

#include "program/Failure.h"
#include "program/Input.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "standalone/Files/SaveFile.h"
#include "standalone/Syntax/Diagnostics.h"

namespace applydic {
namespace {

// Reports the diagnostics of a run, each one once.
class Reporter {
 public:
  Reporter(const velahost::Diagnostics& diagnostics, const DiagnosticReport& report)
      : diagnostics_(diagnostics), report_(report) {}

  void ReportNew(const velahost::Command* command) {
    const std::vector<velahost::Diagnostic>& all = diagnostics_.All();
    for (; reported_ < all.size(); ++reported_) report_(all[reported_], command);
  }

 private:
  const velahost::Diagnostics& diagnostics_;
  const DiagnosticReport& report_;
  std::size_t reported_ = 0;
};

// Calls the library once. Reports what it throws as an error of the run.
void Call(EntryPoint applyDictionary, velahost::Diagnostics& diagnostics) {
  const auto fail = [&diagnostics](const std::string& message) {
    diagnostics.Report(velahost::Severity::Failure, {velahost::EscapeMessage(message)});
  };
  try {
    applyDictionary();
  } catch (const std::bad_alloc&) {
    fail("There is not enough memory to carry the command out.");
  } catch (const std::exception& exception) {
    fail(std::string("The command could not be carried out: ") + exception.what());
  }
}

std::vector<std::string> Strings(const std::vector<velahost::Text>& texts) {
  return {texts.begin(), texts.end()};
}

}  // namespace

void ReportAside(const velahost::Diagnostic& diagnostic, const velahost::Command* command) {
  WriteDiagnostic(diagnostic, command);
}

Run::Run(velahost::Host& host, const std::string& working, std::vector<velahost::Command> commands,
         const std::optional<std::string>& language)
    : host_(host), commands_(std::move(commands)) {
  const Progress::Stage stage("Reading " + MakeVisible(working));
  velahost::CodebookBytes bytes = ReadFileOrInput(working);
  sources_ =
      std::make_shared<SourceReader>(commands_, language ? *language : bytes.GuessLanguage());
  host.SetWorking(velahost::OpenCodebook(std::move(bytes), velahost::OpenFor::Writing, language));
  host.openSource = [sources = sources_, &read = host.WorkingFile()](const std::string& file) {
    return sources->Open(file, read.language);
  };
}

void Run::SetDestination(Destination destination) {
  destination_ = std::move(destination);
  if (destination_.path && !destination_.isStandardOutput) {
    velahost::CheckCanSave(*destination_.path, destination_.backupSuffix);
  }
}

std::optional<Outcome> Run::RunCommands(EntryPoint applyDictionary, AfterError afterError,
                                        const DiagnosticReport& report) {
  Reporter reporter(host_.diagnostics, report);
  reporter.ReportNew(nullptr);
  const bool isOne = commands_.size() == 1;
  Progress::Stage stage(isOne ? "Pairing variables" : "Applying command",
                        isOne ? Progress::Count::Time : Progress::Count::Items, commands_.size());
  bool hasErrors = false;
  for (velahost::Command& command : commands_) {
    stage.Advance(1);
    host_.SetCommand(std::move(command));
    Call(applyDictionary, host_.diagnostics);
    reporter.ReportNew(&host_.CurrentCommand());
    hasErrors = hasErrors || host_.diagnostics.FatalError();
    if (hasErrors && afterError == AfterError::Stop) break;
  }
  if (hasErrors) return std::nullopt;
  return OutcomeNow();
}

void Run::Write(Outcome& outcome) const {
  RefuseSource();
  const std::string what =
      destination_.path ? "Writing " + MakeVisible(*destination_.path) : "Trying to write";
  Progress::Stage stage(what, Progress::Count::Bytes);
  const auto write = [&](const velahost::ByteSink& sink) {
    velahost::WriteCodebook(outcome.working, outcome.dictionary, outcome.changes,
                            [&](std::string_view bytes) {
                              sink(bytes);
                              stage.Advance(bytes.size());
                            });
  };
  if (!destination_.path) return write([](std::string_view) {});
  if (destination_.isStandardOutput) return write(WriteOutput);
  outcome.saved = velahost::SaveFile(*destination_.path, write, destination_.backupSuffix);
}

Outcome Run::OutcomeNow() const {
  const velahost::CodebookFile& working = host_.WorkingFile();
  Outcome outcome{working, host_.WorkingDictionary(), {}, {}, {}, destination_.path, {}};
  outcome.changes = velahost::ChangesBetween(working.dictionary, outcome.dictionary);
  const velahost::Reach& reach = host_.ReachOfRun();
  outcome.notPaired = Strings(reach.NotPaired());
  for (const std::size_t column : reach.NotReached(working.dictionary.variables.size())) {
    outcome.notReached.push_back(working.dictionary.variables[column]->name.String());
  }
  return outcome;
}

std::vector<std::pair<std::string, velahost::FileIdentity>> Run::Replaced() const {
  std::vector<std::pair<std::string, velahost::FileIdentity>> replaced;
  const auto add = [&](const std::string& path, std::optional<velahost::FileIdentity> there) {
    if (there) replaced.emplace_back(path, *there);
  };
  if (!destination_.path) return replaced;
  if (destination_.isStandardOutput) {
    add(*destination_.path, velahost::IdentityOf(STDOUT_FILENO));
    return replaced;
  }
  add(*destination_.path, velahost::IdentityAt(*destination_.path));
  if (destination_.backupSuffix) {
    const std::string backup =
        velahost::PathsWritten(*destination_.path, destination_.backupSuffix).back();
    add(backup, velahost::IdentityAt(backup));
  }
  return replaced;
}

void Run::RefuseSource() const {
  const std::vector<velahost::FileIdentity>& opened = sources_->Opened();
  for (const auto& [path, file] : Replaced()) {
    if (!destination_.isShared && file == Working().identity) continue;
    if (std::find(opened.begin(), opened.end(), file) == opened.end()) continue;
    throw Failure("Cannot write " + path +
                  ": the dictionary was read from this file; write to another file.");
  }
}

}  // namespace applydic
