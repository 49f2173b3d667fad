#pragma once
// Ubisoft games, from the launcher's configuration cache and its Uninstall entries.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanUplayConfigurations();

}  // namespace tarnwick
