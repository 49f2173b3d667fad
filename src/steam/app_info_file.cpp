// Edge: the app cache's file.
#include "steam/app_info_file.h"

#include "foundation/files.h"
#include "matching/paths.h"

namespace tarnwick {
namespace {

bool OpenStream(SteamAppInfoReader& reader) {
  if (reader.stream.is_open()) reader.stream.close();  // sets the fail state itself if it can't
  reader.stream.open(PathFromUtf8(reader.filePath), std::ios::in | std::ios::binary);
  return reader.stream.is_open();
}

}  // namespace

bool LoadAppInfoIndex(SteamAppInfoReader& reader, const std::string& steamPath) {
  reader.index.clear();
  reader.filePath = CombinePath(steamPath, "appcache\\appinfo.vdf");
  if (!FileExists(reader.filePath) || !OpenStream(reader)) return false;
  IndexAppInfo(reader, reader.stream);
  return true;
}

}  // namespace tarnwick
