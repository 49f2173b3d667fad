// Edge: Games of the itch.io app; its database is out of reach, so nothing is ever found.
#include "launchers/itch_io_search.h"

namespace tarnwick {

ScanResults ItchIo::ItchIoSearch() { return {}; }

}  // namespace tarnwick
