#include "program/CommandLine/WorkArguments.h"

namespace applydic {
namespace {

constexpr const char* kDescription =
    "Tell all that apply would refuse or warn about, and write nothing.";

constexpr const char* kExamples =
    "Examples:\n"
    "  applydic check -f relabel.txt survey_2026.xml\n"
    "  applydic check --strict -f relabel.txt waves/*.xml\n"
    "\n"
    "Each problem is a line 'file:line:column: error: message' (or warning) on standard output.\n"
    "After a command with an error, the next one is checked.\n"
    "Exit status: 0 nothing would be refused, 1 something would, 2 wrong usage, or a file that\n"
    "cannot be read.";

class CheckArguments : public WorkArguments {
 public:
  explicit CheckArguments(CLI::App& program)
      : WorkArguments(program, "check", kDescription, kExamples, options_) {
    DeclareFlag("--strict", "Let warnings too make the exit status 1", options_.isStrict);
    DeclareFlag("--json", "Print the problems as JSON; of several codebooks, one on a line",
                options_.json);
  }

  Request Read() const override {
    CheckOptions options = options_;
    ReadWork(options);
    return options;
  }

 private:
  CheckOptions options_;
};

}  // namespace

std::unique_ptr<Arguments> MakeCheckArguments(CLI::App& program) {
  return std::make_unique<CheckArguments>(program);
}

}  // namespace applydic
