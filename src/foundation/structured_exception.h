#pragma once
// Structured exceptions of the library's own making.

#include <cstdint>

namespace tarnwick {

// Raises a code that a guard caught, for the guards further out. Neither returns nor unwinds by itself: what
// stands between here and the next guard is skipped.
[[noreturn]] void RaiseStructuredException(uint32_t code);

}  // namespace tarnwick
