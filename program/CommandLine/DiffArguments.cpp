#include "program/CommandLine/Arguments.h"
#include "program/Input.h"

namespace applydic {
namespace {

constexpr const char* kDescription = "Show what differs between the dictionaries of two codebooks.";

constexpr const char* kExamples =
    "Examples:\n"
    "  applydic diff survey_2025.xml survey_2026.xml\n"
    "  applydic diff --json 'survey.xml#F1' 'survey.xml#F2'\n"
    "\n"
    "Variables are paired by name, without regard to case.\n"
    "Exit status: 0 they are the same, 1 they differ, 2 wrong usage, or a file that cannot be "
    "read.";

class DiffArguments : public Arguments {
 public:
  explicit DiffArguments(CLI::App& program) : Arguments(program, "diff", kDescription, kExamples) {
    DeclareFile("OLD", "The one codebook, or OLD#ID ('-': standard input)", options_.before);
    DeclareFile("NEW", "The other codebook, or NEW#ID", options_.now);
    DeclareFlag("-q,--quiet", "Print nothing: the exit status tells", options_.isQuiet);
    DeclareFlag("--json", "Print the difference as JSON", options_.json);
    DeclareColor();
    DeclareLanguage();
  }

  Request Read() const override {
    DiffOptions options = options_;
    if (options.before.empty()) Refuse("OLD is empty: name a file");
    if (options.now.empty()) Refuse("NEW is empty: name a file");
    if (IsInput(options.before) && IsInput(options.now)) {
      Refuse("Standard input ('-') is one codebook: name a file for the other");
    }
    options.language = Language();
    options.color = Color();
    return options;
  }

 private:
  DiffOptions options_;
};

}  // namespace

std::unique_ptr<Arguments> MakeDiffArguments(CLI::App& program) {
  return std::make_unique<DiffArguments>(program);
}

}  // namespace applydic
