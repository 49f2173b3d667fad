#pragma once
// Programs that users added to Steam by hand, from the shortcuts.vdf of every user that has used Steam here.

#include "matching/scan_result.h"
#include "steam/shortcuts_reader.h"

#include <string>
#include <vector>

namespace tarnwick {

// Every shortcut whose executable exists, in the order of the files; nothing tells it from a game, and it has
// no launch URI. Exceptions other than standard ones, and those from outside the reading of the files, leave
// the scan.
ScanResults ScanSteamShortcuts();

// The shortcuts of all users, in the order of the listing and with repetitions. A failure is logged, and what
// was read until then comes back.
std::vector<SteamShortcut> GetSteamShortcuts(const std::string& steamPath);

// The shortcuts of one file; empty if it can't be opened. A failure as above.
std::vector<SteamShortcut> ParseShortcutsVdf(const std::string& path);

}  // namespace tarnwick
