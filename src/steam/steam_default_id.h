#pragma once
// Catalogue games in Steam's own library that the registry marks as installed. Other libraries are not looked
// at.

#include "matching/scan_result.h"

#include <string>

namespace tarnwick {

// Results in the order of `games`; `userSid` is ignored. No exception leaves it.
ScanResults ScanSteamDefaultId(const GameList& games, const std::string& userSid);

// True if Steam marks the app with Installed = 1 for the current user.
bool IsSteamAppInstalled(const std::string& appId);

}  // namespace tarnwick
