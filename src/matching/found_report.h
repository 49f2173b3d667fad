#pragma once
// The Found and completion lines of the strategies. Default Registry Scan has a form of its own for both, and
// Steam Games Scan, Steam AppInfo Scan and the Store scan have one for some of their Found lines.

#include "matching/scan_result.h"

#include <string>

namespace tarnwick {

// Marks `result` as found, appends it and logs "<prefix> Found: <name> -> <path>".
void ReportFound(ScanResults& results, const std::string& prefix, ScanResult result);

// Logs "<prefix> Scan completed! Found <n> games.".
void ReportCompletion(const ScanResults& results, const std::string& prefix);

}  // namespace tarnwick
