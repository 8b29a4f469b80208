#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "host/Syntax.h"
#include "standalone/Syntax/Subcommands.h"
#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

// The tokens of one subcommand, as the library reads them.
class CommandTokens final : public TokenSequenceBase {
 public:
  // The host's own kinds and delimiter codes, besides those of TokenSequenceBase.
  enum { KindNumber = 3, KindDelimiter = 5, KindOther = 6 };
  enum { DelimiterNone = 0, DelimiterAsterisk = 1, DelimiterLeft = 7, DelimiterRight = 8 };

  // The tokens live as long as this object; the last of them, a slash or the command's end, ends
  // the subcommand.
  explicit CommandTokens(std::span<const Token> tokens)
      : tokens_(tokens), text_(tokens.front().Text()) {}

  void Next() override;
  int Kind() const override;
  int Delimiter() const override;
  void StringValue(const char*& text, int& length) const override;
  void Text(const char*& text, int& length) const override;

  const Token& Current() const { return tokens_[position_]; }
  // Whether the current token is the last, which ends the subcommand.
  bool AtEnd() const { return position_ + 1 == tokens_.size(); }
  // The current token for a message.
  std::string Shown() const { return ShownText(Current(), mayBePassword_); }

 private:
  std::span<const Token> tokens_;
  std::size_t position_ = 0;
  std::string text_;            // what the current token says
  bool mayBePassword_ = false;  // the current token may belong to a password
};

}  // namespace velahost
