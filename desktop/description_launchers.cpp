// The sections for launchers that keep files of their own.
#include "desktop/description_parts.h"
#include "desktop/launcher_files.h"

namespace tarnwick::desktop {
namespace {

EpicGame ReadEpicGame(const Node& node) {
  OnlyMembers(node, {"appName", "mainGameAppName", "displayName", "installLocation", "launchExecutable",
                     "appVersion", "categories", "incomplete"});
  EpicGame game;
  game.appName = TextMember(node, "appName");
  game.mainGameAppName = TextMember(node, "mainGameAppName", "");
  game.displayName = TextMember(node, "displayName", "");
  game.installLocation = PathMember(node, "installLocation");
  game.launchExecutable = TextMember(node, "launchExecutable", "");
  game.appVersion = TextMember(node, "appVersion", game.appVersion);
  if (const auto categories = Optional(node, "categories")) game.categories = Texts(*categories);
  game.incomplete = FlagMember(node, "incomplete", false);
  return game;
}

UplayGame ReadUplayGame(const Node& node) {
  OnlyMembers(node, {"name", "installId", "location", "append", "relative", "offline"});
  UplayGame game;
  game.name = TextMember(node, "name");
  game.installId = TextMember(node, "installId");
  game.append = TextMember(node, "append", "");
  game.relative = TextMember(node, "relative");
  game.offline = FlagMember(node, "offline", true);
  return game;
}

void RegisterUplayGame(Desktop& desktop, const UplayGame& game, const std::string& location) {
  const std::string key = kUninstallKey + "\\Uplay Install " + game.installId;
  desktop.String(key, "DisplayName", game.name, View::k32);
  desktop.String(key, "InstallLocation", location, View::k32);
}

std::vector<BattleNetGame> ReadBattleNetGames(const Node& node) {
  std::vector<BattleNetGame> games;
  for (const Node& item : Items(node)) {
    OnlyMembers(item, {"gameId", "installPath", "relativePath", "relativePath64"});
    games.push_back({TextMember(item, "gameId"), PathMember(item, "installPath"),
                     TextMember(item, "relativePath", ""), TextMember(item, "relativePath64", "")});
  }
  return games;
}

std::string ProgramData(const Node& node, const std::string& below) {
  const Json path = "%ProgramData%\\" + below;
  return PathText({&path, node.place});
}

StoreManifest ReadManifest(const Node& node) {
  OnlyMembers(node, {"identityName", "version", "displayName", "publisherDisplayName", "executable"});
  StoreManifest manifest;
  manifest.identityName = TextMember(node, "identityName", "");
  manifest.version = TextMember(node, "version", manifest.version);
  manifest.displayName = TextMember(node, "displayName", "");
  manifest.publisherDisplayName = TextMember(node, "publisherDisplayName", "");
  manifest.executable = TextMember(node, "executable", "");
  return manifest;
}

const std::string kPackagesKey =
    "HKEY_CURRENT_USER\\Software\\Classes\\Local "
    "Settings\\Software\\Microsoft\\Windows\\CurrentVersion\\AppModel\\"
    "Repository\\Packages\\";
const std::string kCategoryKey =
    "HKEY_LOCAL_"
    "MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\InstallService\\State\\CategoryCache\\";

void ApplyPackage(Desktop& desktop, const Node& node, std::vector<StoreEntitlement>& entitlements) {
  OnlyMembers(node,
              {"fullName", "familyName", "displayName", "folder", "manifest", "productId", "productKind"});
  const std::string fullName = TextMember(node, "fullName");
  const std::string familyName = TextMember(node, "familyName");
  const std::string folder = PathMember(node, "folder");
  const std::string key = kPackagesKey + fullName;
  desktop.Folder(folder);
  desktop.String(key, "PackageRootFolder", folder);
  desktop.String(key, "PackageFamilyName", familyName);
  StringUnlessEmpty(desktop, key, "DisplayName", TextMember(node, "displayName", ""), View::kNative);
  if (const auto manifest = Optional(node, "manifest"))
    desktop.File(folder + "\\AppxManifest.xml", AppxManifestText(ReadManifest(*manifest)));
  const std::string productId = TextMember(node, "productId", "");
  if (productId.empty()) return;
  desktop.String(kCategoryKey + familyName, "PackageFamilyName", familyName, View::k64);
  desktop.String(kCategoryKey + familyName, "ProductId", productId, View::k64);
  entitlements.push_back({productId, TextMember(node, "productKind", "Game")});
}

}  // namespace

void ApplyEpic(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"dataPath", "items", "launcherInstalled"});
  const std::string data = PathMember(node, "dataPath", "%ProgramData%\\Epic\\EpicGamesLauncher\\Data");
  desktop.String("HKEY_LOCAL_MACHINE\\SOFTWARE\\Epic Games\\EpicGamesLauncher", "AppDataPath", data,
                 View::k32);
  for (const Node& item : ItemsMember(node, "items")) {
    const EpicGame game = ReadEpicGame(item);
    desktop.File(data + "\\Manifests\\" + game.appName + ".item", EpicItemText(game));
  }
  std::vector<EpicGame> installed;
  for (const Node& item : ItemsMember(node, "launcherInstalled")) installed.push_back(ReadEpicGame(item));
  if (Optional(node, "launcherInstalled"))
    desktop.File(ProgramData(node, "Epic\\UnrealEngineLauncher\\LauncherInstalled.dat"),
                 EpicLauncherInstalledText(installed));
}

