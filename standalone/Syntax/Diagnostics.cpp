#include "standalone/Syntax/Diagnostics.h"

#include <utility>

namespace velahost {
namespace {

Diagnostic DiagnosticOf(Severity level, const Message& message) {
  return {message, Render(message), kShowMessage, level, {}, {}};
}

Diagnostic TooManyErrors() {
  return DiagnosticOf(Severity::Error,
                      {"More than ^1 errors in this command. The others are not reported...",
                       {std::to_string(kMostErrors)}});
}

}  // namespace

void Diagnostics::Issue(Diagnostic diagnostic) {
  if (diagnostic.level >= Severity::Error) {
    ++errors_;
    if (errors_ > kMostErrors + 1) return;
    if (errors_ > kMostErrors) diagnostic = TooManyErrors();
  }
  all_.push_back(std::move(diagnostic));
}

void Diagnostics::Report(Severity level, const Message& message, std::optional<TextPlace> place,
                         std::string advice) {
  Diagnostic diagnostic = DiagnosticOf(level, message);
  diagnostic.place = place;
  diagnostic.advice = std::move(advice);
  Issue(std::move(diagnostic));
}

}  // namespace velahost
