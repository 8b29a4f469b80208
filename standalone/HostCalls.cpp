#include "standalone/HostCalls.h"

namespace velahost {

CallObserver callObserver = nullptr;
ReleaseObserver releaseObserver = nullptr;

}  // namespace velahost
