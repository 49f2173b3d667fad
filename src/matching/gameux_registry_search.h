#pragma once
// Entries of the Windows game explorer joined to the catalogue by their GUID.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanGameUxRegistry(const GameList& games);

}  // namespace tarnwick
