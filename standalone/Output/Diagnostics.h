#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/Output.h"

namespace velahost {

// A diagnostic as it was issued.
struct Diagnostic {
  std::string text;                    // as issued: placeholders and backslashes included
  std::vector<std::string> arguments;  // what fills the placeholders, in order; a variable's name
  std::string message;                 // for people: placeholders filled, backslashes taken away
  int show = 0;
  int level = 0;
};

// So many errors of one command are kept: a file that has no commands in it may have one at each
// byte.
inline constexpr std::size_t kMostErrors = 1000;

// The diagnostics of a run, in the order in which they were issued.
class Diagnostics {
 public:
  // Keeps a diagnostic; from BpLevelError on it is an error and sets the fatal-error state. In the
  // place of the first error beyond kMostErrors stands one that says so; the others are not kept.
  void Issue(Diagnostic diagnostic);
  // Starts the fatal-error state anew, for the next command; what was issued is kept.
  void BeginCommand() { errors_ = 0; }

  const std::vector<Diagnostic>& All() const { return all_; }
  // Whether an error has been issued since the command began.
  bool FatalError() const { return errors_ > 0; }
  // How many those were, the ones that were not kept among them.
  std::size_t Errors() const { return errors_; }

 private:
  std::vector<Diagnostic> all_;
  std::size_t errors_ = 0;  // since the command began
};

// The text with each placeholder "^1" to "^9" that has an argument replaced by it, as it stands,
// and the backslash before any character of the text taken away.
std::string Render(const std::string& text, const std::vector<std::string>& arguments);

// The text with a backslash before each backslash, so that Render shows it as it is.
std::string EscapeMessage(const std::string& text);

// Issues a message of the host's own to the current host: a text with placeholders and what fills
// them.
void Report(BpErrorShow show, BpErrorLevel level, const std::string& text,
            const std::vector<std::string>& arguments);

}  // namespace velahost
