#pragma once
// Packaged games of the current user.

#include "matching/scan_result.h"

namespace tarnwick {

// Reports the packages that `games` names by their family name (a signature's GameInfo), and those that the
// Store's caches or their own files show to be games: also such as the catalogue doesn't list. `userSid` is
// ignored.
ScanResults ScanMicrosoftStore(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
