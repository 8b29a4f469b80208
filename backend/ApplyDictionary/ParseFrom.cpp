#include "backend/ApplyDictionary/ParseFrom.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "backend/ApplyDictionary/ApplyDictionarySpec.h"
#include "backend/ApplyDictionary/ReportError.h"
#include "host/Files.h"
#include "host/Output.h"
#include "host/Syntax.h"

namespace {

// Issues an error about the file name or the password, which the host shows in a way of its own.
void ReportFileError(const std::string& text) {
  BpError(BpString(text, true), BpShowFileMessage, BpLevelError);
}

bool AtEnd(const TokenSequenceBase& tokens) {
  return tokens.Kind() == TokenSequenceBase::KindEnd ||
         tokens.Delimiter() == TokenSequenceBase::DelimiterSlash;
}

void SkipEquals(TokenSequenceBase& tokens) {
  if (tokens.Delimiter() == TokenSequenceBase::DelimiterEquals) tokens.Next();
}

// Whether the current token's text begins with the keyword; the host has settled the letter case.
bool TextBeginsWith(const TokenSequenceBase& tokens, std::string_view keyword) {
  const char* text = nullptr;
  int length = 0;
  tokens.Text(text, length);
  return std::string_view(text, static_cast<std::size_t>(length)).starts_with(keyword);
}

// REQUIRES: the current token is a quoted string.
void ParseQuotedPassword(TokenSequenceBase& tokens, UserCaseFileSpec& file) {
  const char* text = nullptr;
  int length = 0;
  tokens.StringValue(text, length);
  if (length == 0) {
    ReportFileError("Password too short.");
  } else {
    file.Password(std::string(text, static_cast<std::size_t>(length)));
  }
  tokens.Next();
}

// Parses what follows the keyword PASSWORD. A token that is no password stays current, and so is
// reported once more, as left over.
void ParsePassword(TokenSequenceBase& tokens, UserCaseFileSpec& file) {
  SkipEquals(tokens);
  if (tokens.Kind() == TokenSequenceBase::KindString) {
    ParseQuotedPassword(tokens, file);
  } else if (AtEnd(tokens)) {
    ReportFileError("Password omitted.");
  } else if (TextBeginsWith(tokens, "NONE")) {
    tokens.Next();
  } else {
    ReportFileError("Bad password keyword.");
  }
}

// Parses the file and its password. Stops at the first token that it cannot use.
void ParseFile(TokenSequenceBase& tokens, UserCaseFileSpec& file) {
  if (AtEnd(tokens)) {
    ReportFileError("Filename omitted.");
    return;
  }
  SkipEquals(tokens);
  if (!file.Init(tokens, false)) {
    BpError(BpString(file.ErrorText(), false), BpShowMessage, BpLevelError);
    return;
  }
  // Init leaves the last token of what it has read current.
  if (!AtEnd(tokens)) tokens.Next();

  if (tokens.Kind() != TokenSequenceBase::KindName || !TextBeginsWith(tokens, "PASSWORD")) return;
  tokens.Next();
  ParsePassword(tokens, file);
}

void ReportExtras(TokenSequenceBase& tokens) {
  if (AtEnd(tokens)) return;
  ReportErrorArg("Extras in FROM or slash omitted\\: ^1...", TokenString(tokens));
  while (!AtEnd(tokens)) tokens.Next();
}

}  // namespace

void ParseFrom(ParsedCommand& command, ApplyDictionarySpec& record) {
  if (!command.Seek("FROM")) {
    ReportError("FROM subcommand omitted.");
    return;
  }
  TokenSequenceBase& tokens = command.TokenSequence();
  ParseFile(tokens, record.fromFile);
  ReportExtras(tokens);
}
