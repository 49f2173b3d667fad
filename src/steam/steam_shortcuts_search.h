#pragma once
// Programs that users added to Steam by hand, from shortcuts.vdf.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanSteamShortcuts();

}  // namespace tarnwick
