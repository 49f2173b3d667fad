#include "host/fleet/scan_diff.h"

#include <algorithm>
#include <list>
#include <optional>
#include <unordered_map>

#include "common/capture_rules.h"
#include "host/explain/name_folding.h"

namespace tarnwick::host {
namespace {

using Games = std::vector<ScannedGame>;

constexpr std::string_view kPackages = "\\WINDOWSAPPS\\";

std::string Place(const ScannedGame& game) {
  std::string place = common::Folded(game.loc);
  const size_t packages = place.find(kPackages);
  if (packages == std::string::npos) return place;
  // NAME_VERSION_ARCHITECTURE_RESOURCE_PUBLISHER
  const size_t name = packages + kPackages.size();
  const size_t folderEnd = std::min(place.find('\\', name), place.size());
  const size_t version = place.find('_', name);
  const size_t behind = version < folderEnd ? place.find('_', version + 1) : std::string::npos;
  if (behind < folderEnd) place.erase(version, behind - version);
  return place;
}

std::string PlaceAndUri(const ScannedGame& game) {
  const std::string both = Place(game) + "\n" + game.launchUrl;
  return both.size() > 1 ? both : std::string();
}

std::string Uri(const ScannedGame& game) { return game.launchUrl; }

std::string LauncherAndName(const ScannedGame& game) { return game.launcher + "\n" + FoldedName(game.name); }

bool MayBeOne(const ScannedGame& one, const ScannedGame& other) {
  return one.launchUrl.empty() || other.launchUrl.empty() || one.launchUrl == other.launchUrl;
}

// A path that only one of the scans knows tells of no move.
bool HasMoved(const ScannedGame& old, const ScannedGame& now) {
  return !old.loc.empty() && !now.loc.empty() && Place(old) != Place(now);
}

// For each game of the newer scan its place in the older one; and which of that are taken.
struct Matches {
  std::vector<std::optional<size_t>> ofNewer;
  std::vector<bool> taken;
};

using FreeGames = std::unordered_map<std::string, std::list<size_t>>;

FreeGames FreeByKey(const Games& older, const Matches& matches, std::string (*key)(const ScannedGame&)) {
  FreeGames free;
  for (size_t at = 0; at < older.size(); ++at) {
    if (!matches.taken[at]) free[key(older[at])].push_back(at);
  }
  free.erase(std::string());
  return free;
}

void MatchBy(std::string (*key)(const ScannedGame&), const Games& older, const Games& newer,
             Matches& matches) {
  FreeGames free = FreeByKey(older, matches, key);
  for (size_t at = 0; at < newer.size(); ++at) {
    if (matches.ofNewer[at]) continue;
    const auto same = free.find(key(newer[at]));
    if (same == free.end()) continue;
    const auto one = std::find_if(same->second.begin(), same->second.end(),
                                  [&](size_t old) { return MayBeOne(older[old], newer[at]); });
    if (one == same->second.end()) continue;
    matches.ofNewer[at] = *one;
    matches.taken[*one] = true;
    same->second.erase(one);
  }
}

}  // namespace

ScanDifference CompareScans(const Games& older, const Games& newer) {
  Matches matches = {std::vector<std::optional<size_t>>(newer.size()), std::vector<bool>(older.size())};
  for (const auto key : {PlaceAndUri, Uri, LauncherAndName, Place}) MatchBy(key, older, newer, matches);
  ScanDifference difference;
  for (size_t at = 0; at < older.size(); ++at) {
    if (!matches.taken[at]) difference.removed.push_back(older[at]);
  }
  for (size_t at = 0; at < newer.size(); ++at) {
    const std::optional<size_t> old = matches.ofNewer[at];
    if (!old)
      difference.added.push_back(newer[at]);
    else if (HasMoved(older[*old], newer[at]))
      difference.moved.push_back({newer[at], older[*old].loc});
  }
  return difference;
}

}  // namespace tarnwick::host
