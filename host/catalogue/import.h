#pragma once
// Records made of what this machine knows: of every game in Steam's own cache, and of what a scan reports.

#include "catalogue/game_signature.h"
#include "matching/scan_result.h"

#include <cstddef>
#include <map>
#include <string>

namespace tarnwick::host {

struct Import {
  GameList games;
  std::map<std::string, size_t> left;  // why, and how many
};

// Every game in the app cache of the Steam that the registry names: its id, its program and where Steam
// installs it. Throws std::runtime_error with a text for people where there is no such Steam or no cache.
Import ImportSteam();

// Scans this machine without a catalogue and makes records of what launchers report. Battle.net, Riot, miHoYo
// and Bethesda tell only games that a catalogue names, and are not asked.
Import ImportInstalled();

// What the records of these results are; `results` are a scan's without a catalogue.
Import RecordsOfResults(const ScanResults& results);

}  // namespace tarnwick::host