void ApplyUplay(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"path", "games"});
  const std::string launcher = PathMember(node, "path");
  std::vector<UplayGame> games;
  for (const Node& item : Items(Member(node, "games"))) {
    games.push_back(ReadUplayGame(item));
    RegisterUplayGame(desktop, games.back(), PathMember(item, "location"));
  }
  desktop.String(kUninstallKey + "\\Uplay", "InstallLocation", launcher, View::k32);
  desktop.File(launcher + "\\cache\\configuration\\configurations", UplayConfigurationsText(games));
}

void ApplyBattleNet(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"logs"});
  for (const Node& log : Items(Member(node, "logs"))) {
    OnlyMembers(log, {"file", "games", "modified"});
    const std::string path = ProgramData(log, "Battle.net\\Agent\\" + TextMember(log, "file"));
    desktop.File(path, BattleNetAgentLogText(ReadBattleNetGames(Member(log, "games"))));
    if (const auto modified = Optional(log, "modified")) desktop.ModifiedTime(path, Integer(*modified));
  }
}

void ApplyRiot(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"launchHelper", "products"});
  const std::string base = ProgramData(node, "Riot Games");
  if (Optional(node, "launchHelper"))
    desktop.File(base + "\\RiotClientInstalls.json",
                 RiotClientInstallsText(PathMember(node, "launchHelper")));
  for (const Node& product : Items(Member(node, "products"))) {
    OnlyMembers(product, {"id", "installPath"});
    const std::string name = TextMember(product, "id") + ".live";
    desktop.File(base + "\\Metadata\\" + name + "\\" + name + ".product_settings.yaml",
                 RiotProductSettingsText(PathMember(product, "installPath")));
  }
}

void ApplyMihoyo(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"folder", "games"});
  std::vector<MihoyoGame> games;
  for (const Node& item : Items(Member(node, "games"))) {
    OnlyMembers(item, {"gameBiz", "installPath", "gameShortcutName"});
    games.push_back({TextMember(item, "gameBiz"), PathMember(item, "installPath"),
                     TextMember(item, "gameShortcutName", "")});
  }
  const std::string folder = PathMember(node, "folder", "%APPDATA%\\miHoYo\\HYP\\1_0");
  desktop.File(folder + "\\gamedata.dat", MihoyoGameDataBytes(games));
}

void ApplyStore(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"packages"});
  std::vector<StoreEntitlement> entitlements;
  for (const Node& package : Items(Member(node, "packages"))) ApplyPackage(desktop, package, entitlements);
  if (entitlements.empty()) return;
  const Json cache =
      "%LOCALAPPDATA%\\Packages\\Microsoft.WindowsStore_8wekyb3d8bbwe\\LocalCache\\Entitlements.json";
  desktop.File(PathText({&cache, node.place}), StoreEntitlementsText(entitlements));
}

// The databases of these two are never opened: a name at the right place is all there is to them.
void ApplyItch(Desktop& desktop, const Node& node) {
  const Json path = "%APPDATA%\\itch\\db\\butler.db";
  if (Flag(node)) desktop.File(PathText({&path, node.place}), std::string_view("SQLite format 3\0", 16));
}

void ApplyTwitch(Desktop& desktop, const Node& node) {
  if (Flag(node))
    desktop.File(ProgramData(node, "Twitch\\Games\\Sql\\GameInstallInfo.sqlite"),
                 std::string_view("SQLite format 3\0", 16));
}

}  // namespace tarnwick::desktop
