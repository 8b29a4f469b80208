#include "program/Apply.h"

#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "program/Account.h"
#include "program/ApplyToEach.h"
#include "program/Commands.h"
#include "program/Destinations.h"
#include "program/Library.h"
#include "program/Outcome.h"
#include "program/Output.h"
#include "program/Report.h"
#include "program/Run.h"
#include "standalone/Host/Host.h"
#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Subcommands.h"
#include "standalone/Syntax/Tokenizer.h"

namespace applydic {
namespace {

// Tells the user what came of the run, on standard output, unless the codebook itself goes there.
void TellUser(const ApplyOptions& options, const std::vector<velahost::Diagnostic>& diagnostics,
              const std::optional<Outcome>& outcome, bool isCodebookOutput) {
  if (options.isQuiet) return;
  const Page page = PageOfOutput(options.color, isCodebookOutput);
  const AccountStyle style{options.dryRun || options.difference, options.isVerbose};
  WriteForReader(isCodebookOutput ? Stream::Aside : Stream::Output,
                 [&](const velahost::ByteSink& sink) {
                   if (options.json) {
                     WriteOutcomeJson(diagnostics, outcome, sink);
                   } else if (outcome) {
                     WriteAccount(*outcome, style, page, sink);
                   } else {
                     sink("An error was reported: nothing written\n");
                   }
                   if (options.report && !options.json) {
                     sink("Report written to " + MakeVisible(*options.report) + "\n");
                   }
                 });
}

// The report that the user asks for, if one. Sources are added as the host opens them.
std::unique_ptr<Report> BeginReport(const ApplyOptions& options, std::string commands,
                                    velahost::Host& host) {
  if (!options.report) return nullptr;
  auto report = std::make_unique<Report>(*options.report, std::move(commands));
  report->AddCodebook("working", options.working.front(), host.WorkingFile());
  if (options.syntaxFile && *options.syntaxFile != "-") {
    report->AddFile("syntax", *options.syntaxFile);
  }
  host.openSource = [&report = *report, open = host.openSource](const std::string& source) {
    std::shared_ptr<const velahost::CodebookFile> file = open(source);
    report.AddCodebook("source", source, *file);
    return file;
  };
  return report;
}

// Writes the report and tells what has changed. If that fails, the codebook is written already, and
// the message says so.
void TellOutcome(const Outcome& outcome, const ApplyOptions& options,
                 const std::vector<velahost::Diagnostic>& diagnostics, bool isCodebookOutput,
                 const Report* report) {
  const auto written = [&outcome] {
    return outcome.written ? " " + *outcome.written + " is written." : std::string();
  };
  try {
    if (report != nullptr) report->Write(diagnostics, outcome);
    TellUser(options, diagnostics, outcome, isCodebookOutput);
  } catch (const std::bad_alloc&) {
    throw Failure("There is not enough memory to tell what has changed." + written());
  } catch (const std::runtime_error& failure) {
    throw Failure(failure.what() + written());
  }
}

}  // namespace

ExitStatus RunApply(const ApplyOptions& options) {
  const EntryPoint applyDictionary = LoadLibrary();
  std::vector<velahost::Command> commands = ReadCommands(options);
  if (options.working.size() > 1) return ApplyToEach(options, commands, applyDictionary);

  // It lives until the program ends. To take its dictionaries apart piece by piece would only give
  // back memory that the system takes back at once.
  velahost::Host& host = *new velahost::Host;
  const std::string commandText = options.report ? velahost::TextWithoutPasswords(commands) : "";
  Run run(host, options.working.front(), std::move(commands), options.language);
  const Destination destination = DestinationOf(options, run.Working().path);
  run.SetDestination(destination);
  const std::unique_ptr<Report> report = BeginReport(options, commandText, host);

  std::optional<Outcome> outcome = run.RunCommands(applyDictionary, AfterError::Stop, ReportAside);
  if (report) report->RefuseFilesOfRun(destination.path);
  const std::vector<velahost::Diagnostic>& diagnostics = host.diagnostics.All();
  if (!outcome) {
    if (report) report->Write(diagnostics, std::nullopt);
    TellUser(options, diagnostics, std::nullopt, destination.isStandardOutput);
    return kErrorReported;
  }
  run.Write(*outcome);
  TellOutcome(*outcome, options, diagnostics, destination.isStandardOutput, report.get());
  return kDone;
}

}  // namespace applydic
