#pragma once
// What can be shown for one executable.

#include "inventory/icon_uris.h"

#include <functional>
#include <string>

namespace tarnwick {

// Behind IA_GetGameDetailsByPathJson; see the public header for the contract. Lets no language exception out,
// takes no lock, and logs failures only. `buildIcon` stands in for the icon in tests.
using FileIconBuilder = std::function<std::string(const std::wstring& path)>;
int WriteGameDetails(const char* path, char* buffer, int size,
                     const FileIconBuilder& buildIcon = FileIconUri);

}  // namespace tarnwick
