#pragma once
// Every entry of the Windows game explorer whose executable exists.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults ScanGameUxInfo();

}  // namespace tarnwick
