#pragma once

#include <optional>
#include <string>
#include <vector>

#include "program/DifferenceJson.h"
#include "program/JsonStream.h"
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

// What a run did in short: "2 variables changed; file: weight; written to o.xml".
std::string AccountLine(const Outcome& outcome);

// Writes the account of a run for people. What the sink throws passes on.
void WriteAccount(const Outcome& outcome, const AccountStyle& style, Page page,
                  const velahost::ByteSink& sink);

// Writes the object that `applydic apply --json` prints; at most one variable is held as text at a
// time. Scripts read it, so it stays as it is, like that of `show --json`. After an error there is
// no outcome: no changes, and nothing written. What the sink throws passes on.
//
//   "diagnostics": [{"level", "show", "text", "arguments", "message"}, ...], "changed" (see
//   DifferenceJson.h), "added": [name, ...], "file" and "fileValues" (see there),
//   "notPaired": [name, ...], "notReached": [name, ...], "written": path or null, "replaced":
//   whether a file was there, "backup": the path at which that is kept or null, "notKept": what
//   could not be taken over from it, [text, ...]
void WriteOutcomeJson(const std::vector<velahost::Diagnostic>& diagnostics,
                      const std::optional<Outcome>& outcome, const velahost::ByteSink& sink);
// Adds the members of that object.
void WriteOutcomeMembers(const std::vector<velahost::Diagnostic>& diagnostics,
                         const std::optional<Outcome>& outcome, LabelPairs pairs, JsonStream& json);

}  // namespace applydic
