#pragma once

#include "program/CommandLine.h"
#include "program/Failure.h"

namespace applydic {

// Carries out `applydic apply` on a new host, which stays until the program ends: reads the working
// codebook, runs the commands on it and writes it. Throws Failure, velahost::FileError or
// velahost::SaveError where the program cannot run.
ExitStatus RunApply(const ApplyOptions& options);

}  // namespace applydic
