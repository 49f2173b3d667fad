#pragma once
// Catalogue games that Steam has installed, from the Uninstall keys and from every library's manifests. An
// app that the catalogue doesn't know by its Steam id is never reported.

#include "matching/scan_result.h"
#include "matching/signature_index.h"
#include "steam/app_manifest_reader.h"

#include <string>
#include <vector>

namespace tarnwick {

// Results of the registry come first, then those of the libraries; an executable is reported once. `userSid`
// is ignored. Whatever is thrown outside the listing of one library leaves the scan.
ScanResults ScanSteamGames(const GameList& games, const std::string& userSid);

// Steam's own folder first, then what its list of libraries says, in file order and with duplicates.
std::vector<std::string> GetSteamLibraryFolders(const std::string& steamPath);

// Empty if the file can't be opened.
std::vector<std::string> ParseLibraryFoldersVdf(const std::string& vdfPath);

// The manifests of every library that have an app id and a folder, with `installDir` made a full path. A
// library that can't be listed to the end gives what came until then.
std::vector<SteamManifestInfo> ScanAppManifests(const std::vector<std::string>& libraries);

// An empty record if the file can't be opened.
SteamManifestInfo ParseAppManifest(const std::string& acfPath);

// The first existing executable that the catalogue gives the app: below its own folder, then below the
// library that the folder lies in. Empty if there is none or the catalogue doesn't know the app.
std::string FindSteamGameExe(const std::string& installPath, const std::string& appId,
                             const SignatureIndex& signaturesByAppId);

// `relative` below `root` if that is an existing file, else empty.
std::string TryExeUnderRoot(const std::string& root, const std::string& relative);

}  // namespace tarnwick
