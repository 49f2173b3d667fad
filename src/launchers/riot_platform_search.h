#pragma once
// Riot games, from the client's metadata folders and the catalogue.

#include "launchers/riot_files_reader.h"
#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

// At most one game for each folder that the metadata names. Throws std::filesystem::filesystem_error if such
// a folder can't be asked for.
ScanResults RiotPlatformSearch(const GameList& games, const std::string& userSid);

// The launch helper's path as the file spells it, empty if there is none. `commonAppData` empty means that
// the shell has no such folder.
std::string GetRiotLaunchHelper(const std::string& commonAppData);

// The install folders that exist, in the order of the file system, repeated ones too.
std::vector<std::string> GetRiotGameFolders(const std::string& commonAppData);

// The install folder that a product's metadata names, or empty.
std::string ReadYamlInstallPath(const std::string& path);

}  // namespace tarnwick
