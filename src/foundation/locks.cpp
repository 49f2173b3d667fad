// Edge: the process-wide locks.
#include "foundation/locks.h"

namespace tarnwick {

CriticalSection g_apiLock;
CriticalSection g_cacheLock;

}  // namespace tarnwick
