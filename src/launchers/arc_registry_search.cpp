// Edge: Titles that the Arc launcher registered.
#include "launchers/arc_registry_search.h"

namespace tarnwick {

ScanResults ArcRegistrySearch(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
