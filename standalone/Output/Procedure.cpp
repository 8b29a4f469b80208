#include <utility>

#include "host/Output.h"
#include "standalone/Host.h"
#include "standalone/HostCalls.h"

// A frame has nothing of its own: the host keeps the titles of those that are open.
struct BpProcedure::Impl {};

BpProcedure::BpProcedure(std::string title, int /*kind*/) {
  velahost::Called("BpProcedure::BpProcedure");
  velahost::Host::Current().openFrames.push_back(std::move(title));
}

BpProcedure::~BpProcedure() {
  velahost::Released("BpProcedure::~BpProcedure");
  velahost::Host::Current().openFrames.pop_back();
}
