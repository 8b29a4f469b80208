#include "program/ApplyToEach.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <new>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "program/Account.h"
#include "program/Destinations.h"
#include "program/Jobs.h"
#include "program/Listing.h"
#include "program/Outcome.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "program/Run.h"
#include "program/Terminal.h"
#include "standalone/Host/Host.h"
#include "standalone/Syntax/Diagnostics.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;
using velahost::ByteSink;

// What came of one working file.
struct FileResult {
  const std::string& working;
  ExitStatus status = kCannotRun;
  std::string failure;             // why, where the program could not run
  std::optional<Outcome> outcome;  // where all went well
};

// Gives indented JSON on as one line: in it a line feed stands between two tokens only, with blanks
// behind it.
ByteSink OnOneLine(const ByteSink& sink) {
  return [&sink, isBetween = false](std::string_view text) mutable {
    std::string line;
    for (const char c : text) {
      if (c == '\n') isBetween = true;
      if (isBetween && (c == '\n' || c == ' ')) continue;
      isBetween = false;
      line += c;
    }
    sink(line);
  };
}

void WriteJson(const FileResult& result, const std::vector<velahost::Diagnostic>& diagnostics,
               const ByteSink& sink) {
  const bool hasRun = result.failure.empty();
  const Json head = {{"working", result.working},
                     {"status", static_cast<int>(result.status)},
                     {"failure", hasRun ? Json(nullptr) : Json(result.failure)}};
  std::string line = head.dump(-1, ' ', false, Json::error_handler_t::replace);
  line.back() = ',';
  sink(line + "\"outcome\":");
  if (hasRun) {
    WriteOutcomeJson(diagnostics, result.outcome, OnOneLine(sink));
  } else {
    sink("null");
  }
  sink("}\n");
}

// Why it failed: the reason, or the first error.
std::string ReasonOf(const FileResult& result,
                     const std::vector<velahost::Diagnostic>& diagnostics) {
  if (!result.failure.empty()) return result.failure;
  const auto error = std::find_if(diagnostics.begin(), diagnostics.end(), [](const auto& issued) {
    return issued.level >= velahost::Severity::Error;
  });
  return error == diagnostics.end() ? "an error was reported" : error->shown;
}

void WriteText(const FileResult& result, const std::vector<velahost::Diagnostic>& diagnostics,
               const ApplyOptions& options, Page page, const ByteSink& sink) {
  const std::string name = result.working + ": ";
  if (!result.outcome) {
    std::string reason = ReasonOf(result, diagnostics);
    if (reason.starts_with(name)) reason.erase(0, name.size());
    return sink(MakeVisible(name) + "failed: " + MakeVisible(reason) + "\n");
  }
  sink(MakeVisible(name) + AccountLine(*result.outcome) + "\n");
  if (!options.difference && !options.isVerbose) return;
  WriteAccount(*result.outcome, {options.difference, options.isVerbose}, page, sink);
  sink("\n");
}

void Tell(const FileResult& result, const std::vector<velahost::Diagnostic>& diagnostics,
          const ApplyOptions& options, Page page) {
  if (options.isQuiet) return;
  WriteForReader(Stream::Output, [&](const ByteSink& sink) {
    if (options.json) return WriteJson(result, diagnostics, sink);
    WriteText(result, diagnostics, options, page, sink);
  });
}

// Applies the commands to one file, on a host of its own, and tells of it.
ExitStatus ApplyToOne(const std::string& working, const ApplyOptions& options,
                      const std::vector<velahost::Command>& commands, EntryPoint applyDictionary,
                      Page page) {
  NameInMessages(working);
  velahost::Host host;
  std::optional<Run> run;  // the outcome refers to what it has read
  FileResult result{working, kCannotRun, {}, {}};
  try {
    run.emplace(host, working, commands, options.language);
    run->SetDestination(DestinationOf(options, run->Working().path));
    std::optional<Outcome> outcome =
        run->RunCommands(applyDictionary, AfterError::Stop, ReportAside);
    if (outcome) run->Write(*outcome);
    result.status = outcome ? kDone : kErrorReported;
    if (outcome) result.outcome.emplace(std::move(*outcome));
  } catch (const std::bad_alloc&) {
    result.failure = kNoMemory;
  } catch (const std::exception& exception) {
    result.failure = exception.what();
  }
  if (!result.failure.empty()) WriteError(result.failure);
  Tell(result, host.diagnostics.All(), options, page);
  return result.status;
}

// Tells of a process that did not come to its end.
void TellOfSignal(const std::string& working, int signal, const ApplyOptions& options) {
  const std::string why = std::string("its process was ended: ") + strsignal(signal) + ".";
  WriteError(working + ": " + why);
  Tell({working, kCannotRun, why, {}}, {}, options, {});
}

}  // namespace

ExitStatus ApplyToEach(const ApplyOptions& options, const std::vector<velahost::Command>& commands,
                       EntryPoint applyDictionary) {
  CheckDestinations(options);
  const std::vector<std::string>& files = options.working;
  const Page page = PageOfOutput(options.color);
  std::size_t failed = 0;
  ExitStatus worst = kDone;
  Progress::Stage stage("Files done:", Progress::Count::Items, files.size());
  RunJobs(
      files.size(), options.jobs,
      [&](std::size_t i) { return ApplyToOne(files[i], options, commands, applyDictionary, page); },
      [&](std::size_t i, const JobResult& result) {
        WriteAside(result.aside);
        WriteForReader(Stream::Output, [&](const ByteSink& sink) { sink(result.output); });
        if (result.signal) TellOfSignal(files[i], *result.signal, options);
        if (result.status != kDone) ++failed;
        worst = std::max(worst, result.status);
        stage.Advance(1);
      });
  if (!options.isQuiet && !options.json) {
    WriteForReader(Stream::Output, [&](const ByteSink& sink) {
      sink(CountText(files.size()) + " files: " + CountText(files.size() - failed) + " done, " +
           CountText(failed) + " failed\n");
    });
  }
  return worst;
}

}  // namespace applydic
