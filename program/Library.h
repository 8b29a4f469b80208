#pragma once

namespace applydic {

// The library's entry point: carries out the current host's command.
using EntryPoint = void (*)();

// Loads the library from the folder beside the program's and returns its entry point; the library
// stays loaded to the end of the program. Throws Failure when it cannot be loaded.
EntryPoint LoadLibrary();

}  // namespace applydic
