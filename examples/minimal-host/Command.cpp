#include "Host.h"

#include <velawapd/Dictionary.h>
#include <velawapd/EntryPoint.h>
#include <velawapd/Exceptions.h>
#include <velawapd/Files.h>
#include <velawapd/Output.h>
#include <velawapd/Syntax.h>

#include <algorithm>
#include <cctype>

// Dictionary.h, Syntax.h, Files.h and Exceptions.h: the working file, the command, and what FROM
// names.

Host& TheHost() {
  static Host host;
  return host;
}

bool RunCommand(const std::string& command) {
  TheHost().command = command;
  TheHost().hasError = false;
  applydic_();
  TheHost().before.clear();  // the run has ended: nothing refers to them any more
  return !TheHost().hasError;
}

ErrorText::ErrorText(std::string text) : message(std::move(text)) {}
ErrorText::ErrorText(const ErrorText&) = default;
ErrorText::~ErrorText() = default;

// The dictionary is made anew from the working file, so there is nothing to index or to remember.
void VELA_FortranDictionary::ReIndex() {}
VELA_FortranDictionary* global_dicptr_() {
  static VELA_FortranDictionary dictionary;
  dictionary.dataSource = TheHost().working.get();
  return &dictionary;
}
void setcurrentweightvar_(const std::int64_t*) {}

// The store takes the working file's place. The old one may still be the source of the run.
void SetActiveDataSource(VELA_DataSource* store, int) {
  TheHost().before.push_back(std::move(TheHost().working));
  TheHost().working.reset(store);
}

struct ProcedureDataSource::Impl {};
ProcedureDataSource::ProcedureDataSource() = default;
ProcedureDataSource::~ProcedureDataSource() = default;
bool ProcedureDataSource::FatalError() const { return TheHost().hasError; }
bool ProcedureDataSource::Transforms() const { return false; }
void ProcedureDataSource::ActiveDataSource(VELA_DataSource&, bool, bool) {}

namespace {

struct Token {
  int kind = TokenSequenceBase::KindEnd;
  char delimiter = ' ';
  std::string text;  // of a string what stands between the quotes, of a name in upper case
};

class Tokens : public TokenSequenceBase {
 public:
  std::vector<Token> all;  // the last one is an end
  std::size_t at = 0;

  void Next() override { at = std::min(at + 1, all.size() - 1); }
  int Kind() const override { return all[at].kind; }
  int Delimiter() const override { return all[at].delimiter == '=' ? DelimiterEquals : 0; }
  void StringValue(const char*& text, int& length) const override { Text(text, length); }
  void Text(const char*& text, int& length) const override {
    text = all[at].text.data();
    length = static_cast<int>(all[at].text.size());
  }
};

// Splits a command: names, strings in single quotes, and single characters. No comments, no TO.
std::vector<Token> Split(const std::string& command) {
  std::vector<Token> tokens;
  const auto isName = [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
  };
  for (std::size_t i = 0; i < command.size();) {
    std::size_t end = i + 1;
    if (isName(command[i])) {
      while (end < command.size() && isName(command[end])) ++end;
      std::string name = command.substr(i, end - i);
      VELAMBstrupr_A(name.data());
      tokens.push_back({TokenSequenceBase::KindName, ' ', name});
    } else if (command[i] == '\'') {
      const std::size_t close = std::min(command.find('\'', end), command.size());
      tokens.push_back({TokenSequenceBase::KindString, ' ', command.substr(end, close - end)});
      end = std::min(close + 1, command.size());
    } else if (command[i] != ' ' && command[i] != '\n') {
      tokens.push_back({0, command[i], std::string(1, command[i])});
    }
    i = end;
  }
  return tokens;
}

void ReportError(const std::string& text) {
  BpError(BpString(text, false), BpShowMessage, BpLevelError);
}

}  // namespace

std::string TokenString(const TokenSequenceBase& tokens) {
  const char* text = nullptr;
  int length = 0;
  tokens.Text(text, length);
  return {text, static_cast<std::size_t>(length)};
}

bool KeywordMatch(const char* token, const char* keyword) {
  std::string upper = token;
  return std::string(VELAMBstrupr_A(upper.data())) == keyword;
}

struct ParsedCommand::Impl {
  std::map<std::string, Tokens> subcommands;
  Tokens* current = nullptr;
};
ParsedCommand::ParsedCommand(const std::string* subcommands) : impl_(std::make_unique<Impl>()) {
  Tokens* open = nullptr;
  for (const Token& token : Split(TheHost().command)) {
    if (token.delimiter == '/') {
      open = nullptr;
    } else if (open != nullptr) {
      open->all.push_back(token);
    } else {
      const std::string* known = subcommands;
      while (!known->empty() && *known != token.text) ++known;
      if (known->empty()) ReportError("There is no subcommand " + token.text);
      open = &impl_->subcommands[token.text];
    }
  }
  for (auto& [name, tokens] : impl_->subcommands) tokens.all.emplace_back();
}
ParsedCommand::~ParsedCommand() = default;
bool ParsedCommand::Seek(const std::string& subcommand) {
  const auto found = impl_->subcommands.find(subcommand);
  impl_->current = found == impl_->subcommands.end() ? nullptr : &found->second;
  return impl_->current != nullptr;
}
TokenSequenceBase& ParsedCommand::TokenSequence() { return *impl_->current; }

