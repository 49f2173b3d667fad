#pragma once
// How two scans of one machine differ.

#include "host/fleet/scan_file.h"

#include <string>
#include <vector>

namespace tarnwick::host {

struct MovedGame {
  ScannedGame game;  // as the newer scan has it
  std::string from;  // its path in the older scan
};

struct ScanDifference {
  std::vector<ScannedGame> removed;  // in the older scan's order
  std::vector<ScannedGame> added;    // in the newer scan's order
  std::vector<MovedGame> moved;      // likewise
};

// Two entries are one game by the first of these that holds: path and launch URI are equal; the URI is; launcher
// and name are; the path is. Two different URIs make two games. Letter case doesn't count in paths, nor does the
// version in the folder of a package of the Microsoft Store, which changes with each update.
ScanDifference CompareScans(const std::vector<ScannedGame>& older, const std::vector<ScannedGame>& newer);

}  // namespace tarnwick::host
