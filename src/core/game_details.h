#pragma once
// What can be shown for one executable.

#include <functional>
#include <string>

namespace tarnwick {

// The icon of an existing file as a data URI: its own, or the system's generic one, or empty. COM must be set
// up.
std::string BuildFileIcon(const std::wstring& path);

// Behind IA_GetGameDetailsByPathJson; see the public header for the contract. Lets no language exception out,
// takes no lock, and logs failures only. `buildIcon` stands in for the icon in tests.
using FileIconBuilder = std::function<std::string(const std::wstring& path)>;
int WriteGameDetails(const char* path, char* buffer, int size,
                     const FileIconBuilder& buildIcon = BuildFileIcon);

}  // namespace tarnwick
