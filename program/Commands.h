#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standalone/Syntax/Tokenizer.h"

namespace applydic {

// Where the commands of a run stand: exactly one of the two.
struct CommandOrigin {
  std::optional<std::string> command;     // the text itself
  std::optional<std::string> syntaxFile;  // a file or a pipe; "-" is standard input
};

// Reads the commands: at least one, which may be empty. Throws Failure.
std::vector<velahost::Command> ReadCommands(const CommandOrigin& origin);

}  // namespace applydic
