#pragma once
// Titles that the Arc launcher registered.

#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

struct ArcGameEntry {
  std::string subKeyName;
  std::string clientPath;  // absolute, an existing file
  std::string installPath;
  std::string launcher;     // may be empty
  std::string registryKey;  // full key text
  std::string valueName;    // where clientPath came from: always "Client"
};

// In the order of the registry's 32-bit view. A failure is logged, and what was read before it is returned.
std::vector<ArcGameEntry> GetArcGamesFromRegistry();

// Reports every entry. A signature in `games` whose RegistryKey is the entry's gives the name and the launch
// URL; an entry without one goes by its subkey's name. `userSid` is ignored.
ScanResults ArcRegistrySearch(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
