#pragma once
// A desktop with Steam on it, below a folder of the test's own.

#include "catalogue/game_signature.h"
#include "desktop/desktop.h"
#include "support/uninstall_key.h"

#include <string>

namespace tarnwick::tests {

struct SteamWorld {
  std::string steam;
  desktop::Desktop d = {};

  void RegisterSteam() {
    d.String(R"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\Valve\Steam)", "InstallPath", steam);
    d.Folder(steam);
  }
  // The registry names Steam, but its folder isn't there.
  void NameMissingSteam() { d.String(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Valve\Steam)", "InstallPath", steam); }
  void UninstallKey(const std::string& name, const std::string& displayName, const std::string& location,
                    desktop::View view = desktop::View::k64) {
    const std::string key = kUninstallKey + name;
    d.String(key, "DisplayName", displayName, view);
    d.String(key, "InstallLocation", location, view);
  }
  // A game in a library: its manifest and its folder, which is returned.
  std::string Game(const std::string& library, const std::string& id, const std::string& name,
                   const std::string& folder, const std::string& exe) {
    Manifest(library, id, name, folder);
    const std::string path = library + "\\steamapps\\common\\" + folder;
    d.File(path + "\\" + exe);
    return path;
  }
  void Manifest(const std::string& library, const std::string& id, const std::string& name,
                const std::string& folder) {
    d.File(library + "\\steamapps\\appmanifest_" + id + ".acf",
           "\"AppState\"\n{\n\t\"appid\"\t\t\"" + id + "\"\n\t\"name\"\t\t\"" + name +
               "\"\n\t\"installdir\"\t\t\"" + folder + "\"\n}\n");
  }
};

// A catalogue entry for a game on Steam.
inline GameSignature SteamSignature(const std::string& id, const std::string& name, const std::string& exe) {
  GameSignature game;
  game.DisplayName = name;
  game.SourceKind = kSourceSteam;
  game.SourceExId = id;
  game.DefaultExe = exe;
  return game;
}

}  // namespace tarnwick::tests
