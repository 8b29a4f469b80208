#pragma once

#include <functional>
#include <map>
#include <string>

#include "tests/cases/CaseFile.h"

namespace cases {

// Outcomes of the cases of a file, by the line of the case's title: the last one comes first, so
// that when one is written the lines of those to come stay what they are.
using Outcomes = std::map<int, Lines, std::greater<>>;

// Replaces outcomes in a case file. All else stays as it is: the order, comments, and which items
// share a line. Throws std::runtime_error, and leaves the file alone, when it cannot be written or
// would not read as it should.
void RewriteOutcomes(const std::string& path, const Outcomes& outcomes);

}  // namespace cases
