#pragma once

#include <string>

// Errors of the parse, issued at level 3. The parse goes on after them.

// Issues a fixed text.
void ReportError(const std::string& text);

// Issues a fixed text whose placeholder "^1" shows the argument, a text from the user or the host,
// as it is.
void ReportErrorArg(const std::string& text, const std::string& argument);
