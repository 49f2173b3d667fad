#include "host/presentation.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "host/console.h"

namespace tarnwick::host {
namespace {

const std::pair<const char*, const char*> kLauncherOfScheme[] = {
    {"steam://", "Steam"},
    {"com.epicgames.launcher://", "Epic Games"},
    {"uplay://", "Ubisoft"},
    {"battle.net://", "Battle.net"},
    {"origin2://", "EA"},
    {"goggalaxy://", "GOG"},
    {"bethesdanet://", "Bethesda"},
    {"twitch://", "Twitch"},
    {"shell:AppsFolder\\", "Microsoft Store"},
};

const std::pair<const char*, const char*> kLauncherOfStrategy[] = {
    {"Steam Shortcuts Search", "Steam"},
    {"Steam Games Scan", "Steam"},
    {"Steam Default ID", "Steam"},
    {"Steam AppInfo Scan", "Steam"},
    {"Arc Registry Search", "Arc"},
    {"GOG Registry Search", "GOG"},
    {"Uplay Configuration Search", "Ubisoft"},
    {"EA Registry Search", "EA"},
    {"Riot Platform Search", "Riot"},
    {"Mihoyo Platform Search", "miHoYo"},
    {"Bethesda Registry", "Bethesda"},
    {"Itch.io Search", "itch.io"},
    {"Twitch Search", "Twitch"},
    {"Epic Games Scan", "Epic Games"},
    {"UWP/Microsoft Store Scan", "Microsoft Store"},
    {"Battle.net Search V2", "Battle.net"},
};

std::string StrategyOf(const Rows& game, const ScanReport& report) {
  return StrategyThatFound(report, game.value("name", ""), game.value("loc", ""));
}

}  // namespace

std::string LauncherName(const std::string& launchUrl, const std::string& strategy) {
  for (const auto& [scheme, launcher] : kLauncherOfScheme) {
    if (launchUrl.starts_with(scheme)) return launcher;
  }
  for (const auto& [name, launcher] : kLauncherOfStrategy) {
    if (strategy == name) return launcher;
  }
  return "Installed";
}

Rows RowsFromJson(const std::string& json) {
  Rows rows = Rows::parse(json, nullptr, false);
  // Bytes that are no UTF-8 are replaced on the way to UTF-16 and back.
  if (rows.is_discarded()) rows = Rows::parse(Narrow(Widen(json)), nullptr, false);
  if (!rows.is_array()) throw std::runtime_error("the library's answer is not a JSON array");
  return rows;
}

void AddLaunchers(Rows& games, const ScanReport& report) {
  for (Rows& game : games) {
    const std::string strategy = StrategyOf(game, report);
    game["launcher"] = LauncherName(game.value("launchUrl", ""), strategy);
    game["foundBy"] = strategy;
  }
}

void DropIcons(Rows& rows) {
  for (Rows& row : rows) row["icon"] = "";
}

std::string Counted(size_t count, const char* singular, const char* plural) {
  return std::to_string(count) + " " + (count == 1 ? singular : plural);
}

std::vector<Game> GamesFromJson(const std::string& text, const ScanReport& report) {
  std::vector<Game> games;
  for (const Rows& item : RowsFromJson(text)) {
    Game game;
    game.name = item.value("name", "");
    game.path = item.value("loc", "");
    game.icon = item.value("icon", "");
    game.launchUrl = item.value("launchUrl", "");
    game.strategy = StrategyOf(item, report);
    game.launcher = LauncherName(game.launchUrl, game.strategy);
    games.push_back(std::move(game));
  }
  return games;
}

std::vector<Application> ApplicationsFromJson(const std::string& text) {
  std::vector<Application> applications;
  for (const Rows& item : RowsFromJson(text)) {
    applications.push_back({item.value("name", ""), item.value("publisher", ""), item.value("version", ""),
                            item.value("loc", ""), item.value("date", ""),
                            // The library writes a size of two terabytes or more as a negative number.
                            static_cast<uint64_t>(std::max(item.value("sizeKB", int64_t{0}), int64_t{0})),
                            item.value("icon", "")});
  }
  return applications;
}

}  // namespace tarnwick::host
