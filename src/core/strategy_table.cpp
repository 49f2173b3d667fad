// The table of strategies. docs/adding-a-launcher.md lists what else a new row touches.
#include "core/strategy_table.h"

#include "launchers/arc_registry_search.h"
#include "launchers/battle_net_search_v2.h"
#include "launchers/bethesda_registry.h"
#include "launchers/ea_registry_search.h"
#include "launchers/epic_games_scan.h"
#include "launchers/gog_registry_search.h"
#include "launchers/itch_io_search.h"
#include "launchers/mihoyo_platform_search.h"
#include "launchers/riot_platform_search.h"
#include "launchers/twitch_search.h"
#include "launchers/uplay_configuration_search.h"
#include "launchers/uwp_microsoft_store_scan.h"
#include "matching/default_exe_search.h"
#include "matching/default_registry_scan.h"
#include "matching/gameux_info_search.h"
#include "matching/gameux_registry_search.h"
#include "matching/registry_search_scan.h"
#include "matching/uninstall_registry_search.h"
#include "matching/user_folder_exe_search.h"
#include "steam/steam_appinfo_scan.h"
#include "steam/steam_default_id.h"
#include "steam/steam_games_scan.h"
#include "steam/steam_shortcuts_search.h"

namespace tarnwick {
namespace {

// Adapters to the one shape. The first two rows would rewrite HKEY_CURRENT_USER for another user's SID; a
// scan is always the caller's own, so they pass an empty text whatever they are given.
ScanResults DefaultRegistry(const GameList& games, const std::string&) {
  return ScanRegistryGames(games, {});
}
ScanResults RegistrySearch(const GameList& games, const std::string&) {
  return ScanRegistrySearch(games, {});
}
ScanResults UninstallSearch(const GameList& games, const std::string&) { return ScanUninstallSearch(games); }
ScanResults GameUxRegistry(const GameList& games, const std::string&) { return ScanGameUxRegistry(games); }
ScanResults SteamShortcuts(const GameList&, const std::string&) { return ScanSteamShortcuts(); }
ScanResults UplayConfiguration(const GameList&, const std::string&) { return ScanUplayConfigurations(); }
ScanResults ItchIoGames(const GameList&, const std::string&) { return ItchIo().ItchIoSearch(); }
ScanResults TwitchGames(const GameList&, const std::string&) { return Twitch().TwitchSearch(); }
ScanResults GameUxInfo(const GameList&, const std::string&) { return ScanGameUxInfo(); }

}  // namespace

std::vector<ScanStrategy> ScanStrategies() {
  return {
      {"Default Registry Scan", 6, DefaultRegistry},
      {"Registry Search Scan", 6, RegistrySearch},
      {"Uninstall Registry Search", 6, UninstallSearch},
      {"User Folder Exe Search", 6, ScanUserFolderExe},
      {"GameUX Registry Search", 6, GameUxRegistry},
      {"Default Exe Search", 5, ScanDefaultExe},
      {"Steam Shortcuts Search", 4, SteamShortcuts},
      {"Arc Registry Search", 4, ArcRegistrySearch},
      {"GOG Registry Search", 4, GogRegistrySearch},
      {"Uplay Configuration Search", 4, UplayConfiguration},
      {"EA Registry Search", 3, EARegistrySearch},
      {"Riot Platform Search", 3, RiotPlatformSearch},
      {"Mihoyo Platform Search", 3, MihoyoPlatformSearch},
      {"Bethesda Registry", 3, BethesdaRegistrySearch},
      {"Itch.io Search", 3, ItchIoGames},
      {"Twitch Search", 3, TwitchGames},
      {"GameUX Info Search", 3, GameUxInfo},
      {"Epic Games Scan", 3, ScanEpicGames},
      {"UWP/Microsoft Store Scan", 3, ScanMicrosoftStore},
      {"Battle.net Search V2", 2, BattleNetSearchV2},
      {"Steam Games Scan", 0, ScanSteamGames},
      {"Steam Default ID", 0, ScanSteamDefaultId},
      {"Steam AppInfo Scan", 0, ScanSteamAppInfo},
  };
}

}  // namespace tarnwick
