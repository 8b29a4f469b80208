#pragma once

#include <string>

#include "host/Data.h"
#include "program/CommandLine.h"
#include "program/Failure.h"

namespace applydic {

// Carries out `applydic show`. Throws Failure or velahost::CodebookError where the program cannot
// run.
ExitStatus RunShow(const ShowOptions& options);

// The dictionary of a data source for people to read: the file-level items, then each variable.
std::string DictionaryText(const VELA_DataSource& dataSource);

}  // namespace applydic
