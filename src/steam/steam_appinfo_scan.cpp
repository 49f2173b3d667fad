// Edge: Installed Steam apps, named and resolved by Steam's app cache.
#include "steam/steam_appinfo_scan.h"

namespace tarnwick {

ScanResults ScanSteamAppInfo(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
