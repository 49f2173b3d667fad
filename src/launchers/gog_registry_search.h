#pragma once
// Games that GOG registered, from both registry views.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults GogRegistrySearch(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
