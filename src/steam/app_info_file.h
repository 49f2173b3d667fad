#pragma once
// Opening Steam's app cache for its reader.

#include "steam/app_info_reader.h"

#include <string>

namespace tarnwick {

// Opens appcache\appinfo.vdf below Steam's folder and indexes it. False only if the file can't be reached; a
// file with nothing useful in it gives an empty index and true. Throws std::bad_alloc as IndexAppInfo does.
// Called once for a reader, whose stream is open from then on.
bool LoadAppInfoIndex(SteamAppInfoReader& reader, const std::string& steamPath);

}  // namespace tarnwick
