#pragma once

#include <string>

#include "tests/cases/CaseFile.h"

namespace cases {

// The codebook document of a dictionary in the notation of case files. Throws std::runtime_error.
std::string CodebookText(const Lines& dictionary);

}  // namespace cases
