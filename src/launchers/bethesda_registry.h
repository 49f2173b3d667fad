#pragma once
// Titles of the Bethesda.net launcher, from the Uninstall key and the catalogue.

#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

// An Uninstall record of the launcher's making.
struct BethesdaGameEntry {
  std::string productId;
  std::string displayName;
  std::string installPath;  // absolute, an existing folder
  std::string displayIcon;  // may be empty
  std::string registryKey;  // the record's key text
  std::string valueName;    // where installPath came from: always "Path"
};

// Is the launcher's own executable in the folder that it registered? False on any failure.
bool IsBethesdaLauncherInstalled();

// In the order of the registry's 32-bit view. A failure is logged, and what was read before it is returned.
std::vector<BethesdaGameEntry> GetBethesdaGamesFromRegistry();

std::string BuildBethesdaRunUri(const std::string& productId);

// Reports the entries whose run URI is the LaunchUrl of a signature in `games`. Throws
// std::filesystem::filesystem_error if the state of an install folder can't be told. `userSid` is ignored.
ScanResults BethesdaRegistrySearch(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
