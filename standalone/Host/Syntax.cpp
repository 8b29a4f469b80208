#include "host/Syntax.h"

#include <array>
#include <optional>
#include <utility>

#include "standalone/Host/Calls.h"
#include "standalone/Host/CommandTokens.h"
#include "standalone/Host/DataSources.h"
#include "standalone/Host/Host.h"
#include "standalone/Host/HostAccess.h"
#include "standalone/Syntax/KeywordReader.h"
#include "standalone/Syntax/Keywords.h"
#include "standalone/Syntax/Subcommands.h"
#include "standalone/Syntax/VariableList.h"

using velahost::Called;
using velahost::Diagnostics;
using velahost::Host;
using velahost::Released;

bool KeywordMatch(const char* token, const char* keyword) {
  Called("KeywordMatch");
  return velahost::Abbreviates(token, keyword);
}

struct ParsedCommand::Impl {
  velahost::Subcommands subcommands;
  std::optional<velahost::CommandTokens> current;
};

ParsedCommand::ParsedCommand(const std::string* subcommands) {
  Called("ParsedCommand::ParsedCommand");
  impl_ = std::make_unique<Impl>();
  Host& host = Host::Current();
  impl_->subcommands =
      velahost::SplitSubcommands(host.CurrentCommand().tokens, subcommands, host.diagnostics);
  const auto says = [this](const char* name) {
    return velahost::FindSubcommand(impl_->subcommands, name) != nullptr;
  };
  host.notesWeight = !says("FILEINFO") && (says("SOURCE") || says("VARINFO"));
}

ParsedCommand::~ParsedCommand() { Released("ParsedCommand::~ParsedCommand"); }

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

namespace {

// What a data source is called in advice.
std::string WhereOf(const VELA_DataSource& dataSource) {
  const auto& file = HostAccess::Of(dataSource).readFrom;
  return file && !file->path.empty() ? file->path : "the file";
}

// Notes that a list is missing: the subcommand says nothing then.
void NoteListMissing(const velahost::Subcommand& subcommand,
                     const velahost::GivenKeywords& keywords) {
  if (keywords.hasErrors || keywords.Find("VARIABLES") != nullptr) return;
  const velahost::Token& at = subcommand.tokens.front();
  Host::Current().diagnostics.Report(
      velahost::Severity::TransferWarning,
      {"^1 without VARIABLES names no variables\\: it is passed over...", {subcommand.name}},
      velahost::TextPlace{at.line, at.column}, "Write " + subcommand.name + " VARIABLES=names.");
}

constexpr std::array kReserved = {KeywordSubcommand::ValueAbsent, KeywordSubcommand::ValueBare};

}  // namespace

struct KeywordSubcommand::Impl {
  std::string name;
  bool occurs = false;
  velahost::GivenKeywords keywords;
};

KeywordSubcommand::KeywordSubcommand(ParsedCommand& command, const std::string& name,
                                     const std::string* keywords) {
  Called("KeywordSubcommand::KeywordSubcommand");
  const velahost::Subcommand* found = velahost::FindSubcommand(command.impl_->subcommands, name);
  impl_ = std::make_unique<Impl>(Impl{name, found != nullptr, {}});
  if (found == nullptr) return;
  impl_->keywords =
      velahost::ReadKeywords(*found, keywords, kReserved, Host::Current().diagnostics);
  if (name == "SOURCE" || name == "TARGET") NoteListMissing(*found, impl_->keywords);
}

KeywordSubcommand::~KeywordSubcommand() { Released("KeywordSubcommand::~KeywordSubcommand"); }

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
  return given == nullptr ? ValueAbsent : given->value.value_or(ValueBare);
}

std::vector<int> KeywordSubcommand::ExistingVariables(const VELA_DataSource& dataSource) {
  Called("KeywordSubcommand::ExistingVariables");
  velahost::VariableList list(impl_->keywords.list, impl_->name, WhereOf(dataSource),
                              Host::Current().diagnostics);
  std::vector<int> columns = list.Columns(HostAccess::Of(dataSource).Names());
  if (list.HasErrors()) impl_->keywords.hasErrors = true;
  Host::Current().reach.SetList(impl_->name, columns);
  return columns;
}

std::vector<VelaVarName> KeywordSubcommand::MixedVariables(const VELA_DataSource* dataSource) {
  Called("KeywordSubcommand::MixedVariables");
  velahost::VariableList list(impl_->keywords.list, impl_->name,
                              dataSource == nullptr ? "" : WhereOf(*dataSource),
                              Host::Current().diagnostics);
  const std::vector<std::string> names =
      list.Names(dataSource == nullptr ? nullptr : &HostAccess::Of(*dataSource).Names());
  if (list.HasErrors()) impl_->keywords.hasErrors = true;
  Host::Current().reach.SetNames(names);
  std::vector<VelaVarName> result;
  result.reserve(names.size());
  for (const std::string& name : names) result.emplace_back(name.c_str());
  return result;
}

struct VelaVarName::Impl {
  std::string name;
};

VelaVarName::VelaVarName(const char* name) {
  Called("VelaVarName::VelaVarName");
  impl_ = std::make_unique<Impl>(Impl{name});
}

VelaVarName::VelaVarName(const VelaVarName& other) {
  Called("VelaVarName::VelaVarName");
  impl_ = std::make_unique<Impl>(*other.impl_);
}

VelaVarName& VelaVarName::operator=(const VelaVarName& other) {
  Called("VelaVarName::operator=");
  impl_->name = other.impl_->name;
  return *this;
}

VelaVarName::~VelaVarName() { Released("VelaVarName::~VelaVarName"); }

const char* VelaVarName::Text() const {
  Called("VelaVarName::Text");
  return impl_->name.c_str();
}
