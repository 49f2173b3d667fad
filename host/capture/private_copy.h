#pragma once
// Takes what is private out of a whole copy.

#include "host/capture/machine_copy.h"

#include <cstddef>

namespace tarnwick::host {

// Replaces it everywhere, sorts each list anew, and returns how many things were replaced.
size_t ReplacePrivateThings(MachineCopy& copy);

}  // namespace tarnwick::host
