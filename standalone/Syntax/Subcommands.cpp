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
    const std::string* name = CheckToken() ? TakeName() : nullptr;
    const std::size_t first = ++position_;
    for (; !EndsSubcommand(); ++position_) CheckToken();
    if (name != nullptr) {
      subcommands_.push_back({*name, tokens_.subspan(first, position_ + 1 - first)});
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
             {ShownText(token, mayBePassword_)});
        return false;
      case Token::UnclosedComment:
        Fail("Comment ^1 not closed (line ^2, column ^3)...", {"/*"});
        return false;
      case Token::Other:
        Fail("Unexpected character ^1 (line ^2, column ^3)...",
             {mayBePassword_ ? ShownText(token, true) : VisibleCharacter(token.typed)});
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
           {token.typed, Alternatives(table_)});
      return nullptr;
    }
    if (FindSubcommand(subcommands_, *name) != nullptr) {
      Fail("Subcommand ^1 given twice (line ^2, column ^3)...", {*name});
      return nullptr;
    }
    return name;
  }

  void Fail(const std::string& text, const std::vector<std::string_view>& arguments) {
    ReportSyntaxError(diagnostics_, tokens_[position_], text, arguments);
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
  const std::array<std::string, 7> table = {"FROM",     "SOURCE",  "TARGET", "NEWVARS",
                                            "FILEINFO", "VARINFO", ""};
  Diagnostics diagnostics;
  const Subcommands subcommands = SplitSubcommands(command.tokens, table.data(), diagnostics);
  const Subcommand* const from = FindSubcommand(subcommands, "FROM");
  if (from == nullptr || diagnostics.FatalError()) return std::nullopt;
  const std::span<const Token> tokens = from->tokens.subspan(from->tokens.front().Is('=') ? 1 : 0);
  const Token& file = tokens.front();
  if (file.kind != Token::String || !EndsWell(tokens.subspan(1))) return std::nullopt;
  std::string name = file.Text();
  if (name.empty()) return std::nullopt;
  return name;
}

bool IsPasswordKeyword(const Token& token) {
  return token.kind == Token::Name && Capitals(token.typed.substr(0, 4)) == "PASS";
}

std::string ShownText(const Token& token, bool mayBePassword) {
  if (!mayBePassword) return std::string(token.typed);
  const bool isString = token.kind == Token::String || token.kind == Token::UnclosedString;
  return isString ? std::string(token.typed.substr(0, 1)) : "(not shown)";
}

}  // namespace velahost
