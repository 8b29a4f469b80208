#include "program/Apply.h"

#include <new>
#include <optional>
#include <string>
#include <vector>

#include "program/Account.h"
#include "program/Commands.h"
#include "program/Library.h"
#include "program/Outcome.h"
#include "program/Output.h"
#include "program/Run.h"
#include "standalone/Syntax/Diagnostics.h"

namespace applydic {
namespace {

Destination DestinationOf(const ApplyOptions& options, const std::string& workingPath) {
  if (options.inPlace) return {workingPath};
  return {options.output, options.output && IsStandardOutput(*options.output)};
}

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
  Run run(host, options.working, ReadCommands({options.command, options.syntaxFile}),
          options.language);
  const Destination destination = DestinationOf(options, run.Working().path);
  run.SetDestination(destination);

  const std::optional<Outcome> outcome = run.RunCommands(applyDictionary);
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
