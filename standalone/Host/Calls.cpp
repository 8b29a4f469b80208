#include "standalone/Host/Calls.h"

namespace velahost {

CallObserver callObserver = nullptr;
ReleaseObserver releaseObserver = nullptr;

}  // namespace velahost
