#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/Syntax.h"
#include "standalone/Syntax/CommandTokens.h"
#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

// A subcommand of the command being run.
struct Subcommand {
  std::string name;  // as in the table
  // The tokens behind its name and the one that ends it, a slash or the command's end.
  std::span<const Token> tokens;
};

// The subcommands of a command, no name twice, in the command's order.
using Subcommands = std::vector<Subcommand>;

// The subcommand of that name; null when there is none.
const Subcommand* FindSubcommand(const Subcommands& subcommands, const std::string& name);

}  // namespace velahost

struct ParsedCommand::Impl {
  velahost::Subcommands subcommands;
  std::optional<velahost::CommandTokens> current;
};
