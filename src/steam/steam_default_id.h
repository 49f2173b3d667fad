#pragma once
// Catalogue games in Steam's own library that the registry marks as installed.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanSteamDefaultId(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
