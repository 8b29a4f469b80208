#pragma once

#include <string>

#include "program/CommandLine.h"
#include "program/Failure.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Dictionary.h"

namespace applydic {

// Carries out `applydic show`. Throws Failure or velahost::FileError where the program cannot run.
ExitStatus RunShow(const ShowOptions& options);

// Returns a dictionary for people to read: the file-level items, then each variable.
std::string DictionaryText(const velahost::Dictionary& dictionary,
                           const velahost::DocumentationLookup& documentation);

}  // namespace applydic
