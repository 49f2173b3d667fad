#include "host/presentation.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "host/text_table.h"

namespace tarnwick::host {
namespace {

using nlohmann::json;

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

json ParseArray(const std::string& text) {
  json array = json::parse(text, nullptr, false);
  if (array.is_discarded() || !array.is_array())
    throw std::runtime_error("the library's answer is not a JSON array");
  return array;
}

std::string Shown(const std::string& text, const char* otherwise = "-") {
  return text.empty() ? otherwise : text;
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

std::vector<Game> GamesFromJson(const std::string& text, const ScanReport& report) {
  std::vector<Game> games;
  for (const json& item : ParseArray(text)) {
    Game game;
    game.name = item.value("name", "");
    game.path = item.value("loc", "");
    game.icon = item.value("icon", "");
    game.launchUrl = item.value("launchUrl", "");
    game.strategy = StrategyThatFound(report, game.name, game.path);
    game.launcher = LauncherName(game.launchUrl, game.strategy);
    games.push_back(std::move(game));
  }
  return games;
}

std::vector<Application> ApplicationsFromJson(const std::string& text) {
  std::vector<Application> applications;
  for (const json& item : ParseArray(text)) {
    applications.push_back({item.value("name", ""), item.value("publisher", ""), item.value("version", ""),
                            item.value("loc", ""), item.value("date", ""), item.value("sizeKB", uint64_t{0}),
                            item.value("icon", "")});
  }
  return applications;
}

std::string GamesTable(const std::vector<Game>& games, const ScanReport& report) {
  if (games.empty()) return "No games found.\n";
  std::vector<Row> rows;
  for (const Game& game : games) {
    rows.push_back({Shown(game.name, "(no name)"), game.launcher, Shown(game.strategy), Shown(game.path)});
  }
  return FormatTable({"NAME", "LAUNCHER", "FOUND BY", "EXECUTABLE"}, rows) +
         fmt::format("\n{} games ({} in the catalogue).\n", games.size(), report.gamesInCatalogue);
}

std::string ApplicationsTable(const std::vector<Application>& applications) {
  if (applications.empty()) return "No applications found.\n";
  std::vector<Row> rows;
  for (const Application& application : applications) {
    rows.push_back({application.name, Shown(application.version), Shown(application.publisher),
                    Shown(application.path)});
  }
  return FormatTable({"NAME", "VERSION", "PUBLISHER", "EXECUTABLE"}, rows) +
         fmt::format("\n{} applications.\n", applications.size());
}

}  // namespace tarnwick::host
