#include "program/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "program/CommandLine/Arguments.h"
#include "program/Failure.h"
#include "standalone/Text/Suggestion.h"

namespace applydic {
namespace {

constexpr const char* kDescription =
    "Applies the dictionary of one DDI Codebook file to another: labels, missing values, formats,\n"
    "measurement levels, sets, documents and whole variables.";

constexpr const char* kExample =
    "Example:\n"
    "  applydic apply -c \"FROM 'survey_2025.xml'\" -o labelled.xml survey_2026.xml\n"
    "\n"
    "'applydic help apply' says more of apply, and so on; 'applydic help command' of what is\n"
    "written after --command, 'applydic help messages' of each message.";

// The arguments without the program's name, the last one first, as the parser takes them. To it
// "++" ends a subcommand and "-#ID" is an option; here they are a file, and standard input.
std::vector<std::string> ReversedArguments(int argc, const char* const* argv) {
  std::vector<std::string> arguments;
  for (int i = argc - 1; i > 0; --i) {
    const std::string_view argument = argv[i];
    if (argument == "++") {
      arguments.emplace_back("./++");
    } else if (argument.starts_with("-#")) {
      arguments.push_back("/dev/stdin" + std::string(argument.substr(1)));
    } else {
      arguments.emplace_back(argument);
    }
  }
  return arguments;
}

// Shows a flag that may be given a text as --flag[=TEXT].
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_option_name(const CLI::Option* option, bool isPositional) const override {
    std::string name = Formatter::make_option_name(option, isPositional);
    const std::size_t brace = name.find('{');  // behind it: what it is without a text
    if (brace == std::string::npos) return name;
    return name.substr(0, brace) + "[=" + option->get_type_name() + "]";
  }
  std::string make_option_opts(const CLI::Option* option) const override {
    return option->get_expected_max() == 0 ? "" : Formatter::make_option_opts(option);
  }
};

class CommandLine {
 public:
  CommandLine() : program_(kDescription, "applydic") {
    program_.formatter(std::make_shared<HelpFormatter>());
    program_.footer(kExample);
    program_.set_version_flag("--version", "applydic " APPLYDIC_VERSION,
                              "Print the version and exit");
    program_.set_help_flag("-h,--help", "Print this help and exit");
    program_.require_subcommand(1);
    program_.get_formatter()->label("REQUIRED", "");
    for (const auto make : {MakeApplyArguments, MakeCheckArguments, MakeDiffArguments,
                            MakeMatchArguments, MakeShowArguments, MakeHelpArguments}) {
      commands_.push_back(make(program_));
    }
  }

  Request Read(int argc, const char* const* argv) {
    try {
      program_.parse(ReversedArguments(argc, argv));
    } catch (const CLI::CallForHelp&) {
      return Answer{program_.help()};
    } catch (const CLI::CallForVersion&) {
      return Answer{program_.version() + "\n"};
    } catch (const CLI::ParseError& error) {
      for (const auto& command : commands_) {
        if (command->Given()) command->Refuse(error.what());
      }
      RefuseCommand(argc, argv, error.what());
    }
    // The parser required one.
    const auto given = std::find_if(commands_.begin(), commands_.end(),
                                    [](const auto& command) { return command->Given(); });
    return (*given)->Read();
  }

 private:
  // The first argument is no command, or there is none.
  [[noreturn]] void RefuseCommand(int argc, const char* const* argv,
                                  const std::string& reason) const {
    constexpr const char* kHelp = "see 'applydic --help'.";
    if (argc < 2 || argv[1][0] == '-') throw Failure(reason + "; " + kHelp);
    const std::string first = argv[1];
    std::vector<std::string> names;
    for (const CLI::App* command : program_.get_subcommands({})) {
      names.push_back(command->get_name());
    }
    const std::string_view nearest = velahost::Nearest(first, {names.begin(), names.end()});
    if (!nearest.empty()) {
      throw Failure("There is no command '" + first + "'. Did you mean '" + std::string(nearest) +
                    "'? Else " + kHelp);
    }
    const bool isFile = first.find_first_of("./#") != std::string::npos;
    const std::string advice =
        isFile ? "Name a command first, as in 'applydic show " + first + "'; " : "";
    throw Failure("There is no command '" + first + "'. " + advice + kHelp);
  }

  CLI::App program_;
  std::vector<std::unique_ptr<Arguments>> commands_;  // in the order of the help
};

}  // namespace

Request ReadCommandLine(int argc, const char* const* argv) {
  return CommandLine().Read(argc, argv);
}

}  // namespace applydic
