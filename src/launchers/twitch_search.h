#pragma once
// Games of the Twitch app; its database is out of reach, so nothing is ever found.

#include "matching/scan_result.h"

namespace tarnwick {

struct Twitch {
  ScanResults TwitchSearch();
};

}  // namespace tarnwick
