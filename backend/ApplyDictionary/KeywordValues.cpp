#include "backend/ApplyDictionary/KeywordValues.h"

#include "host/Output.h"
#include "host/Syntax.h"

namespace {

// Issues an error about a keyword's value. The two fill "^1" and "^2".
void ReportValue(const std::string& text, const std::string& first, const std::string& second) {
  BpComposite message(text, true);
  message.Add(BpString(first, true));
  message.Add(BpString(second, true));
  message.Finish();
  BpError(message, BpShowMessage, BpLevelError);
}

}  // namespace

bool KeywordFlag(KeywordSubcommand& subcommand, const std::string& keyword) {
  const std::string value = subcommand.Value(keyword);
  if (value == KeywordSubcommand::ValueAbsent) return false;
  if (value == KeywordSubcommand::ValueBare) return true;
  ReportValue("No value expected after keyword ^1. Found ^2...", keyword, value);
  return true;
}

ApplyMode KeywordMode(KeywordSubcommand& subcommand, const std::string& keyword,
                      ApplyMode bareMode) {
  const std::string value = subcommand.Value(keyword);
  if (value == KeywordSubcommand::ValueAbsent) return ApplyNone;
  if (value == KeywordSubcommand::ValueBare) return bareMode;
  if (KeywordMatch(value.c_str(), "MERGE")) return ApplyMerge;
  if (KeywordMatch(value.c_str(), "REPLACE")) return ApplyReplace;
  // The value comes first here, the keyword second.
  ReportValue("Bad value ^1 after keyword ^2. Expect MERGE or REPLACE...", value, keyword);
  return ApplyNone;
}
