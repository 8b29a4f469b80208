#include "program/Apply.h"

#include <new>
#include <optional>
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
#include "program/Run.h"
#include "standalone/Syntax/Diagnostics.h"

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
                 });
}

// Tells what has changed. If that fails, the codebook is written already, and the message says so.
void TellOutcome(const Outcome& outcome, const ApplyOptions& options,
                 const std::vector<velahost::Diagnostic>& diagnostics, bool isCodebookOutput) {
  const auto written = [&outcome] {
    return outcome.written ? " " + *outcome.written + " is written." : std::string();
  };
  try {
    TellUser(options, diagnostics, outcome, isCodebookOutput);
  } catch (const std::bad_alloc&) {
    throw Failure("There is not enough memory to tell what has changed." + written());
  } catch (const Failure& failure) {
    throw Failure(failure.what() + written());
  }
}

}  // namespace

ExitStatus RunApply(const ApplyOptions& options, velahost::Host& host) {
  const EntryPoint applyDictionary = LoadLibrary();
  std::vector<velahost::Command> commands = ReadCommands(options);
  if (options.working.size() > 1) return ApplyToEach(options, commands, applyDictionary, host);

  Run run(host, options.working.front(), std::move(commands), options.language);
  const Destination destination = DestinationOf(options, run.Working().path);
  run.SetDestination(destination);
  std::optional<Outcome> outcome = run.RunCommands(applyDictionary, AfterError::Stop, ReportAside);
  const std::vector<velahost::Diagnostic>& diagnostics = host.diagnostics.All();
  if (!outcome) {
    TellUser(options, diagnostics, std::nullopt, destination.isStandardOutput);
    return kErrorReported;
  }
  run.Write(*outcome);
  TellOutcome(*outcome, options, diagnostics, destination.isStandardOutput);
  return kDone;
}

}  // namespace applydic
