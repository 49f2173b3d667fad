// Edge: Every entry of the Windows game explorer whose executable exists.
#include "matching/gameux_info_search.h"

namespace tarnwick {

ScanResults ScanGameUxInfo() { return {}; }

}  // namespace tarnwick
