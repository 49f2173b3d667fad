#pragma once
// Catalogue games that Steam has installed, from the Uninstall key and every library.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanSteamGames(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
