#pragma once
// Is this a PNG picture, and of what measure? Icons are stored as the pictures they are.

#include <string>

namespace tarnwick::desktop {

// Why the bytes are no whole PNG picture of `size` pixels both ways; nothing if they are one. Checks the
// chunks with their sums and that the pixels can be unpacked, not the pixels themselves.
std::string PngFault(const std::string& bytes, int size);

}  // namespace tarnwick::desktop
