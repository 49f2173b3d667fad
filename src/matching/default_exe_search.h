#pragma once
// Games in their default folder, tried on every fixed drive.

#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

// Tests signatures with a DefaultExe and a default folder, except those of Steam, Epic and the Store. A game
// gives one result for each drive that has it. `userSid` is not read. Throws what BuildDrivePath throws.
ScanResults ScanDefaultExe(const GameList& games, const std::string& userSid);

// Roots such as "C:\", in the order of their letters.
std::vector<std::string> ListFixedDrives();

// Where a signature's executable may lie on a drive, in the order of trying; empty if the signature names no
// place.
std::vector<std::string> BuildDriveCandidates(const GameSignature& signature, const std::string& driveRoot);

}  // namespace tarnwick
