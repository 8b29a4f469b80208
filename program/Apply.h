#pragma once

#include "program/CommandLine.h"
#include "program/Failure.h"

namespace applydic {

// Carries out `applydic apply`: reads the working codebook, runs the commands on it and writes it.
// Throws Failure, velahost::CodebookError or velahost::SaveError where the program cannot run.
ExitStatus RunApply(const ApplyOptions& options);

}  // namespace applydic
