// Edge: the guard with MSVC's own keywords, which clang knows too.
#include "foundation/seh_guard.h"

#include "foundation/windows_api.h"

namespace tarnwick {

// The code is taken while the filter runs: behind it not every system still knows it.
uint32_t CallGuarded(void (*function)(void*), void* context) {
  uint32_t code = 0;
  __try {
    function(context);
  } __except (code = GetExceptionCode(), EXCEPTION_EXECUTE_HANDLER) {
    return code;
  }
  return 0;
}

}  // namespace tarnwick
