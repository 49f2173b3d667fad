#pragma once
// Ubisoft games, from the launcher's configuration cache and its Uninstall entries.

#include "launchers/uplay_configurations_reader.h"
#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

// One Uninstall subkey of a Ubisoft game.
struct UplayInstallEntry {
  std::string keyPath;          // full text of the key
  std::string valueName;        // "InstallLocation"; nothing reads it
  std::string installLocation;  // without separators at its end, never empty
  std::string displayName;      // never empty
  std::string installSuffix;    // the key's name behind its last blank; nothing reads it
};

// The catalogue plays no part. Throws std::bad_alloc for a configuration cache of 2 GiB or more.
ScanResults ScanUplayConfigurations();

// The file's records in file order; empty if it can't be opened. Throws std::bad_alloc for 2 GiB or more.
std::vector<UplayConfigRecord> ParseUplayConfigurations(const std::string& path);

// From the 32-bit view and then the 64-bit view; a key in both is listed twice.
std::vector<UplayInstallEntry> FindUplayInstalls();

// Empty if `relative` is; `append` may be empty.
std::string BuildUplayExePath(const std::string& installLocation, const std::string& append,
                              const std::string& relative);

}  // namespace tarnwick
