#pragma once
// Packaged games of the current user.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanMicrosoftStore(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
