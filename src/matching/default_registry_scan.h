#pragma once
// Games whose catalogue record names a registry key, by the install location below it.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanRegistryGames(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
