// Edge: Games of the Twitch app; its database is out of reach, so nothing is ever found.
#include "launchers/twitch_search.h"

namespace tarnwick {

ScanResults Twitch::TwitchSearch() { return {}; }

}  // namespace tarnwick
