// Edge: Catalogue games in Steam's own library that the registry marks as installed.
#include "steam/steam_default_id.h"

namespace tarnwick {

ScanResults ScanSteamDefaultId(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
