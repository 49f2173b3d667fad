// Edge: Programs that users added to Steam by hand, from shortcuts.vdf.
#include "steam/steam_shortcuts_search.h"

namespace tarnwick {

ScanResults ScanSteamShortcuts() { return {}; }

}  // namespace tarnwick
