#pragma once
// Installed Steam apps, named and resolved by Steam's app cache: the catalogue has no say, and nothing tests
// that an app is a game.

#include "matching/scan_result.h"

#include <map>
#include <string>

namespace tarnwick {

// Both arguments are ignored. Results come in the order of the app ids as text. No exception leaves it; only
// a structured one may, where the cache's nesting overflows the stack.
ScanResults ScanSteamAppInfo(const GameList& games, const std::string& userSid);

// App id text -> install location of every Uninstall key named "Steam App <id>" exactly so. The user's keys
// overwrite the 32-bit ones, which overwrite the 64-bit ones.
std::map<std::string, std::string> CollectInstalledSteamApps();

// Adds subkey name -> InstallLocation for every subkey that has one. The names are listed in the 64-bit view
// and in the ANSI code page. Any hive but HKEY_CURRENT_USER means HKEY_LOCAL_MACHINE.
void CollectUninstallLocations(std::map<std::string, std::string>& locations, const std::string& hive,
                               const std::string& subkey);

}  // namespace tarnwick
