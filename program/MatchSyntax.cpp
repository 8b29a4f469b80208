#include "program/MatchSyntax.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "program/Failure.h"
#include "program/Output.h"
#include "standalone/Syntax/Tokenizer.h"

namespace applydic {
namespace {

using velahost::Dictionary;
using velahost::Proposal;
using velahost::Token;

std::string_view NameAt(const Dictionary& file, std::size_t column) {
  return file.variables[column]->name;
}

// A text in single quotes, as a command has it. Throws Failure where it cannot stand in one.
std::string Quoted(const std::string& text) {
  if (text.find_first_of("\r\n") != std::string::npos) {
    throw Failure("Cannot write commands that read " + text +
                  ": a command cannot name a file with a line end in its name. Rename the file.");
  }
  std::string quoted = "'";
  for (const char c : text) {
    quoted += c;
    if (c == '\'') quoted += c;
  }
  return quoted + "'";
}

// Whether a command can name the variable: not every name of a codebook is one of a command.
bool CanBeNamed(std::string_view name) {
  const std::vector<velahost::Command> commands =
      velahost::SplitCommands("x " + std::string(name) + " /y");
  const std::vector<Token>& tokens = commands.front().tokens;
  if (commands.size() != 1 || tokens.size() != 5 || tokens[1].typed != name) return false;
  const bool isKeyword = tokens[1].IsKeyword("TO") || tokens[1].IsKeyword("ALL");
  return (tokens[1].kind == Token::Name || tokens[1].kind == Token::Number) && !isKeyword;
}

// A text that neither ends a comment nor breaks its line.
std::string InComment(std::string_view text) {
  std::string safe;
  for (const char c : MakeVisible(text)) {
    if (c == '/' && !safe.empty() && safe.back() == '*') safe += ' ';
    safe += c;
  }
  return safe;
}

// The score with two digits, and never more than it is.
std::string ScoreText(double score) { return fmt::format("{:.2f}", std::floor(score * 100) / 100); }

// Widths of names in characters, so that the commands stand one below the other; long names stick
// out.
class Columns {
 public:
  Columns(const std::vector<Proposal>& proposals, const MatchFiles& files) {
    constexpr std::size_t kWidest = 24;
    for (const Proposal& proposal : proposals) {
      Widen(old_, NameAt(files.oldFile, proposal.oldColumn), kWidest);
      Widen(new_, NameAt(files.newFile, proposal.newColumn), kWidest);
    }
  }
  std::size_t Old() const { return old_; }
  std::size_t New() const { return new_; }

 private:
  static void Widen(std::size_t& width, std::string_view name, std::size_t most) {
    width = std::max(width, std::min(most, WidthOf(MakeVisible(name))));
  }
  std::size_t old_ = 0;
  std::size_t new_ = 0;
};

std::string Padded(std::string_view name, std::size_t width) {
  std::string padded(name);
  const std::size_t taken = WidthOf(MakeVisible(name));
  if (taken < width) padded.append(width - taken, ' ');
  return padded;
}

std::string CountText(std::size_t count, const char* what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

void AddHead(const velahost::Matches& matches, const MatchFiles& files, std::string& text) {
  const auto comment = [&text](std::string_view line) {
    text += "/* " + InComment(line) + " */\n";
  };
  const auto certain =
      static_cast<std::size_t>(std::count_if(matches.proposals.begin(), matches.proposals.end(),
                                             [](const Proposal& p) { return p.isCertain; }));
  comment("Which variables of " + files.oldName + " those of " + files.newName + " come from.");
  comment(fmt::format("{}, the best first, each with how likely it is. {} uncertain and commented",
                      CountText(matches.proposals.size(), "proposal"),
                      matches.proposals.size() - certain));
  comment("out: of those that are right, take away the signs with the question marks.");
  comment("Variables that both files have by the same name are not listed.");
  const std::string language = files.language ? "--lang " + *files.language + " " : "";
  comment("To run it: applydic apply " + language + "-f THIS_FILE -o RESULT " + files.newName);
}

// Everything of the line but the reasons.
std::string CommandText(const Proposal& proposal, const MatchFiles& files, const Columns& columns,
                        const std::string& from) {
  const std::string_view oldName = NameAt(files.oldFile, proposal.oldColumn);
  const std::string_view newName = NameAt(files.newFile, proposal.newColumn);
  if (!CanBeNamed(oldName) || !CanBeNamed(newName)) {
    return fmt::format("/* {} -> {}: a name that no command can have */", InComment(oldName),
                       InComment(newName));
  }
  std::string command =
      fmt::format("FROM {} /SOURCE VARIABLES={} /TARGET VARIABLES={} /FILEINFO.", from,
                  Padded(oldName, columns.Old()), Padded(newName, columns.New()));
  if (proposal.isCertain) return command;
  if (command.find("*/") != std::string::npos) {
    return fmt::format("/* {} -> {}: uncertain, and the file's name cannot stand in a comment */",
                       InComment(oldName), InComment(newName));
  }
  return "/*? " + command + " ?*/";
}

}  // namespace

std::string ReasonText(const Proposal& proposal, const MatchFiles& files) {
  std::string text = fmt::format("{}", fmt::join(proposal.reasons, "; "));
  for (const Proposal::Rival& rival : proposal.rivals) {
    if (!text.empty()) text += "; ";
    text += rival.isOld ? fmt::format("or from {}", NameAt(files.oldFile, rival.column))
                        : fmt::format("or to {}", NameAt(files.newFile, rival.column));
    text += fmt::format(" ({})", ScoreText(rival.score));
  }
  return text;
}

std::string SyntaxText(const velahost::Matches& matches, const MatchFiles& files) {
  const std::string from = Quoted(files.oldName);
  const Columns columns(matches.proposals, files);
  std::string text;
  AddHead(matches, files, text);
  for (const Proposal& proposal : matches.proposals) {
    text += CommandText(proposal, files, columns, from);
    text +=
        " /* " + ScoreText(proposal.score) + " " + InComment(ReasonText(proposal, files)) + " */\n";
  }
  return text;
}

}  // namespace applydic
