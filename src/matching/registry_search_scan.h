#pragma once
// Games whose catalogue record names a registry key and a value in it.

#include "matching/scan_result.h"

#include <string>

namespace tarnwick {

// Tests signatures that have both RegistryKey and RegistryPathKeyName, in their order, except Steam's with a
// launch URL. `userSid`, if not empty, stands in for the current user in HKEY_CURRENT_USER keys.
ScanResults ScanRegistrySearch(const GameList& games, const std::string& userSid);

// The existing executable that an install text - a folder, or a file in it - leads to; empty if none does.
// Among several the one whose path sorts first by bytes wins.
std::string ResolveRegistrySearchExe(const std::string& text, const GameSignature& signature);

}  // namespace tarnwick
