#include "standalone/Syntax/Tokenizer.h"

#include <utility>

#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Keywords.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLineEnd(char c) { return c == '\n' || c == '\r'; }
bool IsSpaceHere(char c) { return IsSpace(c) || c == '\v' || c == '\f'; }
bool IsSign(char c) { return c == '+' || c == '-'; }

std::size_t SkipDigits(std::string_view text, std::size_t position) {
  while (position < text.size() && IsDigit(text[position])) ++position;
  return position;
}

// Where the digits with at most one point end that the text starts with; 0 when there is no digit
// among them.
std::size_t MantissaEnd(std::string_view text) {
  const std::size_t whole = SkipDigits(text, 0);
  if (whole == text.size() || text[whole] != '.') return whole;
  const std::size_t end = SkipDigits(text, whole + 1);
  return end == 1 ? 0 : end;
}

// Whether the whole text is a number: digits, at most one point, an exponent if any.
bool IsUnsignedNumber(std::string_view text) {
  const std::size_t mantissa = MantissaEnd(text);
  if (mantissa == 0 || mantissa == text.size()) return mantissa != 0;
  if (text[mantissa] != 'e' && text[mantissa] != 'E') return false;
  const std::string_view exponent = text.substr(mantissa + 1);
  const std::size_t digits = !exponent.empty() && IsSign(exponent[0]) ? 1 : 0;
  return exponent.size() > digits && SkipDigits(exponent, digits) == exponent.size();
}

// Reads the tokens of a text one by one.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) position_ = kByteOrderMark.size();
  }

  bool AtEnd() const { return position_ == text_.size(); }
  // The next token; End at the end of a command and at the end of the text.
  Token Next();

 private:
  char At(std::size_t position) const { return position < text_.size() ? text_[position] : '\0'; }
  bool CommentStartsAt(std::size_t position) const {
    return At(position) == '/' && At(position + 1) == '*';
  }
  // Where the comment ends that starts at the position; npos when it is not closed.
  std::size_t CommentEnd(std::size_t position) const;
  // Whether a period right before the position ends the command.
  bool EndsCommand(std::size_t position) const;
  bool NameCharacterAt(std::size_t position) const;
  bool MarkAt(std::size_t position) const;
  // Where the word that starts at the position ends, without the period that ends the command.
  std::size_t WordEnd(std::size_t position) const;
  // Where the number that starts at the position ends; the position itself when none does.
  std::size_t NumberEnd(std::size_t position) const;

  void SkipSpaceAndComments();
  // Moves on to a position, counting lines and columns.
  void MoveTo(std::size_t end);
  // Takes what stands up to the end as a token.
  Token Take(Token::Kind kind, std::size_t end);
  Token TakeString();

  std::string_view text_;
  std::size_t position_ = 0;
  int line_ = 1;
  int column_ = 1;
};

std::size_t Scanner::CommentEnd(std::size_t position) const {
  const std::size_t close = text_.find("*/", position + 2);
  return close == std::string_view::npos ? close : close + 2;
}

bool Scanner::EndsCommand(std::size_t position) const {
  while (position < text_.size() && !IsLineEnd(text_[position])) {
    if (IsSpaceHere(text_[position])) {
      ++position;
    } else if (CommentStartsAt(position)) {
      const std::size_t end = CommentEnd(position);
      if (end == std::string_view::npos) return true;
      const std::string_view comment = text_.substr(position, end - position);
      if (comment.find_first_of("\r\n") != std::string_view::npos) return true;
      position = end;
    } else {
      return false;
    }
  }
  return true;
}

bool Scanner::MarkAt(std::size_t position) const {
  return position < text_.size() && IsMark(CharacterAt(text_, position).code);
}

bool Scanner::NameCharacterAt(std::size_t position) const {
  if (position >= text_.size()) return false;
  const char c = text_[position];
  if (IsDigit(c) || std::string_view("_.@#$").find(c) != std::string_view::npos) return true;
  return IsLetter(CharacterAt(text_, position).code);
}

std::size_t Scanner::WordEnd(std::size_t position) const {
  std::size_t end = position;
  while (NameCharacterAt(end) || (end > position && MarkAt(end))) {
    end += CharacterAt(text_, end).length;
  }
  const bool periodEnds = end > position && text_[end - 1] == '.' && EndsCommand(end);
  return periodEnds ? end - 1 : end;
}

