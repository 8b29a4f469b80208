#pragma once

#include <string>

#include "standalone/Dictionary/Dictionary.h"

namespace fuzz {

// Ends the process, which makes a finding, if what must hold does not; says what.
void Expect(bool holds, const std::string& what);

// Expects that both are the same dictionary: the same variables and items of the file.
void ExpectSameDictionary(const velahost::Dictionary& a, const velahost::Dictionary& b);

}  // namespace fuzz
