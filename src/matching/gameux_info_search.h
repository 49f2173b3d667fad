#pragma once
// Every entry of the Windows game explorer whose executable exists, known to the catalogue or not.

#include "matching/gameux_entries.h"
#include "matching/scan_result.h"

namespace tarnwick {

// One result for each entry with an existing executable, named by its subkey.
ScanResults ScanGameUxInfo();

// All entries of the 32-bit view, the system's own games and those without an executable included.
GameUxEntries ReadGameUxInfoEntries();

}  // namespace tarnwick
