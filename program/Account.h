#pragma once

#include <optional>
#include <string>
#include <vector>

#include "program/Terminal.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Files/File.h"
#include "standalone/Syntax/Diagnostics.h"

namespace applydic {

// The result of a run that reported no error.
struct Outcome {
  const velahost::CodebookFile& working;  // as it was read; it outlives this object
  velahost::Dictionary dictionary;        // as it is now
  velahost::Changes changes;              // since it was read
  // The names of variables, each list in the order of its file: those of sources that found no
  // namesake, and those of the working file that no command reached (see velahost::Reach).
  std::vector<std::string> notPaired;
  std::vector<std::string> notReached;
  // The path to which the codebook is written; nothing for a dry run.
  std::optional<std::string> written;
};

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
