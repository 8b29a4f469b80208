#include "standalone/Host/CommandTokens.h"

#include "standalone/Host/Calls.h"

namespace velahost {
namespace {

void SetText(const std::string& from, const char*& text, int& length) {
  text = from.data();
  length = static_cast<int>(from.size());
}

}  // namespace

void CommandTokens::Next() {
  Called("TokenSequenceBase::Next");
  if (AtEnd()) return;
  mayBePassword_ = mayBePassword_ || IsPasswordKeyword(Current());
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
  SetText(text_, text, length);
}

void CommandTokens::Text(const char*& text, int& length) const {
  Called("TokenSequenceBase::Text");
  SetText(text_, text, length);
}

}  // namespace velahost

std::string TokenString(const TokenSequenceBase& tokens) {
  velahost::Called("TokenString");
  return dynamic_cast<const velahost::CommandTokens&>(tokens).Shown();
}
