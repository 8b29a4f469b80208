#pragma once

#include <cstddef>
#include <future>
#include <utility>

namespace velahost {

// The threads that can run at the same time; 1 where nothing runs beside anything, and where the
// system does not tell.
std::size_t Threads();

// How RunBeside runs a function: on a thread of its own if one can be started, else when its result
// is asked for. Where there are no threads, always the latter.
extern const std::launch kBeside;

// Calls the function with the arguments, which are copied or moved, beside what the caller goes on
// with. The future has what it returns or throws; destroyed, it waits for a thread that runs.
// Everything that runs beside something is started here.
template <typename Function, typename... Arguments>
auto RunBeside(Function&& function, Arguments&&... arguments) {
  return std::async(kBeside, std::forward<Function>(function),
                    std::forward<Arguments>(arguments)...);
}

}  // namespace velahost
