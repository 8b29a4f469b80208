#include "program/Run.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <new>
#include <string_view>
#include <utility>

#include "program/Failure.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "standalone/Files/SaveFile.h"
#include "standalone/Syntax/Diagnostics.h"

namespace applydic {
namespace {

// Writes the diagnostics of a run to standard error, each one once.
class DiagnosticsWriter {
 public:
  explicit DiagnosticsWriter(const velahost::Host& host) : host_(host) {}

  void WriteNew() {
    const std::vector<velahost::Diagnostic>& all = host_.diagnostics.All();
    for (; written_ < all.size(); ++written_) {
      WriteDiagnostic(all[written_], host_.CurrentCommand());
    }
  }

 private:
  const velahost::Host& host_;
  std::size_t written_ = 0;
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

Run::Run(velahost::Host& host, const std::string& working, std::vector<velahost::Command> commands,
         const std::optional<std::string>& language)
    : host_(host), commands_(std::move(commands)) {
  const Progress::Stage stage("Reading " + MakeVisible(working));
  velahost::CodebookBytes bytes = velahost::ReadCodebook(working);
  sources_ = std::make_shared<SourceReader>(commands_.front(),
                                            language ? *language : bytes.GuessLanguage());
  host.SetWorking(velahost::OpenCodebook(std::move(bytes), velahost::OpenFor::Writing, language));
  host.openSource = [sources = sources_, &read = host.WorkingFile()](const std::string& file) {
    return sources->Open(file, read.language);
  };
}

void Run::SetDestination(Destination destination) {
  destination_ = std::move(destination);
  if (destination_.path && !destination_.isStandardOutput) {
    velahost::CheckCanSave(*destination_.path);
  }
}

std::optional<Outcome> Run::RunCommands(EntryPoint applyDictionary) {
  DiagnosticsWriter diagnostics(host_);
  diagnostics.WriteNew();
  const bool isOne = commands_.size() == 1;
  Progress::Stage stage(isOne ? "Pairing variables" : "Applying command",
                        isOne ? Progress::Count::Time : Progress::Count::Items, commands_.size());
  for (velahost::Command& command : commands_) {
    stage.Advance(1);
    host_.SetCommand(std::move(command));
    Call(applyDictionary, host_.diagnostics);
    diagnostics.WriteNew();
    if (host_.diagnostics.FatalError()) return std::nullopt;
  }
  return OutcomeNow();
}

void Run::Write(const Outcome& outcome) const {
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
  velahost::SaveFile(*destination_.path, write);
}

Outcome Run::OutcomeNow() const {
  const velahost::CodebookFile& working = host_.WorkingFile();
  Outcome outcome{working, host_.WorkingDictionary(), {}, {}, {}, destination_.path};
  outcome.changes = velahost::ChangesBetween(working.dictionary, outcome.dictionary);
  const velahost::Reach& reach = host_.ReachOfRun();
  outcome.notPaired = Strings(reach.NotPaired());
  for (const std::size_t column : reach.NotReached(working.dictionary.variables.size())) {
    outcome.notReached.push_back(working.dictionary.variables[column]->name.String());
  }
  return outcome;
}

void Run::RefuseSource() const {
  if (!destination_.path) return;
  const std::optional<velahost::FileIdentity> there = velahost::IdentityAt(*destination_.path);
  if (!there || *there == Working().identity) return;
  const std::vector<velahost::FileIdentity>& opened = sources_->Opened();
  if (std::find(opened.begin(), opened.end(), *there) == opened.end()) return;
  throw Failure("Cannot write " + *destination_.path +
                ": the dictionary was read from this file; write to another file.");
}

}  // namespace applydic
