#pragma once

#include "program/Terminal.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Files/File.h"

namespace applydic {

// Writes the variables of a dictionary as a table that fits a page: name, type or print format,
// label, and values with their labels. Long cells are folded, and cut after a few lines.
// REQUIRES: the page has a width. What the sink throws passes on.
void WriteDictionaryTable(const velahost::Dictionary& dictionary, const Page& page,
                          const velahost::ByteSink& sink);

}  // namespace applydic
