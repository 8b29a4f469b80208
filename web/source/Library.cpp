#include "program/Library.h"

// The library's entry point: it is linked into the program, since a page has nothing to load it
// from.
extern "C" void applydic_();

namespace applydic {

EntryPoint LoadLibrary() { return applydic_; }

}  // namespace applydic