// KEYWORD, KEYWORD=VALUE, and for VARIABLES a list of names.
struct KeywordSubcommand::Impl {
  bool occurs = false;
  bool hasErrors = false;
  std::map<std::string, std::string> values;
  std::vector<std::string> names;
};
KeywordSubcommand::KeywordSubcommand(ParsedCommand& command, const std::string& name,
                                     const std::string* keywords)
    : impl_(std::make_unique<Impl>()) {
  impl_->occurs = command.Seek(name);
  if (!impl_->occurs) return;
  const std::vector<Token>& tokens = command.impl_->current->all;
  for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
    const std::string* known = keywords;
    while (!known->empty() && *known != tokens[i].text) ++known;
    if (known->empty()) {
      ReportError(name + " has no keyword " + tokens[i].text);
      impl_->hasErrors = true;
      return;
    }
    const bool hasValue = tokens[i + 1].delimiter == '=';
    std::string& value = impl_->values[*known];
    value = hasValue && i + 2 < tokens.size() ? tokens[i + 2].text : ValueBare;
    if (*known == "VARIABLES") {
      for (i += 2; i + 1 < tokens.size(); ++i) impl_->names.push_back(tokens[i].text);
    } else if (hasValue) {
      i += 2;
    }
  }
}
KeywordSubcommand::~KeywordSubcommand() = default;
bool KeywordSubcommand::Occurs() const { return impl_->occurs; }
bool KeywordSubcommand::HasErrors() const { return impl_->hasErrors; }
int KeywordSubcommand::Tokens(const std::string& keyword) const {
  return static_cast<int>(impl_->values.count(keyword));
}
std::string KeywordSubcommand::Value(const std::string& keyword) {
  const auto found = impl_->values.find(keyword);
  return found == impl_->values.end() ? ValueAbsent : found->second;
}
std::vector<int> KeywordSubcommand::ExistingVariables(const VELA_DataSource& dataSource) {
  std::vector<int> columns;
  for (const std::string& name : impl_->names) {
    const int column = dataSource.FindVarIndex(name.c_str(), 0);
    if (column >= 0) {
      columns.push_back(column);
    } else {
      ReportError("There is no variable " + name);
      impl_->hasErrors = true;
    }
  }
  return columns;
}
std::vector<VelaVarName> KeywordSubcommand::MixedVariables(const VELA_DataSource*) {
  std::vector<VelaVarName> names;
  for (const std::string& name : impl_->names) names.emplace_back(name.c_str());
  return names;
}

struct VelaVarName::Impl {
  std::string text;
};
VelaVarName::VelaVarName(const char* name) : impl_(std::make_unique<Impl>(Impl{name})) {}
VelaVarName::VelaVarName(const VelaVarName& other) : impl_(std::make_unique<Impl>(*other.impl_)) {}
VelaVarName& VelaVarName::operator=(const VelaVarName& other) {
  *impl_ = *other.impl_;
  return *this;
}
VelaVarName::~VelaVarName() = default;
const char* VelaVarName::Text() const { return impl_->text.c_str(); }

struct UserCaseFileSpec::Impl {
  std::string file;
  bool isWorkingFile = false;
};
UserCaseFileSpec::UserCaseFileSpec() : impl_(std::make_unique<Impl>()) {}
UserCaseFileSpec::~UserCaseFileSpec() = default;
bool UserCaseFileSpec::Init(const TokenSequenceBase& tokens, bool) {
  impl_->file = TokenString(tokens);
  impl_->isWorkingFile = tokens.Kind() == 0 && impl_->file == "*";
  return impl_->isWorkingFile || tokens.Kind() == TokenSequenceBase::KindString;
}
std::string UserCaseFileSpec::ErrorText() const { return "FROM needs a file in quotes, or *"; }
void UserCaseFileSpec::Password(const std::string&) {}
bool UserCaseFileSpec::IsWorkingFile() const { return impl_->isWorkingFile; }

struct UserInputCaseFile::Impl {
  VELA_DataSource* source = nullptr;
};
UserInputCaseFile::UserInputCaseFile(const UserCaseFileSpec& spec, ProcedureDataSource*)
    : impl_(std::make_unique<Impl>()) {
  if (spec.IsWorkingFile()) return;
  const auto found = TheHost().files.find(spec.impl_->file);
  if (found == TheHost().files.end()) throw ErrorText("There is no file " + spec.impl_->file);
  impl_->source = found->second.get();
}
UserInputCaseFile::~UserInputCaseFile() = default;
VELA_DataSource* UserInputCaseFile::DataSource() { return impl_->source; }
