#include "standalone/Syntax/SyntaxError.h"

#include "standalone/Output/Diagnostics.h"

namespace velahost {

void ReportSyntaxError(const Token& at, const std::string& text,
                       std::vector<std::string> arguments) {
  arguments.push_back(std::to_string(at.line));
  arguments.push_back(std::to_string(at.column));
  Report(BpShowMessage, BpLevelError, text, arguments);
}

}  // namespace velahost
