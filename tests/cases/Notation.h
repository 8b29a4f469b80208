#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "standalone/Syntax/Diagnostics.h"
#include "tests/cases/CaseFile.h"

// Dictionaries and diagnostics in the notation of case files. A dictionary is taken as the object
// that program/DictionaryJson.h writes of it.

namespace cases {

using Json = nlohmann::ordered_json;

// A whole dictionary: first the file-level items, then the variables.
Lines DictionaryLines(const Json& dictionary);

// What differs between two states of a dictionary, as it is in the second: variables that were
// there, added ones, file-level items.
Lines ChangeLines(const Json& before, const Json& after);

std::string DiagnosticLine(const velahost::Diagnostic& diagnostic);

}  // namespace cases
