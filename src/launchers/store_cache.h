#pragma once
// The Store's own caches, where the Store keeps them.

#include "launchers/store_cache_reader.h"

namespace tarnwick {

// Empty where the Store left no such cache. Of entries of one key the first stays, the newer service's before
// the older one's.
CategoryCache LoadCategoryCache();

// As above. A failure is logged, and what was read before it is returned.
EntitlementsCache LoadEntitlementsCache();

}  // namespace tarnwick
