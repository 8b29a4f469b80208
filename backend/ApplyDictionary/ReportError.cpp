#include "backend/ApplyDictionary/ReportError.h"

#include "backend/ApplyDictionary/ReportCell.h"
#include "host/Output.h"

void ReportError(const std::string& text) {
  BpError(BpString(text, true), BpShowMessage, BpLevelError);
}

void ReportErrorArg(const std::string& text, const std::string& argument) {
  ReportCell<BpString>(BpLevelError, text, argument, false);
}
