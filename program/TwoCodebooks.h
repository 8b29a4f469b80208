#pragma once

#include <optional>
#include <string>

#include "standalone/Codebook/CodebookFile.h"

namespace applydic {

// An older codebook and a newer one, to be shown, with their labels in one language.
struct TwoCodebooks {
  velahost::CodebookFile before;
  velahost::CodebookFile now;
};

// Opens both at the same time; each is named by a path, path#ID, or, one of them, "-" for standard
// input. The language of the labels is the one given, else that of the newer file's first label.
// Throws velahost::FileError.
TwoCodebooks OpenBoth(const std::string& before, const std::string& now,
                      const std::optional<std::string>& language);

// Writes what was not read of each file to standard error.
void WriteWarningsOf(const TwoCodebooks& files);

}  // namespace applydic
