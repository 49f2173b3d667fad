#pragma once
// What every strategy says of its findings, behind its own bracketed prefix.

#include "matching/scan_result.h"

#include <string>

namespace tarnwick {

// Marks `result` as found, appends it and logs "<prefix> Found: <name> -> <path>".
void ReportFound(ScanResults& results, const std::string& prefix, ScanResult result);

// Logs "<prefix> Scan completed! Found <n> games.".
void ReportCompletion(const ScanResults& results, const std::string& prefix);

}  // namespace tarnwick
