#pragma once

#include <string>

#include "host/Data.h"

namespace fuzz {

// Ends the process, which makes a finding, if what must hold does not; says what.
void Expect(bool holds, const std::string& what);

// Expects that both data sources have the same dictionary: the same variables and file properties.
void ExpectSameDictionary(const VELA_DataSource& a, const VELA_DataSource& b);

}  // namespace fuzz
