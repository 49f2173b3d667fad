#pragma once
// Riot games, from the client's metadata folders and the catalogue.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults RiotPlatformSearch(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