std::size_t Scanner::NumberEnd(std::size_t position) const {
  const std::size_t start =
      IsSign(At(position)) && IsDigit(At(position + 1)) ? position + 1 : position;
  const std::size_t end = WordEnd(start);
  if (IsUnsignedNumber(text_.substr(start, end - start))) return end;
  if (end == start || !IsSign(At(end))) return position;
  // The sign of an exponent is no name character.
  const std::size_t exponentEnd = WordEnd(end + 1);
  return IsUnsignedNumber(text_.substr(start, exponentEnd - start)) ? exponentEnd : position;
}

void Scanner::SkipSpaceAndComments() {
  while (!AtEnd()) {
    if (IsSpaceHere(text_[position_])) {
      MoveTo(position_ + 1);
    } else if (CommentStartsAt(position_) && CommentEnd(position_) != std::string_view::npos) {
      MoveTo(CommentEnd(position_));
    } else {
      return;
    }
  }
}

void Scanner::MoveTo(std::size_t end) {
  while (position_ < end) {
    const char c = text_[position_];
    if (IsLineEnd(c)) {
      const bool insideLineEnd = c == '\n' && position_ > 0 && text_[position_ - 1] == '\r';
      if (!insideLineEnd) ++line_;
      column_ = 1;
      ++position_;
    } else {
      ++column_;
      position_ += CharacterAt(text_, position_).length;
    }
  }
}

Token Scanner::Take(Token::Kind kind, std::size_t end) {
  Token token;
  token.kind = kind;
  token.typed = text_.substr(position_, end - position_);
  token.line = line_;
  token.column = column_;
  MoveTo(end);
  return token;
}

Token Scanner::TakeString() {
  const char quote = text_[position_];
  std::size_t end = position_ + 1;
  for (; end < text_.size() && !IsLineEnd(text_[end]); ++end) {
    if (text_[end] != quote) continue;
    if (At(end + 1) != quote) return Take(Token::String, end + 1);
    ++end;
  }
  return Take(Token::UnclosedString, end);
}

Token Scanner::Next() {
  SkipSpaceAndComments();
  if (AtEnd()) return Take(Token::End, position_);

  const char c = text_[position_];
  if (c == '.' && EndsCommand(position_ + 1)) {
    Token end = Take(Token::End, position_);
    MoveTo(position_ + 1);
    return end;
  }
  if (c == '\'' || c == '"') return TakeString();
  if (CommentStartsAt(position_)) return Take(Token::UnclosedComment, text_.size());
  if (const std::size_t end = NumberEnd(position_); end > position_) {
    return Take(Token::Number, end);
  }
  if (const std::size_t end = WordEnd(position_); end > position_) return Take(Token::Name, end);
  if (std::string_view("=/*()").find(c) != std::string_view::npos) {
    return Take(Token::Delimiter, position_ + 1);
  }
  return Take(Token::Other, position_ + CharacterAt(text_, position_).length);
}

void TakeOffCommandName(Command& command) {
  std::vector<Token>& tokens = command.tokens;
  if (tokens[0].IsKeyword("APPLY") && tokens[1].IsKeyword("DICTIONARY")) {
    tokens.erase(tokens.begin(), tokens.begin() + 2);
  }
}

// What stands between the quotes of a string.
std::string Unquoted(std::string_view typed) {
  const char quote = typed.front();
  std::string content;
  for (std::size_t i = 1; i + 1 < typed.size(); ++i) {
    content += typed[i];
    if (typed[i] == quote) ++i;  // the second of two
  }
  return content;
}

}  // namespace

std::string Token::Text() const {
  if (kind == Name) return Capitals(typed);
  if (kind == String) return Unquoted(typed);
  return std::string(typed);
}

bool Token::IsKeyword(std::string_view keyword) const {
  return kind == Name && Abbreviates(typed, keyword);
}

std::vector<Command> SplitCommands(std::string text) {
  const auto kept = std::make_shared<const std::string>(std::move(text));
  Scanner scanner(*kept);
  std::vector<Command> commands;
  Command command = {{}, kept};
  std::size_t wrong = 0;
  while (true) {
    const Token token = scanner.Next();
    if (token.IsWrong() && ++wrong > kMostErrors + 1) continue;
    command.tokens.push_back(token);
    if (token.kind != Token::End) continue;
    const bool hasToken = command.tokens.size() > 1;
    if (hasToken) TakeOffCommandName(command);
    if (hasToken || (scanner.AtEnd() && commands.empty())) commands.push_back(std::move(command));
    if (scanner.AtEnd()) return commands;
    command = {{}, kept};
    wrong = 0;
  }
}

}  // namespace velahost
