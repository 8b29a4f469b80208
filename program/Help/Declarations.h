#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace applydic {

// An option of a command, as it is declared.
struct DeclaredOption {
  std::vector<std::string> names;  // with their hyphens, short ones first
  std::string kind;                // of the text that it takes, as FILE; empty for a flag
  bool isTextOptional = false;     // the text follows = or is left out
  std::string description;
};

// A command of the program, as it is declared.
struct DeclaredCommand {
  std::string name;
  std::string description;
  std::string examples;
  std::vector<std::string> arguments;  // as the usage has them, in order
  std::vector<DeclaredOption> options;
};

// The commands of a program, in the order in which they were declared.
std::vector<DeclaredCommand> CommandsOf(const CLI::App& program);

// The options of the program itself.
std::vector<DeclaredOption> OptionsOf(const CLI::App& app);

}  // namespace applydic
