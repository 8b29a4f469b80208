#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Files/File.h"
#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Tokenizer.h"

namespace applydic {

// Writes the whole text to standard output. Throws Failure if that fails.
void WriteOutput(std::string_view text);

// Standard error takes what is meant for standard output where that takes the codebook itself.
enum class Stream : std::uint8_t { Output, Aside };

// Writes what somebody reads, which `write` gives the sink piece by piece, in larger pieces. A
// reader who closes the pipe has read enough: the rest is dropped, and nothing is wrong. Throws
// Failure if standard output cannot be written; ignores failures of standard error.
void WriteForReader(Stream stream,
                    const std::function<void(const velahost::ByteSink& sink)>& write);

// Writes a text to standard error as it is. Ignores failures.
void WriteAside(std::string_view text);

// Whether a path names what standard output goes to.
bool IsStandardOutput(const std::string& path);

// From now on messages begin with the file that they are about, unless they do so already.
void NameInMessages(const std::string& file);

// Write one line to standard error: "applydic: warning: " or "applydic: error: " and the message,
// with control characters made visible. Ignore failures: there is nowhere else to report them.
void WriteWarning(std::string_view message);
void WriteError(std::string_view message);
// Does the same for an error of a file, with the line that it is about below it.
void WriteFileError(const velahost::FileError& error);
// Does the same for a diagnostic of a run: an error from level 3 on, else a warning. Below it stand
// the line of the command that it is about, with a mark under the place, unless the command has a
// password, and the advice. A null command shows no line.
void WriteDiagnostic(const velahost::Diagnostic& diagnostic, const velahost::Command* command);

// Makes a text safe for one line of a terminal: spells control characters, line separators,
// characters that change the direction of writing and bytes that are no character with a backslash.
std::string MakeVisible(std::string_view text);

// The columns of a terminal that a text takes which is safe for one line.
std::size_t WidthOf(std::string_view text);

// Joins texts, each made visible, with ", " between them.
std::string JoinVisible(const std::vector<std::string>& texts);

}  // namespace applydic
