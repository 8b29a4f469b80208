#include "program/CommandLine/Arguments.h"
#include "program/Input.h"

namespace applydic {
namespace {

constexpr const char* kDescription =
    "Propose which variables of an older codebook those of a newer one come from, where names have "
    "changed.";

constexpr const char* kExamples =
    "Examples:\n"
    "  applydic match survey_2025.xml survey_2026.xml\n"
    "  applydic match survey_2025.xml survey_2026.xml -o pairs.txt\n"
    "  applydic apply -f pairs.txt -o labelled.xml survey_2026.xml\n"
    "\n"
    "The file has a command a line, the best first, with the reasons as comments. Read it before "
    "you\n"
    "run it: what is uncertain is commented out.\n"
    "Exit status: 0 done, 2 wrong usage, or a file that cannot be read or written.";

class MatchArguments : public Arguments {
 public:
  explicit MatchArguments(CLI::App& program)
      : Arguments(program, "match", kDescription, kExamples) {
    DeclareFile("OLD", "The older codebook, or OLD#ID", options_.before);
    DeclareFile("NEW", "The newer codebook, or NEW#ID", options_.now);
    DeclareText("-o,--output", "FILE", "Write the commands that apply OLD to NEW to a file",
                output_);
    DeclareFlag("--json", "Print the proposals as JSON", options_.json);
    DeclareLanguage();
  }

  Request Read() const override {
    MatchOptions options = options_;
    if (options.before.empty()) Refuse("OLD is empty: name a file");
    if (options.now.empty()) Refuse("NEW is empty: name a file");
    if (IsInput(options.before) && IsInput(options.now)) {
      Refuse("Standard input can be OLD or NEW, not both");
    }
    options.output = ValueOf("--output", output_);
    if (options.output && IsInput(options.before)) {
      Refuse(
          "Commands cannot name standard input: with --output, OLD is a file (a file '-' is "
          "'./-')");
    }
    if (options.output == "") Refuse("The name after --output is empty: name a file");
    if (options.output == "-") {
      Refuse("--output - names no file: standard output has the account (a file '-' is './-')");
    }
    options.language = Language();
    return options;
  }

 private:
  MatchOptions options_;
  std::string output_;
};

}  // namespace

std::unique_ptr<Arguments> MakeMatchArguments(CLI::App& program) {
  return std::make_unique<MatchArguments>(program);
}

}  // namespace applydic
