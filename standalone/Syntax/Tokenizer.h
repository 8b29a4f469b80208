#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Command text, split into tokens and commands.

namespace velahost {

struct Token {
  enum Kind { End, Name, Number, String, Delimiter, UnclosedString, UnclosedComment, Other };

  Kind kind = End;
  std::string typed;  // as it stands in the text, quotes included
  // What it says: of a name the typed text in upper case, of a string what stands between the
  // quotes with doubled quotes made one, else the typed text.
  std::string text;
  // Where it starts in the whole text, from 1; columns in characters.
  int line = 1;
  int column = 1;

  bool Is(char delimiter) const { return kind == Delimiter && typed[0] == delimiter; }
};

// One command: its tokens, without the period and without a command name, ended by a token of the
// kind End that stands where the command ends.
struct Command {
  std::vector<Token> tokens;
};

// Splits a text into its commands. A command ends with a period at the end of a line (white space
// and comments may follow it there) or with the text; commands without a token are left out, but
// there is always one. Nothing is refused here: what is no token is a token of its kind.
std::vector<Command> SplitCommands(std::string_view text);

}  // namespace velahost
