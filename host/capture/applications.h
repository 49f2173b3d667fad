#pragma once
// Which installed applications a capture shows: without being asked for all, those that have to do with games.

#include "host/capture/machine_copy.h"
#include "host/explain/observed_scan.h"
#include "inventory/app_record.h"

#include <string>
#include <vector>

namespace tarnwick::host {

// One subkey of an Uninstall key.
struct UninstallEntry {
  KeyPlace place;
  std::wstring name;  // DisplayName; empty where the entry describes no application
  bool kept = false;
};

std::vector<UninstallEntry> ListUninstallEntries();

// Keeps the entries that have to do with games (docs/privacy.md tells which), or all of them. Strategies go
// through every entry in search of games, so that to have been read means nothing.
void KeepEntries(std::vector<UninstallEntry>& entries, const ObservedScan& scan, bool all);

// True for the places of entries that are not kept, and for what lies below them.
KeyTest LeftOutTest(const std::vector<UninstallEntry>& entries);

// How many applications are not kept.
size_t CountLeftOut(const std::vector<UninstallEntry>& entries);

// The kept ones, as the library's own list has them.
std::vector<AppRecord> KeptRecords(const std::vector<UninstallEntry>& entries);

}  // namespace tarnwick::host
