#pragma once
// The pixels of PNG pictures, as the system's own decoder sees them: tests tell by the colour where an icon
// came from.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::tests {

struct Picture {
  unsigned width = 0;
  unsigned height = 0;
  std::vector<uint32_t> pixels;  // 0xAARRGGBB, row by row

  uint32_t CentreRgb() const;  // 0xRRGGBB
};

// Both throw std::runtime_error for what is no whole picture. The URI must begin "data:image/png;base64,".
Picture DecodePng(const void* bytes, size_t size);
Picture DecodePngDataUri(std::string_view uri);

}  // namespace tarnwick::tests
