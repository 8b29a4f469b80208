#include "program/CommandLine/WorkArguments.h"
#include "program/Input.h"

namespace applydic {
namespace {

constexpr const char* kDescription = "Apply a dictionary to a working codebook, or to several.";

constexpr const char* kExamples =
    "Examples:\n"
    "  applydic apply -c \"FROM 'survey_2025.xml'\" -o labelled.xml survey_2026.xml\n"
    "  applydic apply -c \"FROM 'survey_2025.xml' /VARINFO VALLABELS=MERGE\" -n survey_2026.xml\n"
    "  applydic apply -f relabel.txt -i --backup 'survey_2026.xml#F2'\n"
    "  applydic apply -f relabel.txt -o labelled/ --jobs 4 waves/*.xml\n"
    "\n"
    "Warnings and errors go to standard error, an account of what changed to standard output.\n"
    "Exit status: 0 done, warnings included; 1 an error was reported, nothing is written;\n"
    "2 wrong usage, or a file that cannot be read or written.";

class ApplyArguments : public WorkArguments {
 public:
  explicit ApplyArguments(CLI::App& program)
      : WorkArguments(program, "apply", kDescription, kExamples, options_) {
    const std::string to = "Where to (exactly one)";
    DeclareText("-o,--output", "FILE",
                "Write the changed codebook to a file ('-': standard output), or into a folder "
                "('FOLDER/')",
                output_, to);
    DeclareFlag("-i,--in-place", "Write it over WORKING", options_.inPlace, to);
    DeclareFlag("-n,--dry-run", "Write nothing", options_.dryRun, to);
    DeclareFlagWithText("--backup{~}", "SUFFIX",
                        "Keep a file that is replaced, under its name with a suffix (~)",
                        backupSuffix_);
    const std::string told = "What to tell of it";
    DeclareFlag("-q,--quiet", "Nothing but warnings and errors", options_.isQuiet, told);
    DeclareFlag("-v,--verbose", "All that changed, however much it is", options_.isVerbose, told);
    DeclareFlag("--diff", "Old and new values, as --dry-run does", options_.difference, told);
    DeclareFlag("--json", "The outcome as JSON; of several codebooks, one on a line", options_.json,
                told);
    DeclareText("--report", "FILE", "Write a report of it, a page for a browser", report_, told);
    DeclareColor();
  }

  Request Read() const override {
    ApplyOptions options = options_;
    ReadWork(options);
    options.output = ValueOf("--output", output_);
    options.backupSuffix = ValueOf("--backup", backupSuffix_);
    options.report = ValueOf("--report", report_);
    options.color = Color();
    const int destinations =
        (options.output ? 1 : 0) + (options.inPlace ? 1 : 0) + (options.dryRun ? 1 : 0);
    if (destinations != 1) Refuse("Give exactly one of --output, --in-place and --dry-run");
    if ((options.isQuiet ? 1 : 0) + (options.isVerbose ? 1 : 0) + (options.json ? 1 : 0) > 1) {
      Refuse("Give at most one of --quiet, --verbose and --json");
    }
    CheckOutput(options);
    CheckBackup(options);
    CheckReport(options);
    return options;
  }

 private:
  void CheckOutput(const ApplyOptions& options) const {
    if (options.output == "") Refuse("The name after --output is empty: name a file");
    if (options.output == "-" && options.working.size() > 1) {
      Refuse("Several codebooks cannot go to standard output: give --output a folder");
    }
    if (!IsInput(options.working.front())) return;
    if (options.inPlace) Refuse("--in-place writes over a file, not to standard input ('-')");
    if (options.output && options.output->ends_with('/')) {
      Refuse("Standard input ('-') has no name in a folder: name a file after --output");
    }
  }

  void CheckReport(const ApplyOptions& options) const {
    if (!options.report) return;
    if (options.report->empty() || options.report == "-") {
      Refuse("The report is written to a file: name one after --report");
    }
    if (options.working.size() > 1) Refuse("A report is of one codebook: give one WORKING");
  }

  void CheckBackup(const ApplyOptions& options) const {
    if (!options.backupSuffix) return;
    if (options.backupSuffix->empty() || options.backupSuffix->find('/') != std::string::npos) {
      Refuse("--backup takes the end of a file's name, such as .old, not '" +
             *options.backupSuffix + "'");
    }
    if (options.dryRun || options.output == "-") {
      Refuse("--backup keeps a file that is replaced: give it with --in-place or --output FILE");
    }
  }

  ApplyOptions options_;
  std::string output_;
  std::string backupSuffix_;
  std::string report_;
};

}  // namespace

std::unique_ptr<Arguments> MakeApplyArguments(CLI::App& program) {
  return std::make_unique<ApplyArguments>(program);
}

}  // namespace applydic
