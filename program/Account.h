#pragma once

#include <optional>
#include <vector>

#include "program/Outcome.h"
#include "program/Terminal.h"
#include "standalone/Files/File.h"
#include "standalone/Syntax/Diagnostics.h"

namespace applydic {

// How much an account tells.
struct AccountStyle {
  bool hasValues = false;  // old and new values, rather than the names of what changed
  bool isWhole = false;    // all of it, rather than a screenful
};

// Writes the account of a run for people. What the sink throws passes on.
void WriteAccount(const Outcome& outcome, const AccountStyle& style, Page page,
                  const velahost::ByteSink& sink);

// Writes the object that `applydic apply --json` prints; at most one variable is held as text at a
// time. Scripts read it, so it stays as it is, like that of `show --json`. After an error there is
// no outcome: no changes, and nothing written. What the sink throws passes on.
//
//   "diagnostics": [{"level", "show", "text", "arguments", "message"}, ...], "changed" (see
//   DifferenceJson.h), "added": [name, ...], "file" and "fileValues" (see there),
//   "notPaired": [name, ...], "notReached": [name, ...], "written": path or null
void WriteOutcomeJson(const std::vector<velahost::Diagnostic>& diagnostics,
                      const std::optional<Outcome>& outcome, const velahost::ByteSink& sink);

}  // namespace applydic
