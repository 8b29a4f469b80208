#include "standalone/Output/Diagnostics.h"

#include <utility>

#include "standalone/Host.h"

namespace velahost {
namespace {

Diagnostic TooManyErrors() {
  const std::string text = "More than ^1 errors in this command. The others are not reported...";
  const std::vector<std::string> arguments = {std::to_string(kMostErrors)};
  return {text, arguments, Render(text, arguments), BpShowMessage, BpLevelError};
}

}  // namespace

void Diagnostics::Issue(Diagnostic diagnostic) {
  if (diagnostic.level >= BpLevelError) {
    ++errors_;
    if (errors_ > kMostErrors + 1) return;
    if (errors_ > kMostErrors) diagnostic = TooManyErrors();
  }
  all_.push_back(std::move(diagnostic));
}

std::string Render(const std::string& text, const std::vector<std::string>& arguments) {
  std::string message;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool hasNext = i + 1 < text.size();
    if (text[i] == '\\' && hasNext) {
      message += text[++i];
    } else if (text[i] == '^' && hasNext && text[i + 1] >= '1' && text[i + 1] <= '9' &&
               static_cast<std::size_t>(text[i + 1] - '1') < arguments.size()) {
      message += arguments[static_cast<std::size_t>(text[++i] - '1')];
    } else {
      message += text[i];
    }
  }
  return message;
}

std::string EscapeMessage(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\\') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

void Report(BpErrorShow show, BpErrorLevel level, const std::string& text,
            const std::vector<std::string>& arguments) {
  Host::Current().diagnostics.Issue({text, arguments, Render(text, arguments), show, level});
}

}  // namespace velahost
