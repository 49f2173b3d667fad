#pragma once
// Icon images as bytes: what an icon resource and an .ico file share.

#include "desktop/desktop.h"

#include <string>

namespace tarnwick::desktop {

// The bytes of one image: its picture, if it has one; else PNG for 256 pixels, else a bitmap of 32 bits a pixel with its mask. Throws
// std::runtime_error for a size outside 1 to 256.
std::string IconImageBytes(const IconImage& image);

// A square of one opaque colour as a PNG file.
std::string PngBytes(int size, uint32_t rgb);

// The first 12 bytes of an image's entry, the same in a resource and in a file.
std::string IconEntryBytes(const IconImage& image, size_t length);

}  // namespace tarnwick::desktop
