#pragma once
// One installed app as Steam describes it, steamapps\appmanifest_<id>.acf.

#include <istream>
#include <string>

namespace tarnwick {

struct SteamManifestInfo {
  std::string appId;  // decimal, as text
  std::string name;
  std::string
      installDir;       // the bare folder name as read; the full path once the folder's listing has placed it
  std::string exePath;  // stays empty: which executable an app has is the catalogue's business
};

// Of several "appid" or "installdir" keys the last counts, of several "name" keys the first whose value isn't
// empty; values are not unescaped. What the stream doesn't say stays empty.
SteamManifestInfo ReadAppManifest(std::istream& text);

}  // namespace tarnwick
