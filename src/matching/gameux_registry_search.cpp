// Edge: Entries of the Windows game explorer joined to the catalogue by their GUID.
#include "matching/gameux_registry_search.h"

namespace tarnwick {

ScanResults ScanGameUxRegistry(const GameList&) { return {}; }

}  // namespace tarnwick
