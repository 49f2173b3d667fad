#pragma once
// Installed Steam apps, named and resolved by Steam's app cache.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanSteamAppInfo(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
