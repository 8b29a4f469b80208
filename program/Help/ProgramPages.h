#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace applydic {

// What is made of the declarations of the program's commands and options, so that it says what the
// program takes. `program` has its commands declared.

// The manual page, for man.
std::string ManPage(const CLI::App& program);

// What a shell completes the program's arguments with.
std::string BashCompletion(const CLI::App& program);
std::string ZshCompletion(const CLI::App& program);
std::string FishCompletion(const CLI::App& program);

}  // namespace applydic
