#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "host/Syntax.h"
#include "standalone/HostCalls.h"
#include "standalone/Syntax/Keywords.h"
#include "standalone/Syntax/ParsedCommand.h"
#include "standalone/Syntax/SyntaxError.h"
#include "standalone/Syntax/VariableList.h"

using velahost::Called;
using velahost::Token;

namespace velahost {
namespace {

// The keyword whose value is a list, to the end of the subcommand.
constexpr const char* kVariables = "VARIABLES";

// What Value gives for a keyword that is absent, or stands without a value.
constexpr const char* kAbsent = KeywordSubcommand::ValueAbsent;
constexpr const char* kWithoutValue = KeywordSubcommand::ValueBare;

struct GivenKeyword {
  std::string keyword;  // as in the table
  std::optional<std::string> value;
};

// What a subcommand gives.
struct Keywords {
  std::vector<GivenKeyword> given;  // no keyword twice
  std::span<const Token> list;      // what stands behind VARIABLES=
  bool hasErrors = false;

  const GivenKeyword* Find(const std::string& keyword) const {
    for (const GivenKeyword& entry : given) {
      if (entry.keyword == keyword) return &entry;
    }
    return nullptr;
  }
};

// The value that a token gives: without its quotes, save that a string never reads as one of the
// two reserved texts.
std::string ValueIn(const Token& token) {
  std::string typed(token.typed);
  if (token.kind != Token::String) return typed;
  std::string text = token.Text();
  return text == kAbsent || text == kWithoutValue ? typed : text;
}

std::string Joined(std::span<const Token> tokens) {
  std::string text;
  for (const Token& token : tokens) {
    if (!text.empty()) text += ' ';
    text += token.typed;
  }
  return text;
}

// Reads the tokens of a subcommand as "keyword [= value]", again and again.
class KeywordReader {
 public:
  KeywordReader(const Subcommand& subcommand, const std::string* table, Keywords& into)
      : name_(subcommand.name),
        tokens_(subcommand.tokens.first(subcommand.tokens.size() - 1)),
        table_(table),
        into_(into) {}

  void Read() {
    while (!AtEnd()) {
      const std::string* keyword = TakeKeyword();
      const std::optional<std::string> value = TakeValue(keyword);
      if (keyword != nullptr) into_.given.push_back({*keyword, value});
    }
  }

 private:
  bool AtEnd() const { return position_ == tokens_.size(); }
  bool AtEquals() const { return !AtEnd() && tokens_[position_].Is('='); }
  bool TakesList() const { return FindKeyword(table_, kVariables) != nullptr; }

  // The keyword that stands here; null, reported, when it is none or there already.
  const std::string* TakeKeyword() {
    const Token& token = tokens_[position_++];
    const std::string* keyword =
        token.kind == Token::Name ? FindKeyword(table_, token.typed) : nullptr;
    if (keyword == nullptr) {
      // What follows an equals sign out of place belongs to the same mistake.
      if (token.Is('=') && !AtEnd()) ++position_;
      if (table_->empty()) {
        Fail(token, "Subcommand ^2 takes no keywords. Found ^1 (line ^3, column ^4)...",
             {token.typed, name_});
      } else {
        Fail(token, "Keyword ^1 not known in ^2 (line ^4, column ^5). Expect ^3...",
             {token.typed, name_, Alternatives(table_)});
      }
      return nullptr;
    }
    if (into_.Find(*keyword) != nullptr) {
      Fail(token, "Keyword ^1 given twice in ^2 (line ^3, column ^4)...", {*keyword, name_});
      return nullptr;
    }
    return keyword;
  }

  // The value that stands here, behind an equals sign, if one does. The value of what is no keyword
  // is passed over, so that one mistake is reported once.
  std::optional<std::string> TakeValue(const std::string* keyword) {
    if (!AtEquals()) return std::nullopt;
    const Token& equals = tokens_[position_++];
    const bool omitted = AtEnd() || AtEquals();
    if (omitted) {
      const std::string_view before = tokens_[position_ - 2].typed;
      Fail(equals, "Nothing after ^1 = in ^2 (line ^3, column ^4)...", {before, name_});
    }
    while (AtEquals()) ++position_;
    if (AtEnd()) return std::nullopt;

    const std::size_t first = position_;
    position_ = TakesList() ? tokens_.size() : position_ + 1;
    if (omitted || keyword == nullptr) return std::nullopt;
    if (*keyword != kVariables) return ValueIn(tokens_[first]);
    into_.list = tokens_.subspan(first);
    return Joined(into_.list);
  }

  void Fail(const Token& at, const std::string& text,
            const std::vector<std::string_view>& arguments) {
    into_.hasErrors = true;
    ReportSyntaxError(at, text, arguments);
  }

  const std::string& name_;
  std::span<const Token> tokens_;
  const std::string* table_;
  Keywords& into_;
  std::size_t position_ = 0;
};

}  // namespace
}  // namespace velahost

struct KeywordSubcommand::Impl {
  std::string name;
  bool occurs = false;
  velahost::Keywords keywords;
};

KeywordSubcommand::KeywordSubcommand(ParsedCommand& command, const std::string& name,
                                     const std::string* keywords) {
  Called("KeywordSubcommand::KeywordSubcommand");
  const velahost::Subcommand* found = velahost::FindSubcommand(command.impl_->subcommands, name);
  impl_ = std::make_unique<Impl>(Impl{name, found != nullptr, {}});
  if (found != nullptr) {
    velahost::KeywordReader(*found, keywords, impl_->keywords).Read();
  }
}

KeywordSubcommand::~KeywordSubcommand() {
  velahost::Released("KeywordSubcommand::~KeywordSubcommand");
}

bool KeywordSubcommand::Occurs() const {
  Called("KeywordSubcommand::Occurs");
  return impl_->occurs;
}

bool KeywordSubcommand::HasErrors() const {
  Called("KeywordSubcommand::HasErrors");
  return impl_->keywords.hasErrors;
}

int KeywordSubcommand::Tokens(const std::string& keyword) const {
  Called("KeywordSubcommand::Tokens");
  return impl_->keywords.Find(keyword) != nullptr ? 1 : 0;
}

std::string KeywordSubcommand::Value(const std::string& keyword) {
  Called("KeywordSubcommand::Value");
  const velahost::GivenKeyword* given = impl_->keywords.Find(keyword);
  if (given == nullptr) return velahost::kAbsent;
  return given->value.value_or(velahost::kWithoutValue);
}

std::vector<int> KeywordSubcommand::ExistingVariables(const VELA_DataSource& dataSource) {
  Called("KeywordSubcommand::ExistingVariables");
  velahost::VariableList list(impl_->keywords.list, impl_->name);
  std::vector<int> columns = list.Columns(dataSource);
  if (list.HasErrors()) impl_->keywords.hasErrors = true;
  return columns;
}

std::vector<VelaVarName> KeywordSubcommand::MixedVariables(const VELA_DataSource* dataSource) {
  Called("KeywordSubcommand::MixedVariables");
  velahost::VariableList list(impl_->keywords.list, impl_->name);
  const std::vector<std::string> names = list.Names(dataSource);
  if (list.HasErrors()) impl_->keywords.hasErrors = true;
  std::vector<VelaVarName> result;
  result.reserve(names.size());
  for (const std::string& name : names) result.emplace_back(name.c_str());
  return result;
}
