#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Syntax/Diagnostics.h"

namespace applydic {

// Writes the whole text to standard output. Throws Failure if that fails.
void WriteOutput(std::string_view text);

// Writes to standard error what is meant for standard output, where that takes the codebook itself.
// Ignores failures.
void WriteAside(std::string_view text);

// Gathers pieces of text and writes them in larger ones.
class OutputBuffer {
 public:
  // writes is WriteOutput or WriteAside.
  explicit OutputBuffer(void (*writes)(std::string_view text)) : writes_(writes) {}
  // Throw what it throws.
  void Write(std::string_view piece);
  void Flush();

 private:
  void (*writes_)(std::string_view text);
  std::string text_;
};

// Whether a path names what standard output goes to.
bool IsStandardOutput(const std::string& path);

// Write one line to standard error: "applydic: warning: " or "applydic: error: " and the message,
// with control characters made visible. Ignore failures: there is nowhere else to report them.
void WriteWarning(std::string_view message);
void WriteError(std::string_view message);
// Does the same for a diagnostic of a run: an error from level 3 on, else a warning.
void WriteDiagnostic(const velahost::Diagnostic& diagnostic);

// Makes a text safe for one line of a terminal: spells control characters, line separators,
// characters that change the direction of writing and bytes that are no character with a backslash.
std::string MakeVisible(std::string_view text);

// The number of characters in a text: its width in a column.
std::size_t WidthOf(std::string_view text);

// Joins texts, each made visible, with ", " between them.
std::string JoinVisible(const std::vector<std::string>& texts);

}  // namespace applydic
