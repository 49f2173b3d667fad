// The sections for launchers that register their games in the registry alone.
#include "desktop/description_parts.h"

namespace tarnwick::desktop {

void ApplyEa(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"games"});
  for (const Node& game : Items(Member(node, "games"))) {
    OnlyMembers(game, {"publisher", "subkey", "productGuid", "name", "executable"});
    const std::string guid = TextMember(game, "productGuid");
    const std::string publisher = TextMember(game, "publisher", "EA Games");
    desktop.String("HKEY_LOCAL_MACHINE\\SOFTWARE\\" + publisher + "\\" + TextMember(game, "subkey"),
                   "Product GUID", guid, View::k32);
    desktop.String(kUninstallKey + "\\" + guid, "DisplayName", TextMember(game, "name"), View::k32);
    desktop.String(kUninstallKey + "\\" + guid, "DisplayIcon", PathMember(game, "executable"), View::k32);
  }
}

void ApplyGog(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"games"});
  for (const Node& game : Items(Member(node, "games"))) {
    OnlyMembers(game, {"gameId", "name", "executable", "launchParam", "view"});
    const std::string key = "HKEY_LOCAL_MACHINE\\SOFTWARE\\GOG.com\\Games\\" + TextMember(game, "gameId");
    const View view = ViewMember(game, View::k32);
    desktop.String(key, "exe", PathMember(game, "executable"), view);
    StringUnlessEmpty(desktop, key, "gameName", TextMember(game, "name", ""), view);
    StringUnlessEmpty(desktop, key, "launchParam", TextMember(game, "launchParam", ""), view);
  }
}

void ApplyBethesda(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"path", "games"});
  const std::string launcher = PathMember(node, "path");
  desktop.String("HKEY_LOCAL_MACHINE\\SOFTWARE\\Bethesda Softworks\\Bethesda.net", "installLocation",
                 launcher, View::k32);
  desktop.Executable(launcher + "\\BethesdaNetLauncher.exe");
  for (const Node& game : Items(Member(node, "games"))) {
    OnlyMembers(game, {"subkey", "productId", "name", "location"});
    const std::string productId = TextMember(game, "productId");
    const std::string key = kUninstallKey + "\\" + TextMember(game, "subkey", "Bethesda " + productId);
    desktop.String(key, "DisplayName", TextMember(game, "name"), View::k32);
    desktop.String(key, "ProductID", productId, View::k32);
    desktop.String(key, "Path", PathMember(game, "location"), View::k32);
    desktop.String(key, "UninstallString",
                   "\"" + launcher + "\\BethesdaNetLauncher.exe\" bethesdanet://uninstall/" + productId,
                   View::k32);
  }
}

void ApplyArc(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"games"});
  for (const Node& game : Items(Member(node, "games"))) {
    OnlyMembers(game, {"subkey", "client", "installPath", "launcher"});
    const std::string key =
        "HKEY_LOCAL_MACHINE\\SOFTWARE\\Perfect World Entertainment\\Core\\" + TextMember(game, "subkey");
    desktop.String(key, "Client", PathMember(game, "client"), View::k32);
    desktop.String(key, "InstallPath", PathMember(game, "installPath"), View::k32);
    StringUnlessEmpty(desktop, key, "Launcher", TextMember(game, "launcher", ""), View::k32);
  }
}

void ApplyGameUx(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"games"});
  for (const Node& game : Items(Member(node, "games"))) {
    OnlyMembers(game, {"subkey", "applicationId", "title", "executable", "configGdfBinaryPath"});
    const std::string key =
        "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\GameUX\\Games\\" +
        TextMember(game, "subkey");
    desktop.String(key, "AppExePath", PathMember(game, "executable"), View::k32);
    StringUnlessEmpty(desktop, key, "ApplicationId", TextMember(game, "applicationId", ""), View::k32);
    StringUnlessEmpty(desktop, key, "Title", TextMember(game, "title", ""), View::k32);
    StringUnlessEmpty(desktop, key, "ConfigGDFBinaryPath", TextMember(game, "configGdfBinaryPath", ""),
                      View::k32);
  }
}

}  // namespace tarnwick::desktop
