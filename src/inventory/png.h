#pragma once
// Icons as PNG, and as the data URIs that the JSON texts carry.

#include "foundation/windows_api.h"

#include <string>
#include <vector>

namespace tarnwick {

inline constexpr char kPngDataUriPrefix[] = "data:image/png;base64,";

// The icon as PNG, at its own size. False, and no bytes, for a null icon or when any step fails. COM must be
// set up on the calling thread; the icon stays the caller's.
bool EncodeIconToPng(HICON icon, std::vector<unsigned char>& bytes);

// kPngDataUriPrefix and the PNG in base 64; empty if there is no icon or no PNG.
std::string IconDataUri(HICON icon);

}  // namespace tarnwick
