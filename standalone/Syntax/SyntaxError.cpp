#include "standalone/Syntax/SyntaxError.h"

#include <utility>

#include "standalone/Text/Suggestion.h"

namespace velahost {

void ReportSyntaxError(Diagnostics& diagnostics, const Token& at, const std::string& text,
                       const std::vector<std::string_view>& arguments, std::string advice) {
  Message message{text, {arguments.begin(), arguments.end()}};
  message.arguments.push_back(std::to_string(at.line));
  message.arguments.push_back(std::to_string(at.column));
  diagnostics.Report(Severity::Error, message, TextPlace{at.line, at.column}, std::move(advice));
}

std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& names) {
  const std::string_view nearest = Nearest(word, names);
  return nearest.empty() ? std::string() : "Did you mean " + std::string(nearest) + "?";
}

}  // namespace velahost
