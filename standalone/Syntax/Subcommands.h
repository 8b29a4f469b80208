#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

// A subcommand of a command.
struct Subcommand {
  std::string name;  // as in the table
  // The tokens after its name and the one that ends it, a slash or the command's end.
  std::span<const Token> tokens;
  int line = 1;  // of its name
};

// The subcommands of a command, no name twice, in the command's order.
using Subcommands = std::vector<Subcommand>;

// What to do where a word stands that begins a subcommand or a command, but not after a slash or a
// period; empty where it is no such word. before is the token in front of it.
std::string AdviceOnSeparator(const Token& word, const Token& before);

// Splits the tokens of a command by a table of subcommands (see Keywords.h), and reports what is
// wrong with them, in the order in which it stands there. The tokens outlive the result.
Subcommands SplitSubcommands(std::span<const Token> tokens, const std::string* table,
                             Diagnostics& diagnostics);

// The subcommand of that name; null when there is none.
const Subcommand* FindSubcommand(const Subcommands& subcommands, const std::string& name);

// The file that FROM names in a command, to be read ahead of its run; nothing where the command
// has an error that ends the run before the file is opened, or names none.
std::optional<std::string> SourceNamedIn(const Command& command);

// Whether what follows the token in its subcommand is meant as a password: PASSWORD, or a name that
// starts in the same way.
bool IsPasswordKeyword(const Token& token);
// A token for a message, as it was typed; where it may belong to a password, a quote at most.
std::string ShownText(const Token& token, bool mayBePassword);
// The text of commands that were split from one text, with "(not shown)" in the place of all that
// may belong to a password. REQUIRES: at least one command.
std::string TextWithoutPasswords(const std::vector<Command>& commands);

}  // namespace velahost
