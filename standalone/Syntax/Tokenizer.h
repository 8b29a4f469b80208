#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Command text, split into tokens and commands.

namespace velahost {

struct Token {
  enum Kind { End, Name, Number, String, Delimiter, UnclosedString, UnclosedComment, Other };

  Kind kind = End;
  // As it stands in the text, quotes included. It points into the text that its command holds.
  std::string_view typed;
  // Where it starts in the whole text, from 1; columns in characters.
  int line = 1;
  int column = 1;

  // What it says: of a name the typed text with the letters of keywords as capitals, of a string
  // what stands between the quotes with doubled quotes made one, else the typed text.
  std::string Text() const;

  // Whether it has no place in any command: a character that starts no token, or what is not
  // closed.
  bool IsWrong() const {
    return kind == UnclosedString || kind == UnclosedComment || kind == Other;
  }
  // Whether it is a name that abbreviates the keyword (see Keywords.h).
  bool IsKeyword(std::string_view keyword) const;
  bool Is(char delimiter) const { return kind == Delimiter && typed[0] == delimiter; }
};

// One command: its tokens, without the period and without a command name, ended by a token of the
// kind End that stands where the command ends.
struct Command {
  std::vector<Token> tokens;
  std::shared_ptr<const std::string> text = {};  // that the tokens stand in; all commands share it
};

// Splits a text into its commands. A byte order mark before the first is passed over. A command
// ends with a period at the end of a line (white space and comments may follow it there) or with
// the text; commands without a token are left out, but there is always one. Nothing is refused
// here: what is no token is a token of its kind. A command has at most as many of those
// as are reported.
std::vector<Command> SplitCommands(std::string text);

}  // namespace velahost
