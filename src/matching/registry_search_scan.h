#pragma once
// Games whose catalogue record names a registry key and a value in it.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanRegistrySearch(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
