#pragma once
// Games that GOG registered, from both registry views.

#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

struct GogGameEntry {
  std::string gameId;  // the subkey's name
  std::string exe;     // as registered, quotes and arguments included; never empty
  std::string launchParam;
  std::string gameName;     // may be empty
  std::string registryKey;  // full key text
};

// Those of the 32-bit view, then those of the 64-bit view whose id isn't held yet. A failure is logged, and
// what was read before it is returned.
std::vector<GogGameEntry> GetGogGamesFromRegistry();

// Reports every entry whose executable exists, whether the catalogue knows it or not: both arguments are
// ignored.
ScanResults GogRegistrySearch(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
