#pragma once

#include "program/CommandLine.h"
#include "program/Failure.h"
#include "standalone/Host/Host.h"

namespace applydic {

// Carries out `applydic apply` on a new host: reads the working codebook, runs the commands on it
// and writes it. Throws Failure, velahost::FileError or velahost::SaveError where the program
// cannot run.
ExitStatus RunApply(const ApplyOptions& options, velahost::Host& host);

}  // namespace applydic
