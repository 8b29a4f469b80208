#include "program/CommandLine/WorkArguments.h"

#include <charconv>
#include <cstddef>
#include <string_view>
#include <system_error>

#include "program/Input.h"
#include "standalone/Syntax/Keywords.h"

namespace applydic {
namespace {

constexpr std::size_t kMostJobs = 1000;

// Whether a command is what the shell leaves of one that was given without quotes.
bool IsFirstWord(std::string_view command) {
  const std::string capitals = velahost::Capitals(command);
  return capitals == "FROM" || capitals == "APPLY";
}

// Nothing if it is no number of jobs.
std::optional<std::size_t> JobsIn(const std::string& text) {
  std::size_t jobs = 0;
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, jobs);
  if (error != std::errc() || behind != end || jobs == 0 || jobs > kMostJobs) return std::nullopt;
  return jobs;
}

}  // namespace

WorkArguments::WorkArguments(CLI::App& program, const char* name, const char* description,
                             const char* examples, WorkOptions& options)
    : Arguments(program, name, description, examples) {
  DeclareFiles("WORKING", "The working codebook, or WORKING#ID ('-': standard input), or several",
               options.working);
  const std::string from = "What to do (exactly one)";
  DeclareText("-c,--command", "TEXT", "The command", command_, from);
  DeclareText("-f,--syntax", "FILE", "Commands from a file, 16 MB at most ('-': standard input)",
              syntaxFile_, from);
  DeclareText("-j,--jobs", "N",
              "Work on so many codebooks at the same time (1), each in a process of its own",
              jobs_);
  DeclareLanguage();
}

void WorkArguments::ReadWork(WorkOptions& options) const {
  options.command = ValueOf("--command", command_);
  options.syntaxFile = ValueOf("--syntax", syntaxFile_);
  options.language = Language();
  if (options.command.has_value() == options.syntaxFile.has_value()) {
    Refuse("Give exactly one of --command and --syntax");
  }
  if (options.command && IsFirstWord(*options.command)) {
    Refuse("The command is '" + *options.command +
           "' alone: put all of it in double quotes, as in -c \"FROM 'survey_2025.xml'\"");
  }
  if (options.syntaxFile == "") Refuse("The name after --syntax is empty: name a file");
  if (const auto text = ValueOf("--jobs", jobs_)) {
    const std::optional<std::size_t> jobs = JobsIn(*text);
    if (!jobs) {
      Refuse("--jobs takes a number from 1 to " + std::to_string(kMostJobs) + ", not '" + *text +
             "'");
    }
    options.jobs = *jobs;
  }
  for (const std::string& working : options.working) {
    if (working.empty()) Refuse("WORKING is empty: name a file");
    if (!IsInput(working)) continue;
    if (options.working.size() > 1) Refuse("Standard input ('-') is one codebook: give it alone");
    if (options.syntaxFile == "-") {
      Refuse("Standard input ('-') cannot be both the commands and the codebook");
    }
  }
}

}  // namespace applydic
