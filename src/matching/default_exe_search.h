#pragma once
// Games in their default folder, tried on every fixed drive.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanDefaultExe(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
