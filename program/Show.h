#pragma once

#include <string>

#include "program/CommandLine.h"
#include "program/Failure.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Dictionary.h"

namespace applydic {

// Carries out `applydic show`: on a terminal the variables are a table; elsewhere, and where the
// user names variables, each is listed. Throws Failure or velahost::FileError where the program
// cannot run.
ExitStatus RunShow(const ShowOptions& options);

// Returns a dictionary for people to read: the file-level items, then each variable. Scripts that
// have no JSON read it too, line by line, so lines are as long as they are.
std::string DictionaryText(const velahost::Dictionary& dictionary,
                           const velahost::DocumentationLookup& documentation);

}  // namespace applydic
