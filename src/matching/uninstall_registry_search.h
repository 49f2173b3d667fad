#pragma once
// Games whose catalogue record has a product GUID, by that product's Uninstall entry.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanUninstallSearch(const GameList& games);

}  // namespace tarnwick
