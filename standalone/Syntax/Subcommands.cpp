#include "standalone/Syntax/Subcommands.h"

#include <fmt/format.h>
#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "standalone/Syntax/Keywords.h"
#include "standalone/Syntax/SyntaxError.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// A character of the command for a message; by its number if it would not be seen there.
std::string VisibleCharacter(std::string_view typed) {
  const int code = CharacterAt(typed, 0).code;
  if (code < 0) return fmt::format("byte 0x{:02X}", static_cast<unsigned char>(typed[0]));
  switch (utf8proc_category(code)) {
    case UTF8PROC_CATEGORY_MN:
    case UTF8PROC_CATEGORY_ME:
    case UTF8PROC_CATEGORY_ZS:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_CN:
      return fmt::format("U+{:04X}", code);
    default:
      return std::string(typed);
  }
}

// The subcommands of the command, for what is read ahead of it and for advice.
const std::array<std::string, 7> kTable = {"FROM",     "SOURCE",  "TARGET", "NEWVARS",
                                           "FILEINFO", "VARINFO", ""};
constexpr const char* kFirst = "FROM";  // with which most commands begin
constexpr const char* kMissingPeriod =
    "If another command begins here, end the one before with a period at the end of its line.";

// Whether a word that begins commands begins its line, without a slash before it.
bool BeginsCommand(const Token& word, const Token& before) {
  if (word.kind != Token::Name || before.line == word.line || before.Is('/')) return false;
  const std::string capitals = Capitals(word.typed);
  return capitals == kFirst || capitals == "APPLY";
}

// What to do about a character that starts no token.
std::string AdviceOnCharacter(const Token& token) {
  const std::string_view typed = token.typed;
  if (typed == ",") return "Separate names by blanks.";
  if (typed == "-" || typed == "–") return "A range of variables is written first TO last.";
  if (typed == ";") return "A command ends with a period at the end of a line.";
  if (typed == "‘" || typed == "’" || typed == "“" || typed == "”" || typed == "„") {
    return "Quotes are straight ones: ' or \".";
  }
  if (typed == "\\")
    return "The shell may have left it there: put the command into a file for --syntax.";
  return {};
}

// Splits the tokens of a command into its subcommands.
class Splitter {
 public:
  Splitter(std::span<const Token> tokens, const std::string* table, Diagnostics& diagnostics)
      : tokens_(tokens), table_(table), diagnostics_(diagnostics) {}

  Subcommands Split() {
    while (tokens_[position_].kind != Token::End) {
      if (tokens_[position_].Is('/')) {
        ++position_;
      } else {
        TakeSubcommand();
      }
    }
    return std::move(subcommands_);
  }

 private:
  void TakeSubcommand() {
    mayBePassword_ = false;
    const int line = tokens_[position_].line;
    const std::string* name = CheckToken() ? TakeName() : nullptr;
    const std::size_t first = ++position_;
    for (; !EndsSubcommand(); ++position_) CheckToken();
    if (name != nullptr) {
      subcommands_.push_back({*name, tokens_.subspan(first, position_ + 1 - first), line});
    }
  }

  bool EndsSubcommand() const {
    return tokens_[position_].kind == Token::End || tokens_[position_].Is('/');
  }

  // Whether the current token can stand in a command; reports one that cannot.
  bool CheckToken() {
    const Token& token = tokens_[position_];
    switch (token.kind) {
      case Token::UnclosedString:
        Fail("String ^1 not closed on its line (line ^2, column ^3)...",
             {ShownText(token, mayBePassword_)},
             "Write a quote inside a string twice, or put the string into quotes of the other "
             "kind.");
        return false;
      case Token::UnclosedComment:
        Fail("Comment ^1 not closed (line ^2, column ^3)...", {"/*"});
        return false;
      case Token::Other:
        Fail("Unexpected character ^1 (line ^2, column ^3)...",
             {mayBePassword_ ? ShownText(token, true) : VisibleCharacter(token.typed)},
             mayBePassword_ ? "" : AdviceOnCharacter(token));
        return false;
      default:
        mayBePassword_ = mayBePassword_ || IsPasswordKeyword(token);
        return true;
    }
  }

  // The name of the subcommand that starts here; null, reported, when it is none or there already.
  const std::string* TakeName() {
    const Token& token = tokens_[position_];
    const std::string* name =
        token.kind == Token::Name ? FindKeyword(table_, token.typed) : nullptr;
    if (name == nullptr) {
      Fail("Subcommand ^1 not known (line ^3, column ^4). Expect ^2...",
           {token.typed, Alternatives(table_)}, AdviceOnName(token));
      return nullptr;
    }
    if (FindSubcommand(subcommands_, *name) != nullptr) {
      Fail("Subcommand ^1 given twice (line ^2, column ^3)...", {*name},
           HoldsSecondCommand() ? kMissingPeriod : "");
      return nullptr;
    }
    return name;
  }

  // Whether a word that begins commands begins a line up to here, other than the first.
  bool HoldsSecondCommand() const {
    for (std::size_t i = 1; i <= position_; ++i) {
      if (BeginsCommand(tokens_[i], tokens_[i - 1])) return true;
    }
    return false;
  }

