#include "standalone/Syntax/SyntaxError.h"

#include "standalone/Output/Diagnostics.h"

namespace velahost {

void ReportSyntaxError(const Token& at, const std::string& text,
                       const std::vector<std::string_view>& arguments) {
  std::vector<std::string> all(arguments.begin(), arguments.end());
  all.push_back(std::to_string(at.line));
  all.push_back(std::to_string(at.column));
  Report(BpShowMessage, BpLevelError, text, all);
}

}  // namespace velahost
