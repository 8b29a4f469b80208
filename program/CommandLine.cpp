#include "program/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <vector>

#include "program/Failure.h"

namespace applydic {
namespace {

constexpr const char* kDescription =
    "Applies the dictionary of one DDI Codebook file to another: labels, missing values, formats,\n"
    "measurement levels, sets, documents and whole variables.";

constexpr const char* kExample =
    "Example:\n"
    "  applydic apply -c \"FROM 'survey_2025.xml'\" -o labelled.xml survey_2026.xml\n"
    "\n"
    "'applydic apply --help' and 'applydic show --help' say more.";

constexpr const char* kApplyDescription = "Apply a dictionary to the working codebook.";

constexpr const char* kApplyExample =
    "Examples:\n"
    "  applydic apply -c \"FROM 'survey_2025.xml'\" -o labelled.xml survey_2026.xml\n"
    "  applydic apply -c \"FROM 'survey_2025.xml' /VARINFO VALLABELS=MERGE\" -n survey_2026.xml\n"
    "  applydic apply -f relabel.txt -i 'survey_2026.xml#F2'\n"
    "\n"
    "Warnings and errors go to standard error, an account of what changed to standard output.\n"
    "Exit status: 0 done, warnings included; 1 an error was reported, nothing is written;\n"
    "2 wrong usage, or a file that cannot be read or written.";

constexpr const char* kShowDescription = "Show the dictionary of a codebook.";

constexpr const char* kShowExample =
    "Examples:\n"
    "  applydic show survey_2026.xml\n"
    "  applydic show --json 'survey_2026.xml#F2'";

class CommandLine {
 public:
  CommandLine() : app_(kDescription, "applydic") {
    app_.footer(kExample);
    app_.set_version_flag("--version", "applydic " APPLYDIC_VERSION, "Print the version and exit");
    app_.set_help_flag("-h,--help", "Print this help and exit");
    app_.require_subcommand(1);
    app_.get_formatter()->label("REQUIRED", "");
    DeclareApply();
    DeclareShow();
  }

  Request Read(int argc, const char* const* argv) {
    try {
      app_.parse(ArgumentsOf(argc, argv));
    } catch (const CLI::CallForHelp&) {
      return Answer{app_.help()};
    } catch (const CLI::CallForVersion&) {
      return Answer{app_.version() + "\n"};
    } catch (const CLI::ParseError& error) {
      Refuse(error.what());
    }
    if (showCommand_->parsed()) return ReadShow();
    return ReadApply();
  }

 private:
  // The arguments without the program's name, the last one first, as the parser takes them. To it
  // "++" ends a subcommand; here it is the name of a file.
  static std::vector<std::string> ArgumentsOf(int argc, const char* const* argv) {
    std::vector<std::string> arguments;
    for (int i = argc - 1; i > 0; --i) {
      arguments.emplace_back(std::string_view(argv[i]) == "++" ? "./++" : argv[i]);
    }
    return arguments;
  }

  void DeclareApply() {
    applyCommand_ = app_.add_subcommand("apply", kApplyDescription);
    applyCommand_->footer(kApplyExample);
    applyCommand_->add_option("WORKING", apply_.working, "The working codebook, or WORKING#ID")
        ->required()
        ->type_name("");
    const std::string from = "What to do (exactly one)";
    applyCommand_->add_option("-c,--command", command_, "The command")
        ->type_name("TEXT")
        ->group(from);
    applyCommand_
        ->add_option("-f,--syntax", syntaxFile_,
                     "Commands from a file, 16 MB at most ('-': standard input)")
        ->type_name("FILE")
        ->group(from);
    const std::string to = "Where to (exactly one)";
    applyCommand_->add_option("-o,--output", output_, "Write the changed codebook to a file")
        ->type_name("FILE")
        ->group(to);
    applyCommand_->add_flag("-i,--in-place", apply_.inPlace, "Write it over WORKING")
        ->disable_flag_override()
        ->group(to);
    applyCommand_->add_flag("-n,--dry-run", apply_.dryRun, "Write nothing")
        ->disable_flag_override()
        ->group(to);
    applyCommand_->add_flag("--json", apply_.json, "Print the outcome as JSON")
        ->disable_flag_override();
    DeclareLanguage(*applyCommand_);
  }

  void DeclareShow() {
    showCommand_ = app_.add_subcommand("show", kShowDescription);
    showCommand_->footer(kShowExample);
    showCommand_->add_option("FILE", show_.file, "The codebook, or FILE#ID")
        ->required()
        ->type_name("");
    showCommand_->add_flag("--json", show_.json, "Print the dictionary as JSON")
        ->disable_flag_override();
    DeclareLanguage(*showCommand_);
  }

  void DeclareLanguage(CLI::App& command) {
    command
        .add_option(
            "--lang", language_,
            "The language of the labels, such as en; without it that of the codebook's first")
        ->type_name("CODE");
  }

  Request ReadApply() {
    apply_.command = ValueOf("--command", command_);
    apply_.syntaxFile = ValueOf("--syntax", syntaxFile_);
    apply_.output = ValueOf("--output", output_);
    apply_.language = Language(*applyCommand_);
    if (apply_.command.has_value() == apply_.syntaxFile.has_value()) {
      Refuse("Give exactly one of --command and --syntax");
    }
    const int destinations =
        (apply_.output ? 1 : 0) + (apply_.inPlace ? 1 : 0) + (apply_.dryRun ? 1 : 0);
    if (destinations != 1) {
      Refuse("Give exactly one of --output, --in-place and --dry-run");
    }
    if (apply_.working.empty()) Refuse("WORKING is empty: name a file");
    if (apply_.syntaxFile == "") Refuse("The name after --syntax is empty: name a file");
    if (apply_.output == "") Refuse("The name after --output is empty: name a file");
    if (apply_.output == "-") {
      Refuse("--output - names no file: standard output has the account (a file '-' is './-')");
    }
    return apply_;
  }

  Request ReadShow() {
    if (show_.file.empty()) Refuse("FILE is empty: name a file");
    show_.language = Language(*showCommand_);
    return show_;
  }

  // The language that --lang names. It goes into the document, so it must look like one.
  std::optional<std::string> Language(const CLI::App& command) const {
    if (command.count("--lang") == 0) return std::nullopt;
    const bool looksLikeOne =
        !language_.empty() && std::all_of(language_.begin(), language_.end(), [](char c) {
          return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                 c == '-';
        });
    if (!looksLikeOne) {
      Refuse("--lang takes the code of a language, such as en or pt-BR, not '" + language_ + "'");
    }
    return language_;
  }

  std::optional<std::string> ValueOf(const std::string& option, const std::string& value) const {
    if (applyCommand_->count(option) == 0) return std::nullopt;
    return value;
  }

  [[noreturn]] void Refuse(const std::string& reason) const {
    const std::string help = applyCommand_->parsed()  ? "applydic apply --help"
                             : showCommand_->parsed() ? "applydic show --help"
                                                      : "applydic --help";
    throw Failure(reason + "; see '" + help + "'.");
  }

  CLI::App app_;
  CLI::App* applyCommand_ = nullptr;
  CLI::App* showCommand_ = nullptr;
  ApplyOptions apply_;
  ShowOptions show_;
  std::string command_;
  std::string syntaxFile_;
  std::string output_;
  std::string language_;
};

}  // namespace

Request ReadCommandLine(int argc, const char* const* argv) {
  return CommandLine().Read(argc, argv);
}

}  // namespace applydic
