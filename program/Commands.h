#pragma once

#include <vector>

#include "program/CommandLine.h"
#include "standalone/Syntax/Tokenizer.h"

namespace applydic {

// Reads the commands that the options name: at least one, which may be empty. Throws Failure.
std::vector<velahost::Command> ReadCommands(const WorkOptions& options);

}  // namespace applydic
