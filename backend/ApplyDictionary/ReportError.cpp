#include "backend/ApplyDictionary/ReportError.h"

#include "host/Output.h"

void ReportError(const std::string& text) {
  BpError(BpString(text, true), BpShowMessage, BpLevelError);
}

void ReportErrorArg(const std::string& text, const std::string& argument) {
  BpComposite message(text, true);
  message.Add(BpString(argument, false));
  message.Finish();
  BpError(message, BpShowMessage, BpLevelError);
}
