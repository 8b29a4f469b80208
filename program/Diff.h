#pragma once

#include "program/CommandLine.h"
#include "program/Failure.h"

namespace applydic {

// Carries out `applydic diff`: kDone where the dictionaries are the same, kDifferent where they
// differ. Throws Failure or velahost::FileError where the program cannot run.
ExitStatus RunDiff(const DiffOptions& options);

}  // namespace applydic
