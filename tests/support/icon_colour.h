#pragma once
// Tells icons apart by their pixels.

#include "foundation/com_scope.h"
#include "foundation/owner.h"
#include "inventory/png.h"
#include "support/png_pixels.h"

#include <cstdint>
#include <vector>

namespace tarnwick::tests {

inline constexpr uint32_t kNoIcon = 0xFFFFFFFF;

// The centre colour 0xRRGGBB of an icon, or kNoIcon.
inline uint32_t ColourOf(const Icon& icon) {
  std::vector<unsigned char> bytes;
  const ComScope com;
  return EncodeIconToPng(icon.Get(), bytes) ? DecodePng(bytes.data(), bytes.size()).CentreRgb() : kNoIcon;
}

// Its width in pixels; 0 for none.
inline unsigned WidthOf(const Icon& icon) {
  std::vector<unsigned char> bytes;
  const ComScope com;
  return EncodeIconToPng(icon.Get(), bytes) ? DecodePng(bytes.data(), bytes.size()).width : 0;
}

}  // namespace tarnwick::tests
