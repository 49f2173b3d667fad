#pragma once
// Epic's two descriptions of installed games: the manifests (*.item) and LauncherInstalled.dat.

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// One game. Texts are as the file spells them: a path keeps its doubled backslashes.
struct EpicManifestEntry {
  std::string AppName;
  std::string MainGameAppName;  // differs from AppName for an add-on
  std::string DisplayName;
  std::string InstallLocation;
  std::string LaunchExecutable;  // relative to InstallLocation or absolute; LauncherInstalled.dat has none
  std::string baseUrlSegment;
  std::string AppVersion;  // only in LauncherInstalled.dat
  std::vector<std::string> AppCategories;
  bool bIsIncompleteInstall = false;
};

// A manifest's text; what it doesn't say stays empty.
EpicManifestEntry ReadEpicManifest(std::string_view text);

// One object of LauncherInstalled.dat's "InstallationList". The names are all AppName.
EpicManifestEntry ReadLauncherInstalledObject(std::string_view object);

}  // namespace tarnwick
