// Edge: Games whose catalogue record names a registry key and a value in it.
#include "matching/registry_search_scan.h"

namespace tarnwick {

ScanResults ScanRegistrySearch(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
