// Edge: games that GOG registered.
#include "launchers/gog_registry_search.h"

#include "foundation/log.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "launchers/registry_record.h"
#include "matching/found_report.h"
#include "matching/registry.h"

#include <algorithm>

namespace tarnwick {
namespace {

const std::string kPrefix = "[GogRegistrySearch]";
const std::string kGamesRoot = R"(HKEY_LOCAL_MACHINE\SOFTWARE\GOG.com\Games\)";

bool Holds(const std::vector<GogGameEntry>& entries, const std::string& gameId) {
  return std::any_of(entries.begin(), entries.end(),
                     [&](const GogGameEntry& entry) { return entry.gameId == gameId; });
}

// The values are read in whichever view has the key: the view that listed it plays no part here.
void AppendEntry(std::vector<GogGameEntry>& entries, const std::string& gameId) {
  const std::string key = kGamesRoot + gameId;
  const std::string exe = ReadRegistryString(key, "exe", "");
  const std::string launchParam = ReadRegistryString(key, "launchParam", "");
  const std::string gameName = ReadRegistryString(key, "gameName", "");
  if (!exe.empty()) entries.push_back({gameId, exe, launchParam, gameName, key});
}

ScanResult ResultOf(const GogGameEntry& entry) {
  ScanResult result;
  result.name = ShownGameName(entry.gameName, entry.exe);
  result.exePath = entry.exe;
  result.launchUrl = "goggalaxy://openGameView/" + entry.gameId;
  result.source = "GOG Registry: " + entry.registryKey;
  return result;
}

}  // namespace

std::vector<GogGameEntry> GetGogGamesFromRegistry() {
  std::vector<GogGameEntry> entries;
  LogExceptions(kPrefix + " Error reading GOG registry: ", [&] {
    for (const std::string& gameId : EnumRegistrySubKeys(kGamesRoot, RegistryView::k32))
      AppendEntry(entries, gameId);
    for (const std::string& gameId : EnumRegistrySubKeys(kGamesRoot, RegistryView::k64)) {
      if (!Holds(entries, gameId)) AppendEntry(entries, gameId);
    }
  });
  return entries;
}

ScanResults GogRegistrySearch(const GameList&, const std::string&) {
  LogStream() << kPrefix << " Starting GOG Registry Search...\n";
  ScanResults results;
  for (const GogGameEntry& entry : GetGogGamesFromRegistry()) {
    if (!FileExists(entry.exe)) continue;
    ReportFound(results, kPrefix, ResultOf(entry));
  }
  ReportCompletion(results, kPrefix);
  return results;
}

}  // namespace tarnwick
