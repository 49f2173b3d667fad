// The section for Steam: its folder in the registry, libraries with manifests, its cache, and shortcuts.
#include "desktop/description_parts.h"
#include "desktop/steam_files.h"

#include <limits>

namespace tarnwick::desktop {
namespace {

uint32_t AppIdMember(const Node& node) {
  return static_cast<uint32_t>(Number(Member(node, "appId"), std::numeric_limits<uint32_t>::max()));
}

void RegisterApp(Desktop& desktop, const std::string& appId, const std::string& name,
                 const std::string& location) {
  const std::string key = kUninstallKey + "\\Steam App " + appId;
  desktop.String(key, "DisplayName", name, View::k64);
  desktop.String(key, "InstallLocation", location, View::k64);
  desktop.String(key, "Publisher", "Steam", View::k64);
  desktop.String(key, "UninstallString", "steam://uninstall/" + appId, View::k64);
}

// Three marks of an installed app, each on its own: its manifest, its Uninstall key, its Installed value.
void ApplyApp(Desktop& desktop, const std::string& steamapps, const Node& node) {
  OnlyMembers(node, {"appId", "name", "installDir", "manifest", "uninstall", "installed"});
  const std::string appId = std::to_string(AppIdMember(node));
  const std::string name = TextMember(node, "name");
  const std::string installDir = TextMember(node, "installDir");
  const std::string location = steamapps + "\\common\\" + installDir;
  desktop.Folder(location);
  if (FlagMember(node, "manifest", true))
    desktop.File(steamapps + "\\appmanifest_" + appId + ".acf", AppManifestText(appId, name, installDir));
  if (FlagMember(node, "uninstall", true)) RegisterApp(desktop, appId, name, location);
  if (FlagMember(node, "installed", true))
    desktop.Dword("HKEY_CURRENT_USER\\Software\\Valve\\Steam\\Apps\\" + appId, "Installed", 1);
}

void ApplyLibraries(Desktop& desktop, const std::string& steam, const Node& node) {
  std::vector<std::string> paths;
  for (const Node& library : Items(node)) {
    OnlyMembers(library, {"path", "apps"});
    paths.push_back(PathMember(library, "path"));
    desktop.Folder(paths.back() + "\\steamapps");
    for (const Node& app : ItemsMember(library, "apps")) ApplyApp(desktop, paths.back() + "\\steamapps", app);
  }
  desktop.File(steam + "\\steamapps\\libraryfolders.vdf", LibraryFoldersText(paths));
}

void ApplyAppInfo(Desktop& desktop, const std::string& steam, const Node& node) {
  OnlyMembers(node, {"version", "apps"});
  std::vector<AppInfoApp> apps;
  for (const Node& item : Items(Member(node, "apps"))) {
    OnlyMembers(item, {"appId", "name", "type", "installDir", "executables"});
    AppInfoApp app;
    app.appId = AppIdMember(item);
    app.name = TextMember(item, "name", "");
    app.type = TextMember(item, "type", "game");
    app.installDir = TextMember(item, "installDir", "");
    if (const auto executables = Optional(item, "executables")) app.executables = Texts(*executables);
    apps.push_back(app);
  }
  const auto version = Optional(node, "version");
  desktop.File(steam + "\\appcache\\appinfo.vdf",
               AppInfoBytes(version ? static_cast<uint32_t>(Number(*version, 255)) : 41, apps));
}

void ApplyShortcuts(Desktop& desktop, const std::string& steam, const Node& node) {
  OnlyMembers(node, {"user", "entries"});
  std::vector<ShortcutEntry> entries;
  for (const Node& item : Items(Member(node, "entries"))) {
    OnlyMembers(item, {"appName", "exe", "startDir"});
    const std::string exe = PathMember(item, "exe");
    const std::string folder = exe.substr(0, exe.find_last_of("\\/") + 1);
    entries.push_back(
        {TextMember(item, "appName"), "\"" + exe + "\"", "\"" + PathMember(item, "startDir", folder) + "\""});
  }
  const std::string user = TextMember(node, "user");
  desktop.File(steam + "\\userdata\\" + user + "\\config\\shortcuts.vdf", ShortcutsBytes(entries));
}

}  // namespace

void ApplySteam(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"path", "view", "libraries", "appInfo", "shortcuts"});
  const std::string steam = PathMember(node, "path");
  desktop.Folder(steam);
  desktop.String("HKEY_LOCAL_MACHINE\\SOFTWARE\\Valve\\Steam", "InstallPath", steam,
                 ViewMember(node, View::k32));
  desktop.String("HKEY_CURRENT_USER\\SOFTWARE\\Valve\\Steam", "SteamPath", steam);
  if (const auto libraries = Optional(node, "libraries")) ApplyLibraries(desktop, steam, *libraries);
  if (const auto appInfo = Optional(node, "appInfo")) ApplyAppInfo(desktop, steam, *appInfo);
  for (const Node& shortcuts : ItemsMember(node, "shortcuts")) ApplyShortcuts(desktop, steam, shortcuts);
}

}  // namespace tarnwick::desktop
