#pragma once
// One installed app as Steam describes it, steamapps\appmanifest_<id>.acf.

#include <istream>
#include <string>

namespace tarnwick {

struct SteamManifestInfo {
  std::string appId;  // decimal, as text
  std::string name;
  std::string installDir;  // the bare folder name as read; ScanAppManifests makes it a full path
  std::string exePath;     // always empty: the catalogue tells an app's executable, not its manifest
};

// Of several "appid" or "installdir" keys the last counts, of several "name" keys the first whose value isn't
// empty; values are not unescaped. What the stream doesn't say stays empty.
SteamManifestInfo ReadAppManifest(std::istream& text);

}  // namespace tarnwick
