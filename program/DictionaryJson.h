#pragma once

#include <cstddef>
#include <vector>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Files/File.h"

namespace applydic {

// Writes a dictionary as the object that `applydic show --json` prints; at most one variable is
// held as text at a time. Scripts read it: its keys, their order and the kinds of their values stay
// as they are. What the sink throws passes on.
void WriteDictionaryJson(const velahost::Dictionary& dictionary,
                         const velahost::DocumentationLookup& documentation,
                         const velahost::ByteSink& sink);
// The same with the variables of these columns only.
void WriteDictionaryJson(const velahost::Dictionary& dictionary,
                         const std::vector<std::size_t>& columns,
                         const velahost::DocumentationLookup& documentation,
                         const velahost::ByteSink& sink);

}  // namespace applydic
