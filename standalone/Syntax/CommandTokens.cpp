#include "standalone/Syntax/CommandTokens.h"

#include "standalone/HostCalls.h"

namespace velahost {
namespace {

constexpr const char* kPassword = "PASSWORD";

void Give(const std::string& from, const char*& text, int& length) {
  text = from.data();
  length = static_cast<int>(from.size());
}

// Whether what stands at the position is meant as a password: PASSWORD, or a name that starts so,
// and an equals sign if any stand before it.
bool FollowsPassword(std::span<const Token> tokens, std::size_t position) {
  if (position > 0 && tokens[position - 1].Is('=')) --position;
  if (position == 0) return false;
  const Token& before = tokens[position - 1];
  return before.kind == Token::Name && before.Text().starts_with(kPassword);
}

}  // namespace

void CommandTokens::Next() {
  Called("TokenSequenceBase::Next");
  if (AtEnd()) return;
  ++position_;
  text_ = Current().Text();
}

int CommandTokens::Kind() const {
  Called("TokenSequenceBase::Kind");
  switch (Current().kind) {
    case Token::End:
      return KindEnd;
    case Token::Name:
      return KindName;
    case Token::Number:
      return KindNumber;
    case Token::String:
      return KindString;
    case Token::Delimiter:
      return KindDelimiter;
    case Token::UnclosedString:
    case Token::UnclosedComment:
    case Token::Other:
      break;
  }
  return KindOther;
}

int CommandTokens::Delimiter() const {
  Called("TokenSequenceBase::Delimiter");
  if (Current().kind != Token::Delimiter) return DelimiterNone;
  switch (Current().typed[0]) {
    case '=':
      return DelimiterEquals;
    case '/':
      return DelimiterSlash;
    case '(':
      return DelimiterLeft;
    case ')':
      return DelimiterRight;
    default:
      return DelimiterAsterisk;
  }
}

void CommandTokens::StringValue(const char*& text, int& length) const {
  Called("TokenSequenceBase::StringValue");
  Give(text_, text, length);
}

void CommandTokens::Text(const char*& text, int& length) const {
  Called("TokenSequenceBase::Text");
  Give(text_, text, length);
}

std::string CommandTokens::Shown(std::span<const Token> tokens, std::size_t position) {
  const Token& token = tokens[position];
  if (token.kind == Token::UnclosedString && FollowsPassword(tokens, position)) {
    return std::string(token.typed.substr(0, 1));
  }
  return std::string(token.typed);
}

}  // namespace velahost

std::string TokenString(const TokenSequenceBase& tokens) {
  velahost::Called("TokenString");
  return dynamic_cast<const velahost::CommandTokens&>(tokens).Shown();
}
