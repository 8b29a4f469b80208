#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "standalone/Text/Message.h"

namespace velahost {

// How grave a diagnostic is: the levels of the host's interface.
enum class Severity : int { TransferWarning = 1, Warning = 2, Error = 3, Failure = 4 };

// How diagnostics of the host's own are shown: the host's interface has the other values.
inline constexpr int kShowMessage = 2;

// A place in the text of the commands, counted from 1; columns in characters.
struct TextPlace {
  int line;
  int column;
};

// A diagnostic as it was issued.
struct Diagnostic {
  Message message;    // as issued: placeholders and backslashes included
  std::string shown;  // for people: placeholders filled, backslashes taken away
  int show = 0;
  Severity level = Severity::TransferWarning;

  std::optional<TextPlace> place = {};  // in the commands, where it is about one
  MarkedLine fileLine = {};             // of a file that cannot be read
  std::string advice = {};              // what to do, in whole sentences; may be empty
};

// At most so many errors of one command are kept: a file that has no commands in it may have one at
// each byte.
inline constexpr std::size_t kMostErrors = 1000;

// The diagnostics of a run, in the order in which they were issued.
class Diagnostics {
 public:
  // Keeps a diagnostic; from Severity::Error on it is an error and sets the fatal-error state. In
  // the place of the first error after kMostErrors stands one that says so; the others are not
  // kept.
  void Issue(Diagnostic diagnostic);
  // Issues a message of the host's own.
  void Report(Severity level, const Message& message, std::optional<TextPlace> place = {},
              std::string advice = {});
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

}  // namespace velahost
