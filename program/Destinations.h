#pragma once

#include <string>

#include "program/CommandLine.h"
#include "program/Run.h"

namespace applydic {

// Where the outcome of one of the working files goes, by the path of its document.
Destination DestinationOf(const ApplyOptions& options, const std::string& workingPath);

// Throws Failure where several working files cannot be written as the options say: the output is no
// folder, two of them would be written to one path, or one over another, which is then lost.
// Whatever concerns a single one of them is left to its run.
void CheckDestinations(const ApplyOptions& options);

}  // namespace applydic
