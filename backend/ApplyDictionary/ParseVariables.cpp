#include "backend/ApplyDictionary/ParseVariables.h"

#include <utility>
#include <vector>

#include "backend/ApplyDictionary/ApplyDictionarySpec.h"
#include "backend/ApplyDictionary/ReportError.h"
#include "host/Syntax.h"

namespace {

constexpr const char* kVariables = "VARIABLES";

// Reports that nothing follows VARIABLES. A list may also be empty because the host has reported
// all of it, or because the keyword is not there. REQUIRES: the list is empty.
void ReportEmptyList(const KeywordSubcommand& subcommand, const std::string& subcommandName) {
  if (subcommand.HasErrors() || subcommand.Tokens(kVariables) == 0) return;
  ReportErrorArg("Empty variable list after ^1...", subcommandName);
}

}  // namespace

void ParseVariableIndices(ParsedCommand& command, ApplyDictionarySpec& record,
                          const VELA_DataSource* dataSource, const std::string& subcommandName) {
  const std::string keywords[] = {kVariables, ""};
  KeywordSubcommand subcommand(command, subcommandName, keywords);
  if (dataSource == nullptr || !subcommand.Occurs()) return;

  std::vector<int> columns = subcommand.ExistingVariables(*dataSource);
  if (columns.empty()) ReportEmptyList(subcommand, subcommandName);
  (subcommandName == "SOURCE" ? record.sourceVars : record.targetVars) = std::move(columns);
}

void ParseTargetNames(ParsedCommand& command, ApplyDictionarySpec& record,
                      const VELA_DataSource* working) {
  const std::string subcommandName = "TARGET";
  const std::string keywords[] = {kVariables, ""};
  KeywordSubcommand subcommand(command, subcommandName, keywords);
  if (!subcommand.Occurs()) return;

  record.targetNames = subcommand.MixedVariables(working);
  if (record.targetNames.empty()) ReportEmptyList(subcommand, subcommandName);
}
