#pragma once
// miHoYo games, from the HoYoPlay launcher's gamedata.dat files and the catalogue.

#include "launchers/game_data_reader.h"
#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

// Games of the catalogue only. Without one that could match, no file is touched.
ScanResults MihoyoPlatformSearch(const GameList& games, const std::string& userSid);

// The gamedata.dat files below one launcher root: 0 miHoYo, 1 Cognosphere, 2 Cognosphere's standalone folder.
// `appData` empty means that the shell has no such folder. A standard exception is logged, and what was found
// before counts.
std::vector<std::string> GetGameDataPaths(int root, const std::string& appData);

// One file's entries, none if it can't be opened.
std::vector<MihoyoGameEntry> ParseGameDataFile(const std::string& path);

}  // namespace tarnwick
