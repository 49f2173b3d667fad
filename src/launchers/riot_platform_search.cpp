// Edge: Riot games, from the client's metadata folders and the catalogue.
#include "launchers/riot_platform_search.h"

namespace tarnwick {

ScanResults RiotPlatformSearch(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
