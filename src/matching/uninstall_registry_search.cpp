// Edge: Games whose catalogue record has a product GUID, by that product's Uninstall entry.
#include "matching/uninstall_registry_search.h"

namespace tarnwick {

ScanResults ScanUninstallSearch(const GameList&) { return {}; }

}  // namespace tarnwick
