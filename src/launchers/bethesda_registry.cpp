// Edge: Titles of the Bethesda.net launcher, from the Uninstall key and the catalogue.
#include "launchers/bethesda_registry.h"

namespace tarnwick {

ScanResults BethesdaRegistrySearch(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
