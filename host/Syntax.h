#pragma once

#include <memory>
#include <string>
#include <vector>

class VELA_DataSource;

// The host's syntax: the command that is being run, split into subcommands, keywords and tokens.
//
// The host has read the command before it calls applydic_. It issues the errors that it finds
// itself, with a level that sets the fatal-error state. The library always reads FROM. When an
// error was issued before the end of FROM, such as an unknown subcommand, the run ends there. After
// a later error, such as an unknown variable, the library reads on, and the run ends after the
// parse.
//
// A keyword table, like the table of subcommands, is an array of upper-case, unabbreviated texts.
// An empty text ends it. The library keeps the table alive and unchanged as long as the object that
// it was given to.

// The tokens of one subcommand, from the first after the subcommand's name, with a cursor.
//
// The library reads FROM through this class. The order of the virtual operations is part of the
// contract. A host may add operations of its own in a class derived from it.
class TokenSequenceBase {
 public:
  // What Kind gives; other kinds are the host's own.
  enum TokenKind : int {
    KindEnd = 1,     // after the last token of the subcommand
    KindName = 2,    // a name; its Text is in upper case if the host's keywords ignore case
    KindString = 4,  // a quoted string
  };
  // What Delimiter gives; other codes are the host's own.
  enum DelimiterCode : int {
    DelimiterEquals = 3,
    DelimiterSlash = 11,  // ends the subcommand, like KindEnd
  };

  // Moves to the next token. At the end it stays there.
  virtual void Next() = 0;
  // The kind of the current token.
  virtual int Kind() const = 0;
  // The delimiter code of the current token. A token that is no delimiter has a code that no
  // delimiter has.
  virtual int Delimiter() const = 0;
  // The content of the current quoted string, without its quotes: its start and its length in
  // bytes. Not zero-terminated; valid until Next. REQUIRES: Kind() is KindString.
  virtual void StringValue(const char*& text, int& length) const = 0;
  // The text of the current token, in the same way. The library compares the beginning of a text
  // with "PASSWORD" and "NONE", byte by byte.
  virtual void Text(const char*& text, int& length) const = 0;

 protected:
  TokenSequenceBase() = default;
  TokenSequenceBase(const TokenSequenceBase&) = default;
  TokenSequenceBase& operator=(const TokenSequenceBase&) = default;
  ~TokenSequenceBase() = default;
};

// The text of the sequence at the current token, for a message.
std::string TokenString(const TokenSequenceBase& tokens);

// Whether the value that the user gave is the keyword ("MERGE" or "REPLACE"). The host decides
// about letter case and abbreviation.
bool KeywordMatch(const char* token, const char* keyword);

// The command, split into subcommands. The library makes one for each parse and destroys it at the
// end of the parse, after every KeywordSubcommand of it.
class ParsedCommand {
 public:
  // Splits the current command by the table of its subcommands.
  explicit ParsedCommand(const std::string* subcommands);
  ParsedCommand(const ParsedCommand&) = delete;
  ParsedCommand& operator=(const ParsedCommand&) = delete;
  ~ParsedCommand();

  // Makes the named subcommand the current one. Returns false when the command does not have it.
  bool Seek(const std::string& subcommand);
  // The current subcommand's tokens, with the cursor on the first. Owned by this object and valid
  // until the next Seek. REQUIRES: the last Seek returned true.
  TokenSequenceBase& TokenSequence();

 private:
  struct Impl;
  friend class KeywordSubcommand;
  std::unique_ptr<Impl> impl_;
};

class VelaVarName;

// One subcommand, read as keywords with values.
class KeywordSubcommand {
 public:
  // What Value gives where the user gave no value. The blank in front sets these two apart: no
  // value of the user's may read as one of them.
  static constexpr const char* ValueAbsent = " NO";  // the keyword does not occur
  static constexpr const char* ValueBare = " YES";   // it occurs without a value

  // Opens the named subcommand, present or not, with its keyword table.
  // REQUIRES: the command and the table outlive this object.
  KeywordSubcommand(ParsedCommand& command, const std::string& name, const std::string* keywords);
  KeywordSubcommand(const KeywordSubcommand&) = delete;
  KeywordSubcommand& operator=(const KeywordSubcommand&) = delete;
  ~KeywordSubcommand();

  // Whether the command has the subcommand.
  bool Occurs() const;
  // Whether the host has issued an error about the content of this subcommand.
  bool HasErrors() const;
  // Not zero when the subcommand names the keyword, with or without a value. The keyword is spelled
  // as in the table.
  int Tokens(const std::string& keyword) const;
  // The value that the user gave the keyword, or ValueAbsent or ValueBare.
  std::string Value(const std::string& keyword);

  // The variables that the subcommand lists: columns in the data source, from 0, in list order. The
  // host reports what the data source does not have, and leaves it out.
  std::vector<int> ExistingVariables(const VELA_DataSource& dataSource);
  // The names that the subcommand lists, whether the data source has them or not, in list order.
  std::vector<VelaVarName> MixedVariables(const VELA_DataSource* dataSource);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// A variable name in a list of names; a value.
class VelaVarName {
 public:
  explicit VelaVarName(const char* name);
  VelaVarName(const VelaVarName& other);
  VelaVarName& operator=(const VelaVarName& other);
  ~VelaVarName();

  // The name, zero-terminated. Valid until this object is assigned to or destroyed.
  const char* Text() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
