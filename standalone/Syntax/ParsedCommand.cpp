#include "standalone/Syntax/ParsedCommand.h"

#include <fmt/format.h>
#include <utf8proc.h>

#include <string_view>

#include "standalone/Host.h"
#include "standalone/HostCalls.h"
#include "standalone/Syntax/Keywords.h"
#include "standalone/Syntax/SyntaxError.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// A character of the command for a message; by its number if it would not be seen there.
std::string Visible(std::string_view typed) {
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

// Whether the token at the position can stand in a command; reports one that cannot.
bool CheckToken(std::span<const Token> tokens, std::size_t position) {
  const Token& token = tokens[position];
  switch (token.kind) {
    case Token::UnclosedString:
      ReportSyntaxError(token, "String ^1 not closed on its line (line ^2, column ^3)...",
                        {CommandTokens::Shown(tokens, position)});
      return false;
    case Token::UnclosedComment:
      ReportSyntaxError(token, "Comment ^1 not closed (line ^2, column ^3)...", {"/*"});
      return false;
    case Token::Other:
      ReportSyntaxError(token, "Unexpected character ^1 (line ^2, column ^3)...",
                        {Visible(token.typed)});
      return false;
    default:
      return true;
  }
}

// Splits the tokens of a command into its subcommands and reports what is wrong with them, in the
// order in which it stands there.
class Splitter {
 public:
  Splitter(std::span<const Token> tokens, const std::string* table, Subcommands& into)
      : tokens_(tokens), table_(table), into_(into) {}

  void Split() {
    while (tokens_[position_].kind != Token::End) {
      if (tokens_[position_].Is('/')) {
        ++position_;
      } else {
        TakeSubcommand();
      }
    }
  }

 private:
  void TakeSubcommand() {
    const std::string* name = CheckToken(tokens_, position_) ? TakeName() : nullptr;
    const std::size_t first = ++position_;
    while (!EndsSubcommand()) CheckToken(tokens_, position_++);
    if (name != nullptr) {
      into_.push_back({*name, tokens_.subspan(first, position_ + 1 - first)});
    }
  }

  bool EndsSubcommand() const {
    return tokens_[position_].kind == Token::End || tokens_[position_].Is('/');
  }

  // The name of the subcommand that starts here; null, reported, when it is none or there already.
  const std::string* TakeName() {
    const Token& token = tokens_[position_];
    const std::string* name =
        token.kind == Token::Name ? FindKeyword(table_, token.typed) : nullptr;
    if (name == nullptr) {
      ReportSyntaxError(token, "Subcommand ^1 not known (line ^3, column ^4). Expect ^2...",
                        {token.typed, Alternatives(table_)});
      return nullptr;
    }
    if (FindSubcommand(into_, *name) != nullptr) {
      ReportSyntaxError(token, "Subcommand ^1 given twice (line ^2, column ^3)...", {*name});
      return nullptr;
    }
    return name;
  }

  std::span<const Token> tokens_;
  const std::string* table_;
  Subcommands& into_;
  std::size_t position_ = 0;
};

}  // namespace

const Subcommand* FindSubcommand(const Subcommands& subcommands, const std::string& name) {
  for (const Subcommand& subcommand : subcommands) {
    if (subcommand.name == name) return &subcommand;
  }
  return nullptr;
}

}  // namespace velahost

using velahost::Called;

ParsedCommand::ParsedCommand(const std::string* subcommands) {
  Called("ParsedCommand::ParsedCommand");
  impl_ = std::make_unique<Impl>();
  velahost::Splitter(velahost::Host::Current().command.tokens, subcommands, impl_->subcommands)
      .Split();
}

ParsedCommand::~ParsedCommand() { velahost::Released("ParsedCommand::~ParsedCommand"); }

bool ParsedCommand::Seek(const std::string& subcommand) {
  Called("ParsedCommand::Seek");
  const velahost::Subcommand* found = velahost::FindSubcommand(impl_->subcommands, subcommand);
  impl_->current.reset();
  if (found != nullptr) impl_->current.emplace(found->tokens);
  return found != nullptr;
}

TokenSequenceBase& ParsedCommand::TokenSequence() {
  Called("ParsedCommand::TokenSequence");
  return *impl_->current;
}
