// Edge: Games that GOG registered, from both registry views.
#include "launchers/gog_registry_search.h"

namespace tarnwick {

ScanResults GogRegistrySearch(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
