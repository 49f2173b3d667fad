// Edge: EA titles, by publisher keys joined to the Uninstall key.
#include "launchers/ea_registry_search.h"

namespace tarnwick {

ScanResults EARegistrySearch(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
