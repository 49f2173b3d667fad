#pragma once
// What a strategy gives back, and the shape of a strategy.

#include "catalogue/game_signature.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick {
namespace RegistryGameScanner {

// One found game. All texts are UTF-8.
struct ScanResult {
  std::string name;
  std::string exePath;    // full path; empty for a game that is only launched by URI
  std::string launchUrl;  // "steam://run/" at its start marks a Steam result
  std::string source;  // how it was found: a key text or a strategy's own words; ranks results when merging
  std::string displayIcon;  // icon hint, such as an Uninstall key's DisplayIcon; may be empty
  bool found = false;
  int32_t sourceKind = kSourceNone;
  std::string sourceExId;
};

}  // namespace RegistryGameScanner

using RegistryGameScanner::ScanResult;
using ScanResults = std::vector<ScanResult>;

// A strategy: the games to look for and a user's SID (always empty in a scan) in, found games out. It runs
// beside the other strategies of its level, so it only reads its arguments and shares nothing but the log.
using ScanFunction = ScanResults(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