  std::string AdviceOnName(const Token& token) const {
    const bool beginsLine = position_ == 0 || tokens_[position_ - 1].line < token.line;
    if (token.Is('*') && beginsLine) return "A comment is written /* so */.";
    if (token.kind == Token::String) return "The name of a file stands after FROM.";
    return DidYouMean(token.typed, KeywordsOf(table_));
  }

  void Fail(const std::string& text, const std::vector<std::string_view>& arguments,
            const std::string& advice = "") {
    ReportSyntaxError(diagnostics_, tokens_[position_], text, arguments, advice);
  }

  std::span<const Token> tokens_;
  const std::string* table_;
  Diagnostics& diagnostics_;
  Subcommands subcommands_;
  std::size_t position_ = 0;
  bool mayBePassword_ = false;  // the current token may belong to a password
};

// Whether the tokens of FROM after the file say nothing more, or give a password.
bool EndsWell(std::span<const Token> rest) {
  if (rest.size() == 1) return true;
  const Token& keyword = rest.front();
  if (keyword.kind != Token::Name || !keyword.Text().starts_with("PASSWORD")) return false;
  rest = rest.subspan(rest[1].Is('=') ? 2 : 1);
  const std::string text = rest.front().Text();
  const bool isString = rest.front().kind == Token::String;
  const bool isPassword = isString ? !text.empty() : text.starts_with("NONE");
  return isPassword && rest.size() == 2;
}

}  // namespace

Subcommands SplitSubcommands(std::span<const Token> tokens, const std::string* table,
                             Diagnostics& diagnostics) {
  return Splitter(tokens, table, diagnostics).Split();
}

const Subcommand* FindSubcommand(const Subcommands& subcommands, const std::string& name) {
  const auto found =
      std::find_if(subcommands.begin(), subcommands.end(),
                   [&name](const Subcommand& subcommand) { return subcommand.name == name; });
  return found == subcommands.end() ? nullptr : &*found;
}

std::optional<std::string> SourceNamedIn(const Command& command) {
  Diagnostics diagnostics;
  const Subcommands subcommands = SplitSubcommands(command.tokens, kTable.data(), diagnostics);
  const Subcommand* const from = FindSubcommand(subcommands, "FROM");
  if (from == nullptr || diagnostics.FatalError()) return std::nullopt;
  const std::span<const Token> tokens = from->tokens.subspan(from->tokens.front().Is('=') ? 1 : 0);
  const Token& file = tokens.front();
  if (file.kind != Token::String || !EndsWell(tokens.subspan(1))) return std::nullopt;
  std::string name = file.Text();
  if (name.empty()) return std::nullopt;
  return name;
}

std::string AdviceOnSeparator(const Token& word, const Token& before) {
  if (BeginsCommand(word, before)) return kMissingPeriod;
  const auto* const found = std::find(kTable.begin(), kTable.end() - 1, Capitals(word.typed));
  if (found == kTable.end() - 1) return {};
  return "If this is the subcommand " + *found + ", put a slash before it.";
}

bool IsPasswordKeyword(const Token& token) {
  return token.kind == Token::Name && Capitals(token.typed.substr(0, 4)) == "PASS";
}

std::string ShownText(const Token& token, bool mayBePassword) {
  if (!mayBePassword) return std::string(token.typed);
  const bool isString = token.kind == Token::String || token.kind == Token::UnclosedString;
  return isString ? std::string(token.typed.substr(0, 1)) : "(not shown)";
}

namespace {

// The tokens of a command that may belong to a password: what follows such a keyword in its
// subcommand. In a list of variables, where a name may look like the keyword, that is strings
// alone.
std::vector<Token> PasswordTokens(const Command& command) {
  std::vector<Token> found;
  bool startsSubcommand = true;
  bool isList = false;
  bool mayBePassword = false;
  for (const Token& token : command.tokens) {
    const bool isString = token.kind == Token::String || token.kind == Token::UnclosedString;
    if (token.kind == Token::End || token.Is('/')) {
      startsSubcommand = true;
      mayBePassword = false;
      continue;
    }
    if (startsSubcommand) isList = token.IsKeyword("SOURCE") || token.IsKeyword("TARGET");
    startsSubcommand = false;
    if (mayBePassword && (isString || !isList) && !token.IsKeyword("NONE")) found.push_back(token);
    mayBePassword = mayBePassword || IsPasswordKeyword(token);
  }
  return found;
}

}  // namespace

std::string TextWithoutPasswords(const std::vector<Command>& commands) {
  const std::string_view text = *commands.front().text;
  std::string shown;
  std::size_t position = 0;
  for (const Command& command : commands) {
    for (const Token& token : PasswordTokens(command)) {
      const auto place = static_cast<std::size_t>(token.typed.data() - text.data());
      shown += text.substr(position, place - position);
      shown += "(not shown)";
      position = place + token.typed.size();
    }
  }
  return shown += text.substr(position);
}

}  // namespace velahost
