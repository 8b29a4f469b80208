#pragma once

#include "program/CommandLine.h"
#include "program/Failure.h"

namespace applydic {

// Runs `applydic match`: proposes partners for variables whose names have changed, and writes them
// as a syntax file where the options name one. Throws Failure, velahost::FileError and
// velahost::SaveError.
//
// With --json it prints an object, which scripts read:
//   "old", "new": the two files as named, "namesakes": how many variables are paired by name,
//   "proposals": [{"old", "new": names, "score", "certain", "reasons": [text, ...],
//   "rivals": [{"old" or "new": name, "score"}, ...]}, ...], best first,
//   "withoutProposal": [name, ...] of the new file, "written": path or null
ExitStatus RunMatch(const MatchOptions& options);

}  // namespace applydic
