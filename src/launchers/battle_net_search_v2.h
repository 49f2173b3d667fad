#pragma once
// Battle.net games, from the agent's logs.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults BattleNetSearchV2(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
