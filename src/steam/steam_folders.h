#pragma once
// Where Steam is. Every strategy asks in an order of its own, and the orders are not to be unified: which
// strategy finds a Steam that is only half registered is part of what a scan answers.

#include <string>

namespace tarnwick {

// Steam's folder as UTF-8, empty if the registry doesn't say. Nothing tests that the folder exists.
std::string GetSteamInstallPath();    // 32-bit key, 64-bit key, the user's SteamPath
std::string GetAppInfoSteamPath();    // 64-bit key, 32-bit key
std::string GetDefaultIdSteamPath();  // 32-bit key, 64-bit key

// The first of the 32-bit and the 64-bit key that exists; the other isn't asked when that one has no
// InstallPath. The value has to be a REG_SZ of less than 260 bytes in the ANSI code page.
std::string GetShortcutsSteamPath();

}  // namespace tarnwick
