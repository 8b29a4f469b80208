#pragma once

#include <vector>

#include "program/CommandLine.h"
#include "program/Failure.h"
#include "program/Library.h"
#include "standalone/Syntax/Tokenizer.h"

namespace applydic {

// Applies the commands to each of several working codebooks, each in a process of its own, and goes
// on after one that fails. Tells of each in the order of the options: a line, with the account
// below it if the options ask for more, or a line of JSON:
//
//   {"working": as named, "status": the exit status that it would have alone, "failure": why, or
//    null, "outcome": the object of WriteOutcomeJson (see Account.h), or null after a failure}
//
// Returns the worst status. Throws Failure, before anything is written, where the outcomes cannot
// all be written as the options say.
ExitStatus ApplyToEach(const ApplyOptions& options, const std::vector<velahost::Command>& commands,
                       EntryPoint applyDictionary);

}  // namespace applydic
