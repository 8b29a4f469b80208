#include <string_view>

#include "program/CommandLine/Arguments.h"
#include "standalone/Syntax/Keywords.h"

namespace applydic {
namespace {

constexpr const char* kDescription = "Apply a dictionary to the working codebook.";

constexpr const char* kExamples =
    "Examples:\n"
    "  applydic apply -c \"FROM 'survey_2025.xml'\" -o labelled.xml survey_2026.xml\n"
    "  applydic apply -c \"FROM 'survey_2025.xml' /VARINFO VALLABELS=MERGE\" -n survey_2026.xml\n"
    "  applydic apply -f relabel.txt -i 'survey_2026.xml#F2'\n"
    "\n"
    "Warnings and errors go to standard error, an account of what changed to standard output.\n"
    "Exit status: 0 done, warnings included; 1 an error was reported, nothing is written;\n"
    "2 wrong usage, or a file that cannot be read or written.";

// Whether a command is what the shell leaves of one that was given without quotes.
bool IsFirstWord(std::string_view command) {
  const std::string capitals = velahost::Capitals(command);
  return capitals == "FROM" || capitals == "APPLY";
}

class ApplyArguments : public Arguments {
 public:
  explicit ApplyArguments(CLI::App& program)
      : Arguments(program, "apply", kDescription, kExamples) {
    DeclareFile("WORKING", "The working codebook, or WORKING#ID", options_.working);
    const std::string from = "What to do (exactly one)";
    DeclareText("-c,--command", "TEXT", "The command", command_, from);
    DeclareText("-f,--syntax", "FILE", "Commands from a file, 16 MB at most ('-': standard input)",
                syntaxFile_, from);
    const std::string to = "Where to (exactly one)";
    DeclareText("-o,--output", "FILE", "Write the changed codebook to a file", output_, to);
    DeclareFlag("-i,--in-place", "Write it over WORKING", options_.inPlace, to);
    DeclareFlag("-n,--dry-run", "Write nothing", options_.dryRun, to);
    const std::string told = "What to tell of it";
    DeclareFlag("-q,--quiet", "Nothing but warnings and errors", options_.isQuiet, told);
    DeclareFlag("-v,--verbose", "All that changed, however much it is", options_.isVerbose, told);
    DeclareFlag("--diff", "Old and new values, as --dry-run does", options_.difference, told);
    DeclareFlag("--json", "The outcome as JSON", options_.json, told);
    DeclareColor();
    DeclareLanguage();
  }

  Request Read() const override {
    ApplyOptions options = options_;
    options.command = ValueOf("--command", command_);
    options.syntaxFile = ValueOf("--syntax", syntaxFile_);
    options.output = ValueOf("--output", output_);
    options.language = Language();
    options.color = Color();
    if (options.command.has_value() == options.syntaxFile.has_value()) {
      Refuse("Give exactly one of --command and --syntax");
    }
    const int destinations =
        (options.output ? 1 : 0) + (options.inPlace ? 1 : 0) + (options.dryRun ? 1 : 0);
    if (destinations != 1) Refuse("Give exactly one of --output, --in-place and --dry-run");
    if ((options.isQuiet ? 1 : 0) + (options.isVerbose ? 1 : 0) + (options.json ? 1 : 0) > 1) {
      Refuse("Give at most one of --quiet, --verbose and --json");
    }
    if (options.working.empty()) Refuse("WORKING is empty: name a file");
    if (options.command && IsFirstWord(*options.command)) {
      Refuse("The command is '" + *options.command +
             "' alone: put all of it in double quotes, as in -c \"FROM 'survey_2025.xml'\"");
    }
    if (options.syntaxFile == "") Refuse("The name after --syntax is empty: name a file");
    if (options.output == "") Refuse("The name after --output is empty: name a file");
    if (options.output == "-") {
      Refuse("--output - names no file: standard output has the account (a file '-' is './-')");
    }
    return options;
  }

 private:
  ApplyOptions options_;
  std::string command_;
  std::string syntaxFile_;
  std::string output_;
};

}  // namespace

std::unique_ptr<Arguments> MakeApplyArguments(CLI::App& program) {
  return std::make_unique<ApplyArguments>(program);
}

}  // namespace applydic
