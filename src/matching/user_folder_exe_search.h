#pragma once
// Games whose default folder lies in a user's profile, tried for every profile.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanUserFolderExe(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
