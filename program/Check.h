#pragma once

#include "program/CommandLine.h"
#include "program/Failure.h"

namespace applydic {

// Carries out `applydic check` on a new host for each working codebook: tells all that `applydic
// apply` would refuse or warn about, and writes nothing. After a command with an error it goes on
// with the next one. Each working codebook of several is checked in a process of its own. Returns
// kErrorReported if there is an error, or a warning and the options are strict; kCannotRun for a
// codebook that cannot be read. Throws Failure or velahost::FileError where nothing can be checked.
ExitStatus RunCheck(const CheckOptions& options);

}  // namespace applydic
