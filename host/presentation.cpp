#include "host/presentation.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

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

}  // namespace tarnwick::host
