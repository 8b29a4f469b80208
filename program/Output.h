#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Output/Diagnostics.h"

namespace applydic {

// Writes a text to standard output, whole: throws Failure when it cannot.
void WriteOutput(std::string_view text);

// Write one line to standard error: "applydic: warning: " or "applydic: error: " and the message,
// with control characters made visible. A failure is not told: there is no one left to tell.
void WriteWarning(std::string_view message);
void WriteError(std::string_view message);
// The same for a diagnostic of a run, by its level.
void WriteDiagnostic(const velahost::Diagnostic& diagnostic);

// The text on one line of a terminal: control characters, line separators, characters that turn the
// direction of writing and bytes that are no character are spelled with a backslash.
std::string Visible(std::string_view text);

// The number of characters in a text: its width in a column.
std::size_t WidthOf(std::string_view text);

// Visible texts with ", " between them.
std::string List(const std::vector<std::string>& texts);

}  // namespace applydic
