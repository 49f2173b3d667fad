// Edge: Battle.net games, from the agent's logs.
#include "launchers/battle_net_search_v2.h"

namespace tarnwick {

ScanResults BattleNetSearchV2(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
