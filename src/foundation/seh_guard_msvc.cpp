// Edge: the guard with MSVC's own keywords. Untried: no such compiler has built it yet.
#include "foundation/seh_guard.h"

#include "foundation/windows_api.h"

namespace tarnwick {

uint32_t CallGuarded(void (*function)(void*), void* context) {
  __try {
    function(context);
    return 0;
  } __except (EXCEPTION_EXECUTE_HANDLER) {
    return GetExceptionCode();
  }
}

}  // namespace tarnwick
