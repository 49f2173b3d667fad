// Edge: Catalogue games that Steam has installed, from the Uninstall key and every library.
#include "steam/steam_games_scan.h"

namespace tarnwick {

ScanResults ScanSteamGames(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
