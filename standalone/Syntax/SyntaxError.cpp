#include "standalone/Syntax/SyntaxError.h"

namespace velahost {

void ReportSyntaxError(Diagnostics& diagnostics, const Token& at, const std::string& text,
                       const std::vector<std::string_view>& arguments) {
  Message message{text, {arguments.begin(), arguments.end()}};
  message.arguments.push_back(std::to_string(at.line));
  message.arguments.push_back(std::to_string(at.column));
  diagnostics.Report(Severity::Error, message);
}

}  // namespace velahost
