#pragma once
// One line on the terminal that shows how far a scan is.

#include "host/scan_report.h"

#include <string>

namespace tarnwick::host {

// "Level 3: 4 of 9 strategies finished, 12 found", or an empty text before the first level.
std::string ProgressText(const ScanReporter& reporter);

// Draws `text` on the standard error over the line drawn before, cut to the terminal's width; an empty text
// clears the line. Blanks do it, not escape sequences, which not every console understands. Where the
// standard error is no terminal nothing is drawn. One call at a time.
void DrawProgress(const std::string& text);

}  // namespace tarnwick::host
