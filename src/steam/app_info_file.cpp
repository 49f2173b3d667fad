// Edge: the app cache's file.
#include "steam/app_info_file.h"

#include "foundation/machine/data_files.h"
#include "matching/paths.h"

#include <utility>

namespace tarnwick {

bool LoadAppInfoIndex(SteamAppInfoReader& reader, const std::string& steamPath) {
  reader.index.clear();
  reader.filePath = CombinePath(steamPath, "appcache\\appinfo.vdf");
  if (!FileExists(reader.filePath)) return false;
  DataFile file = OpenBinaryFile(reader.filePath);
  if (!*file) return false;
  reader.stream = std::move(file);
  IndexAppInfo(reader, *reader.stream);
  return true;
}

}  // namespace tarnwick
