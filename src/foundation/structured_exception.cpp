// Edge: raising structured exceptions.
#include "foundation/structured_exception.h"

#include "foundation/windows_api.h"

#include <cstdlib>

namespace tarnwick {

void RaiseStructuredException(uint32_t code) {
  RaiseException(code, EXCEPTION_NONCONTINUABLE, 0, nullptr);
  std::abort();  // never reached: no handler may continue such an exception
}

}  // namespace tarnwick
