#pragma once

#include <optional>
#include <string>

#include "standalone/Codebook/CodebookFile.h"

namespace applydic {

// Whether a specification of a codebook means standard input: "-" or "/dev/stdin", with "#ID"
// behind it for one of several data files in it. A file "-" is "./-".
bool IsInput(const std::string& specification);

// Read a codebook, or open it, from standard input if that is meant. It can be read once. Throw
// velahost::FileError.
velahost::CodebookBytes ReadFileOrInput(const std::string& specification);
velahost::CodebookFile OpenFileOrInput(const std::string& specification, velahost::OpenFor use,
                                       const std::optional<std::string>& language);

}  // namespace applydic
