#include "standalone/Syntax/KeywordReader.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "standalone/Syntax/Keywords.h"
#include "standalone/Syntax/SyntaxError.h"

namespace velahost {
namespace {

// The keyword whose value is a list, to the end of the subcommand.
constexpr const char* kVariables = "VARIABLES";

std::string Joined(std::span<const Token> tokens) {
  std::string text;
  for (const Token& token : tokens) {
    if (!text.empty()) text += ' ';
    text += token.typed;
  }
  return text;
}

class KeywordReader {
 public:
  KeywordReader(const Subcommand& subcommand, const std::string* table,
                std::span<const char* const> reserved, Diagnostics& diagnostics)
      : name_(subcommand.name),
        line_(subcommand.line),
        tokens_(subcommand.tokens.first(subcommand.tokens.size() - 1)),
        table_(table),
        reserved_(reserved),
        diagnostics_(diagnostics) {}

  GivenKeywords Read() {
    while (!AtEnd()) {
      const std::string* keyword = TakeKeyword();
      const std::optional<std::string> value = TakeValue(keyword);
      if (keyword != nullptr) given_.all.push_back({*keyword, value});
    }
    return std::move(given_);
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
             {token.typed, name_}, AdviceOn(token));
      } else {
        Fail(token, "Keyword ^1 not known in ^2 (line ^4, column ^5). Expect ^3...",
             {token.typed, name_, Alternatives(table_)}, AdviceOn(token));
      }
      return nullptr;
    }
    if (given_.Find(*keyword) != nullptr) {
      Fail(token, "Keyword ^1 given twice in ^2 (line ^3, column ^4)...", {*keyword, name_});
      return nullptr;
    }
    return keyword;
  }

  // The value that stands here, after an equals sign, if one does. The value of what is no keyword
  // is passed over, so that one mistake is reported once.
  std::optional<std::string> TakeValue(const std::string* keyword) {
    if (!AtEquals()) return std::nullopt;
    const Token& equals = tokens_[position_++];
    const bool isOmitted = AtEnd() || AtEquals();
    if (isOmitted) {
      const std::string_view before = tokens_[position_ - 2].typed;
      Fail(equals, "Nothing after ^1 = in ^2 (line ^3, column ^4)...", {before, name_});
    }
    while (AtEquals()) ++position_;
    if (AtEnd()) return std::nullopt;

    const std::size_t first = position_;
    position_ = TakesList() ? tokens_.size() : position_ + 1;
    if (isOmitted || keyword == nullptr) return std::nullopt;
    if (*keyword != kVariables) return ValueIn(tokens_[first]);
    given_.list = tokens_.subspan(first);
    return Joined(given_.list);
  }

  std::string ValueIn(const Token& token) const {
    if (token.kind != Token::String) return std::string(token.typed);
    std::string text = token.Text();
    const bool isReserved = std::any_of(reserved_.begin(), reserved_.end(),
                                        [&text](const char* other) { return text == other; });
    return isReserved ? std::string(token.typed) : text;
  }

  // What to do about the token before the current one, which is no keyword.
  std::string AdviceOn(const Token& token) const {
    Token name;
    name.line = line_;
    std::string advice = AdviceOnSeparator(token, position_ > 1 ? tokens_[position_ - 2] : name);
    if (!advice.empty()) return advice;
    std::string meant = DidYouMean(token.typed, KeywordsOf(table_));
    if (!meant.empty() || !TakesList() || token.kind != Token::Name) return meant;
    return "Names of variables stand after VARIABLES=.";
  }

  void Fail(const Token& at, const std::string& text,
            const std::vector<std::string_view>& arguments, const std::string& advice = "") {
    given_.hasErrors = true;
    ReportSyntaxError(diagnostics_, at, text, arguments, advice);
  }

  const std::string& name_;
  const int line_;  // of the subcommand's name
  std::span<const Token> tokens_;
  const std::string* table_;
  std::span<const char* const> reserved_;
  Diagnostics& diagnostics_;
  GivenKeywords given_;
  std::size_t position_ = 0;
};

}  // namespace

const GivenKeyword* GivenKeywords::Find(const std::string& keyword) const {
  const auto found = std::find_if(all.begin(), all.end(), [&keyword](const GivenKeyword& given) {
    return given.keyword == keyword;
  });
  return found == all.end() ? nullptr : &*found;
}

GivenKeywords ReadKeywords(const Subcommand& subcommand, const std::string* table,
                           std::span<const char* const> reserved, Diagnostics& diagnostics) {
  return KeywordReader(subcommand, table, reserved, diagnostics).Read();
}

}  // namespace velahost
