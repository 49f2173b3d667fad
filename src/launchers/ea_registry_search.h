#pragma once
// EA titles, by publisher keys joined to the Uninstall key.

#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

// A title whose product GUID has an Uninstall record with a name and an existing icon file.
struct EaGameEntry {
  std::string displayName;  // never empty
  std::string exePath;      // the record's DisplayIcon without outer quotes; an existing file
  std::string registryKey;  // the Uninstall record's key text
  std::string valueName;    // where exePath came from: always "DisplayIcon"
  std::string productGuid;
};

// In the order of the publisher keys, then of the registry. A GUID below two publishers gives two entries. A
// failure is logged, and what was read before it is returned.
std::vector<EaGameEntry> GetEaGamesFromRegistry();

// Reports every entry, whether the catalogue knows it or not: both arguments are ignored.
ScanResults EARegistrySearch(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
