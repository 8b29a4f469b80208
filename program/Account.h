#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Syntax/Diagnostics.h"

namespace applydic {

// The result of a run that reported no error.
struct Outcome {
  velahost::Dictionary dictionary;  // as it is now
  velahost::Changes changes;        // since it was read
  // The path to which the codebook is written; nothing for a dry run.
  std::optional<std::string> written;
};

// Returns the account of a run for people, in lines.
std::string AccountText(const Outcome& outcome);

// Returns the object that `applydic apply --json` prints. Scripts read it, so it stays as it is,
// like that of `show --json`. After an error there is no outcome: no changes, and nothing written.
std::string OutcomeJsonText(const std::vector<velahost::Diagnostic>& diagnostics,
                            const std::optional<Outcome>& outcome);

}  // namespace applydic
