#pragma once
// Games whose catalogue record has a product GUID, by that product's Uninstall entry.

#include "matching/scan_result.h"

#include <string>

namespace tarnwick {

// Tests signatures with a GameGUID other than zero, in their order, except Steam's.
ScanResults ScanUninstallSearch(const GameList& games);

// The first existing executable below an install folder, which comes without trailing separators; empty if
// there is none. The folder-relative lists come first, then the default folder put below the install folder,
// whole and by its last segment. Throws std::out_of_range where BuildDrivePath does.
std::string ResolveUninstallExe(const std::string& folder, const GameSignature& signature);

}  // namespace tarnwick
