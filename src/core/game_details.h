#pragma once
// What can be shown for one executable.

namespace tarnwick {

// Behind IA_GetGameDetailsByPathJson; see the public header for the contract. Lets no language exception out,
// takes no lock, and logs failures only.
int WriteGameDetails(const char* path, char* buffer, int size);

}  // namespace tarnwick
