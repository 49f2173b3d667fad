#pragma once
// Is this a PNG picture, and of what measure? Icons are stored as the pictures they are.

#include <string>

namespace tarnwick::desktop {

// Why the bytes are no whole PNG picture of `size` pixels both ways; nothing if they are one. Icons
// have 8 bits of red, green, blue and alpha, not interlaced: no other form will do.
std::string PngFault(const std::string& bytes, int size);

}  // namespace tarnwick::desktop
