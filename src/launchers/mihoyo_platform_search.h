#pragma once
// miHoYo games, from the HoYoPlay launcher's gamedata.dat files and the catalogue.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults MihoyoPlatformSearch(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
