// Edge: Packaged games of the current user.
#include "launchers/uwp_microsoft_store_scan.h"

namespace tarnwick {

ScanResults ScanMicrosoftStore(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
