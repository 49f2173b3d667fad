// Edge: Epic games, from the launcher's manifests and its list of installations.
#include "launchers/epic_games_scan.h"

namespace tarnwick {

ScanResults ScanEpicGames(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
