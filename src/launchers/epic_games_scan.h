#pragma once
// Epic games, from the launcher's manifests and its list of installations.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanEpicGames(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
