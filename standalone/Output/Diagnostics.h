#pragma once

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

// The diagnostics of a run, in the order in which they were issued.
class Diagnostics {
 public:
  // Keeps a diagnostic; from BpLevelError on it sets the fatal-error state.
  void Issue(Diagnostic diagnostic);
  // Starts the fatal-error state anew, for the next command; what was issued is kept.
  void BeginCommand() { fatal_ = false; }

  const std::vector<Diagnostic>& All() const { return all_; }
  // Whether an error has been issued since the command began.
  bool FatalError() const { return fatal_; }

 private:
  std::vector<Diagnostic> all_;
  bool fatal_ = false;
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
