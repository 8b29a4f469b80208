#include "program/CommandLine/Arguments.h"

namespace applydic {
namespace {

constexpr const char* kDescription = "Show the dictionary of a codebook.";

constexpr const char* kExamples =
    "Examples:\n"
    "  applydic show survey_2026.xml\n"
    "  applydic show survey_2026.xml SEX AGE\n"
    "  applydic show --json 'survey_2026.xml#F2'\n"
    "\n"
    "On a terminal the variables are a table. In a pipe or a file each variable is listed with "
    "what\n"
    "it has, and all value labels.";

class ShowArguments : public Arguments {
 public:
  explicit ShowArguments(CLI::App& program) : Arguments(program, "show", kDescription, kExamples) {
    DeclareFile("FILE", "The codebook, or FILE#ID ('-': standard input)", options_.file);
    DeclareNames("VARIABLE", "Only these variables, each in full", options_.variables);
    DeclareFlag("--json", "Print the dictionary as JSON", options_.json);
    DeclareColor();
    DeclareLanguage();
  }

  Request Read() const override {
    ShowOptions options = options_;
    if (options.file.empty()) Refuse("FILE is empty: name a file");
    options.language = Language();
    options.color = Color();
    return options;
  }

 private:
  ShowOptions options_;
};

}  // namespace

std::unique_ptr<Arguments> MakeShowArguments(CLI::App& program) {
  return std::make_unique<ShowArguments>(program);
}

}  // namespace applydic
