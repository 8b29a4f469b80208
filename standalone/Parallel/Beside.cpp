#include "standalone/Parallel/Beside.h"

#include <algorithm>
#include <thread>

namespace velahost {

#ifdef __EMSCRIPTEN__

// To start a thread fails there, and the future of one that was not started is waited for for ever.
const std::launch kBeside = std::launch::deferred;

std::size_t Threads() { return 1; }

#else

const std::launch kBeside = std::launch::async | std::launch::deferred;

std::size_t Threads() { return std::max(1U, std::thread::hardware_concurrency()); }

#endif

}  // namespace velahost
