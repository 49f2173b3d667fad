#pragma once
// The contents of the files that other launchers keep: texts and bytes to hand to Desktop::File. All texts
// are UTF-8. JSON texts are escaped as JSON wants, so that a path's backslashes stand doubled in them.

#include <string>
#include <vector>

namespace tarnwick::desktop {

// Epic: one game. Data\Manifests\<name>.item holds one, LauncherInstalled.dat all.
struct EpicGame {
  std::string appName = {};
  std::string mainGameAppName = {};  // empty: as appName
  std::string displayName = {};
  std::string installLocation = {};
  std::string launchExecutable = {};
  std::string appVersion = "1.0";
  std::vector<std::string> categories = {"public", "games", "applications"};
  bool incomplete = false;
};
std::string EpicItemText(const EpicGame& game);
std::string EpicLauncherInstalledText(const std::vector<EpicGame>& games);

// Uplay: cache\configuration\configurations, with some bytes between the records that are no text.
struct UplayGame {
  std::string name = {};
  std::string installId = {};  // digits; empty: no register line
  std::string append = {};     // folder below the install folder; may be empty
  std::string relative = {};   // executable, relative to that
  bool offline = true;         // listed for offline play too
};
std::string UplayConfigurationsText(const std::vector<UplayGame>& games);

// Battle.net: one Agent-*.log file, with other requests and blocks between those for games.
struct BattleNetGame {
  std::string gameId = {};
  std::string installPath = {};
  std::string relativePath = {};    // may be empty
  std::string relativePath64 = {};  // may be empty
};
std::string BattleNetAgentLogText(const std::vector<BattleNetGame>& games);

// Riot: RiotClientInstalls.json, and the settings of one product,
// Metadata\<id>.live\<id>.live.product_settings.yaml.
std::string RiotClientInstallsText(const std::string& launchHelper);
std::string RiotProductSettingsText(const std::string& installPath);

// miHoYo: one gamedata.dat, JSON objects among other bytes.
struct MihoyoGame {
  std::string gameBiz = {};
  std::string installPath = {};
  std::string gameShortcutName = {};
};
std::string MihoyoGameDataBytes(const std::vector<MihoyoGame>& games);

// Microsoft Store: a package's AppxManifest.xml. An empty text leaves its element or attribute out.
struct StoreManifest {
  std::string identityName = {};
  std::string version = "1.0.0.0";
  std::string displayName = {};
  std::string publisherDisplayName = {};
  std::string executable = {};
};
std::string AppxManifestText(const StoreManifest& manifest);

// Microsoft Store: a JSON file of the Store's LocalCache.
struct StoreEntitlement {
  std::string productId = {};
  std::string productKind = {};
};
std::string StoreEntitlementsText(const std::vector<StoreEntitlement>& entitlements);

// Microsoft Store: the text that names a product where an entry of the category cache has no ProductId value.
std::string StoreFulfillmentText(const std::string& productId, const std::string& packageFamilyName);

}  // namespace tarnwick::desktop
