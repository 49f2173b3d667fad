#pragma once
// Entries of the Windows game explorer joined to the catalogue by their GUID.

#include "matching/gameux_entries.h"
#include "matching/scan_result.h"

#include <functional>
#include <string>

namespace tarnwick {

// Tests signatures with a GameGUID other than zero, in their order, whatever their source.
ScanResults ScanGameUxRegistry(const GameList& games);

// The entries with an "ApplicationId" and an existing executable, without the system's own games. The subkeys
// are those of the 32-bit view; a subkey whose reading raises a structured exception is left out with a debug
// line.
GameUxEntries ReadGameUxEntries();

// Adds the entry of one subkey, or replaces the one of the same id. Never throws.
void ReadGameUxSubkey(const std::string& listKey, const std::string& subkey, GameUxEntries& entries);

// Runs the reading of one subkey. A structured exception ends it with a debug line, which has no prefix of
// the log and is cut at 511 bytes.
void GuardGameUxSubkey(const std::string& subkey, const std::function<void()>& read);

}  // namespace tarnwick
