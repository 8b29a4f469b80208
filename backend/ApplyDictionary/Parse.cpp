#include "backend/ApplyDictionary/Parse.h"

#include <string>

#include "backend/ApplyDictionary/ApplyDictionarySpec.h"
#include "backend/ApplyDictionary/ParseFrom.h"
#include "backend/ApplyDictionary/ParseInfo.h"
#include "backend/ApplyDictionary/ParseVariables.h"
#include "backend/ApplyDictionary/ReportError.h"
#include "host/Dictionary.h"
#include "host/Files.h"
#include "host/Syntax.h"

namespace {

bool ParseNewVars(ParsedCommand& command) {
  const std::string noKeywords[] = {""};
  return KeywordSubcommand(command, "NEWVARS", noKeywords).Occurs();
}

// With a SOURCE list TARGET names variables of the working file, which may be new with NEWVARS.
// Without one it names variables of the source, to be paired by name. REQUIRES: newVars and
// sourceVars are read.
void ParseTarget(ParsedCommand& command, ApplyDictionarySpec& record,
                 const VELA_DataSource& working, const VELA_DataSource* source) {
  if (record.sourceVars.empty()) {
    ParseVariableIndices(command, record, source, "TARGET");
  } else if (record.newVars) {
    ParseTargetNames(command, record, &working);
  } else {
    ParseVariableIndices(command, record, &working, "TARGET");
  }
}

// Reports wrong combinations of subcommands.
void CheckCombinations(const ApplyDictionarySpec& record, const ProcedureDataSource& context) {
  if (record.sourceVars.size() > 1 && !record.targetVars.empty()) {
    ReportError("SOURCE list with TARGET list...");
  }
  if (record.newVars && context.Transforms()) {
    ReportError("NEWVARS used with pending transforms...");
  }
}

}  // namespace

// The frame only has to be open: the host brings the errors there.
void Parse(ApplyDictionarySpec& record, BpProcedure& /*procedure*/, const VELA_DataSource& working,
           std::unique_ptr<UserInputCaseFile>& sourceFile, ProcedureDataSource& context) {
  const std::string subcommands[] = {"FROM",     "SOURCE",  "TARGET", "NEWVARS",
                                     "FILEINFO", "VARINFO", ""};
  ParsedCommand command(subcommands);

  ParseFrom(command, record);
  if (context.FatalError()) return;

  sourceFile = std::make_unique<UserInputCaseFile>(record.fromFile, &context);
  const VELA_DataSource* const source =
      record.fromFile.IsWorkingFile() ? &working : sourceFile->DataSource();

  // The order in which the user gets the messages, whatever the order in the command.
  ParseFileInfo(command, record);
  ParseVarInfo(command, record);
  record.newVars = ParseNewVars(command);
  ParseVariableIndices(command, record, source, "SOURCE");
  ParseTarget(command, record, working, source);
  CheckCombinations(record, context);
}
