#pragma once

#include <cstddef>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Files/File.h"

namespace applydic {

// What documents the variable at a column, as texts.
using DocumentationLookup =
    std::function<std::vector<velahost::DocumentationText>(std::size_t column)>;
// That of the variables of a codebook, which outlives it. REQUIRES: it was not opened as a source.
DocumentationLookup DocumentationIn(const velahost::CodebookFile& file);

// Writes a dictionary as the object that `applydic show --json` prints; at most one variable is
// held as text at a time. Scripts read it: its keys, their order and the kinds of their values stay
// as they are. The layout is that of JsonText. What the sink throws passes on.
void WriteDictionaryJson(const velahost::Dictionary& dictionary,
                         const DocumentationLookup& documentation, const velahost::ByteSink& sink);

// Returns the object as indented text with a line feed at its end. Replaces bytes that are no
// character by U+FFFD.
std::string JsonText(const nlohmann::ordered_json& json);

}  // namespace applydic
