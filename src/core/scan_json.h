#pragma once
// A scan's answer as JSON text.

#include "core/result_icons.h"
#include "matching/scan_result.h"

#include <functional>
#include <string>

namespace tarnwick {

// The text behind the last backslash, or behind the last slash where there is no backslash, or the whole
// path. Empty for a path that ends in that separator.
std::string ExeFileName(const std::string& exePath);

// A result's icon as a data URI, or empty.
using IconBuilder = std::function<std::string(const ScanResult&)>;

// The array of objects with "name", "loc", "icon", "launchUrl" and "exeName", in UTF-8. The icons are built
// anew, on the calling thread.
std::string WriteScanJson(const ScanResults& results, const IconBuilder& buildIcon = BuildScanResultIcon);

}  // namespace tarnwick
