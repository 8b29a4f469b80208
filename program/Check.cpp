#include "program/Check.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <functional>
#include <new>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "program/Commands.h"
#include "program/Jobs.h"
#include "program/Library.h"
#include "program/Outcome.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "program/Run.h"
#include "standalone/Host/Host.h"
#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Tokenizer.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;
using velahost::Command;
using velahost::Diagnostic;

// Something that would be refused or warned about.
struct Problem {
  std::string file;  // that it is in, as compilers name one: <command>, <stdin> or a path
  std::optional<velahost::TextPlace> place;
  bool isError = true;
  std::string message;
  std::string advice;  // what to do; may be empty
};

// What a check of one working codebook found.
struct Findings {
  const std::string& working;
  ExitStatus status = kDone;
  std::vector<Problem> problems;

  std::size_t Errors() const {
    return static_cast<std::size_t>(
        std::count_if(problems.begin(), problems.end(), [](const auto& p) { return p.isError; }));
  }
};

std::string NameOf(const CheckOptions& options) {
  if (options.command) return "<command>";
  return *options.syntaxFile == "-" ? "<stdin>" : *options.syntaxFile;
}

// A message of a run, at its place or else at its command.
Problem ProblemOf(const Diagnostic& diagnostic, const Command* command, const std::string& syntax,
                  const std::string& working) {
  Problem problem;
  problem.isError = diagnostic.level >= velahost::Severity::Error;
  problem.message = diagnostic.shown;
  problem.advice = diagnostic.advice;
  if (command != nullptr) {
    const velahost::Token& first = command->tokens.front();
    problem.file = syntax;
    problem.place = diagnostic.place.value_or(velahost::TextPlace{first.line, first.column});
    return problem;
  }
  problem.file = working;
  return problem;
}

// Takes the name of the file away from a message that begins with it.
void NameOnce(Problem& problem) {
  if (problem.message.starts_with(problem.file + ": ")) {
    problem.message.erase(0, problem.file.size() + 2);
  }
}

Findings Check(const std::string& working, const CheckOptions& options,
               const std::vector<Command>& commands, EntryPoint applyDictionary,
               velahost::Host& host) {
  Findings findings{working, kDone, {}};
  const std::string syntax = NameOf(options);
  const auto fail = [&](const std::string& why) {
    findings.status = kCannotRun;
    findings.problems.push_back({working, std::nullopt, true, why, ""});
  };
  try {
    Run run(host, working, commands, options.language);
    std::optional<Outcome> outcome = run.RunCommands(
        applyDictionary, AfterError::GoOn,
        [&](const Diagnostic& diagnostic, const Command* command) {
          findings.problems.push_back(ProblemOf(diagnostic, command, syntax, working));
        });
    if (outcome) run.Write(*outcome);  // to nowhere
  } catch (const std::bad_alloc&) {
    fail(kNoMemory);
  } catch (const std::exception& exception) {
    fail(exception.what());
  }
  for (Problem& problem : findings.problems) NameOnce(problem);
  const bool isRefused = options.isStrict ? !findings.problems.empty() : findings.Errors() > 0;
  if (findings.status == kDone && isRefused) findings.status = kErrorReported;
  return findings;
}

Json JsonOf(const Findings& findings) {
  Json problems = Json::array();
  for (const Problem& problem : findings.problems) {
    const bool hasPlace = problem.place.has_value();
    problems.push_back({{"file", problem.file},
                        {"line", hasPlace ? Json(problem.place->line) : Json(nullptr)},
                        {"column", hasPlace ? Json(problem.place->column) : Json(nullptr)},
                        {"severity", problem.isError ? "error" : "warning"},
                        {"message", problem.message},
                        {"advice", problem.advice}});
  }
  return {{"working", findings.working},
          {"status", static_cast<int>(findings.status)},
          {"errors", findings.Errors()},
          {"warnings", findings.problems.size() - findings.Errors()},
          {"problems", std::move(problems)}};
}

// A line, as compilers write it, and one for what to do; of several working codebooks with the name
// of this one.
std::string LinesOf(const Problem& problem, const Findings& findings, bool isOne) {
  std::string where = MakeVisible(problem.file);
  if (problem.place) where += fmt::format(":{}:{}", problem.place->line, problem.place->column);
  std::string line = where + (problem.isError ? ": error: " : ": warning: ");
  line += MakeVisible(problem.message);
  if (!isOne && problem.file != findings.working) {
    line += " [" + MakeVisible(findings.working) + "]";
  }
  line += "\n";
  if (!problem.advice.empty()) line += where + ": note: " + MakeVisible(problem.advice) + "\n";
  return line;
}

void Tell(const Findings& findings, const CheckOptions& options) {
  const bool isOne = options.working.size() == 1;
  WriteForReader(Stream::Output, [&](const velahost::ByteSink& sink) {
    if (options.json) {
      // Several make a line each.
      sink(JsonOf(findings).dump(isOne ? 2 : -1, ' ', false, Json::error_handler_t::replace) +
           "\n");
      return;
    }
    for (const Problem& problem : findings.problems) sink(LinesOf(problem, findings, isOne));
  });
}

ExitStatus CheckEach(const CheckOptions& options,
                     const std::function<ExitStatus(const std::string& working)>& check) {
  const std::vector<std::string>& files = options.working;
  ExitStatus worst = kDone;
  Progress::Stage stage("Files checked:", Progress::Count::Items, files.size());
  RunJobs(
      files.size(), options.jobs, [&](std::size_t i) { return check(files[i]); },
      [&](std::size_t i, const JobResult& result) {
        WriteAside(result.aside);
        WriteForReader(Stream::Output,
                       [&](const velahost::ByteSink& sink) { sink(result.output); });
        if (result.signal) {
          const std::string why = "its process was ended: ";
          Tell({files[i], kCannotRun, {{files[i], {}, true, why + strsignal(*result.signal), ""}}},
               options);
        }
        worst = std::max(worst, result.status);
        stage.Advance(1);
      });
  return worst;
}

}  // namespace

ExitStatus RunCheck(const CheckOptions& options) {
  const EntryPoint applyDictionary = LoadLibrary();
  const std::vector<Command> commands = ReadCommands(options);
  const auto check = [&](const std::string& working) {
    velahost::Host host;
    const Findings findings = Check(working, options, commands, applyDictionary, host);
    Tell(findings, options);
    return findings.status;
  };
  if (options.working.size() == 1) return check(options.working.front());
  return CheckEach(options, check);
}

}  // namespace applydic
