#pragma once
// The Steam app id in a launch URI, by which results and catalogue records are known to be the same game.

#include <string>

namespace tarnwick {

// What stands behind "steam://run/" to the end of the URI, a trailing slash or query included; empty for any
// URI that doesn't begin so.
inline std::string SteamAppId(const std::string& launchUrl) {
  static constexpr char kPrefix[] = "steam://run/";
  constexpr size_t kLength = sizeof kPrefix - 1;
  return launchUrl.compare(0, kLength, kPrefix) == 0 ? launchUrl.substr(kLength) : std::string();
}

}  // namespace tarnwick
