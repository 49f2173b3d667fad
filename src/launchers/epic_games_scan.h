#pragma once
// Epic games, from the launcher's manifests and its list of installations.

#include "launchers/epic_manifest_reader.h"
#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

// Games of the catalogue and others alike. A game that both files list is reported twice, the manifest's
// first.
ScanResults ScanEpicGames(const GameList& games, const std::string& userSid);

// The launcher's data folder: the registry's, else the default one; never empty.
std::string GetEpicDataPath();

// The entries with an install folder, in the order of the file system. A standard exception costs the files
// that follow.
std::vector<EpicManifestEntry> ReadEpicManifests(const std::string& manifestsPath);

// The entries with an install folder, in file order. The file is looked for beside the launcher's own folder.
std::vector<EpicManifestEntry> ReadLauncherInstalledDat(const std::string& dataPath);

// Empty for an empty name. Nothing is escaped.
std::string BuildEpicLaunchUrl(const std::string& appName);

// The game's executable: by the catalogue, by the manifest, the only one at the folder's top, the first one
// anywhere below. Empty if there is none. `signature` may be null.
std::string FindEpicExe(const std::string& installLocation, const std::string& launchExecutable,
                        const GameSignature* signature);

// The folder's .exe files, whatever the case of the extension. Never throws: what can't be listed is left
// out.
std::vector<std::string> ListExeFiles(const std::string& folder, bool recursive);

}  // namespace tarnwick
