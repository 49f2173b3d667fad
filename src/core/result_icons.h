#pragma once
// The icon of one found game.

#include "matching/scan_result.h"

#include <string>

namespace tarnwick {

// The data URI of a PNG: what the result's displayIcon refers to, or else its executable, or else the best
// icon in the executable's folder, or else the system's generic application icon. Empty if none is to be had.
// Nothing is cached. Sets up COM for itself, on any thread.
std::string BuildScanResultIcon(const ScanResult& result);

}  // namespace tarnwick
