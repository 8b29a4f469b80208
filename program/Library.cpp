#include "program/Library.h"

#include <dlfcn.h>

#include <string>

#include "program/Failure.h"

namespace applydic {

EntryPoint LoadLibrary() {
  // The program's run path leads to the library, so its bare name is enough. The host operations
  // that it imports are found in the standalone host, which the program is linked to.
  void* library = dlopen(VELAWAPD_FILE, RTLD_NOW | RTLD_LOCAL);
  void* entry = library == nullptr ? nullptr : dlsym(library, "applydic_");
  if (entry == nullptr) {
    throw Failure(std::string("Cannot load the library: ") + dlerror() +
                  "; keep bin/applydic and lib/" VELAWAPD_FILE " side by side.");
  }
  return reinterpret_cast<EntryPoint>(entry);
}

}  // namespace applydic
