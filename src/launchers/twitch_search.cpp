// Edge: games of the Twitch app.
#include "launchers/twitch_search.h"

#include "launchers/sqlite_stub.h"

namespace tarnwick {
namespace {

const DatabaseLauncher kTwitch = {"[TwitchSearch]", "Starting Twitch Search...", KnownFolder::kCommonData,
                                  R"(\Twitch\Games\Sql\GameInstallInfo.sqlite)"};

}  // namespace

std::string GetTwitchDatabasePath() { return DatabasePath(kTwitch); }

std::vector<TwitchGameRow> ReadTwitchGames() {
  LogUnreadDatabase(kTwitch);
  return {};
}

ScanResult TwitchResult(const TwitchGameRow& row) {
  ScanResult result;
  result.name = row.name;
  result.exePath = row.path;
  result.launchUrl = "twitch://fuel-launch/" + row.id;
  result.source = row.sourceText;
  return result;
}

ScanResults Twitch::TwitchSearch() { return SearchDatabase(kTwitch, ReadTwitchGames, TwitchResult); }

}  // namespace tarnwick
