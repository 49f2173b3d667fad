#pragma once
// Titles that the Arc launcher registered.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ArcRegistrySearch(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
