#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Files/SaveFile.h"

namespace applydic {

// What a run that reported no error did to the working codebook.
struct Outcome {
  const velahost::CodebookFile& working;  // as it was read; it outlives this object
  velahost::Dictionary dictionary;        // as it is now
  velahost::Changes changes;              // since it was read
  // The names of variables, each list in the order of its file: those of sources that found no
  // namesake, and those of the working file that no command reached (see velahost::Reach).
  std::vector<std::string> notPaired;
  std::vector<std::string> notReached;
  // The path to which the codebook is written, "-" for standard output; nothing for a dry run.
  std::optional<std::string> written;
  velahost::Saved saved;  // what became of the file that was there
};

}  // namespace applydic
