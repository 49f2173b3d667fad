// Edge: the Steam games scan.
#include "steam/steam_games_scan.h"

#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/machine/data_files.h"
#include "foundation/machine/folders.h"
#include "foundation/machine/path_rules.h"
#include "foundation/machine/uninstall_key.h"
#include "foundation/text.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/registry.h"
#include "steam/library_folders_reader.h"
#include "steam/steam_folders.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

namespace tarnwick {
namespace {

// What Steam itself installs: redistributables and the parts for virtual reality.
constexpr std::array<std::string_view, 3> ignoredSteamAppIds = {"228980", "250820", "205790"};

// One scan's state.
struct SteamScan {
  SignatureIndex signaturesByAppId;
  std::set<std::string> seenExePaths;  // compared as they are spelled
  ScanResults results;
};

bool IsIgnored(const std::string& appId) {
  return std::find(ignoredSteamAppIds.begin(), ignoredSteamAppIds.end(), appId) != ignoredSteamAppIds.end();
}

// The 32-bit view's names, then those that only the 64-bit view has.
std::vector<std::string> UninstallNames() {
  std::vector<std::string> names = EnumRegistrySubKeys(kUninstallKey, RegistryView::k32);
  std::set<std::string> known(names.begin(), names.end());
  for (const std::string& name : EnumRegistrySubKeys(kUninstallKey, RegistryView::k64)) {
    if (known.insert(name).second) names.push_back(name);
  }
  return names;
}

// The app id of an Uninstall key's name, empty if it isn't one of Steam's. The words may stand anywhere and
// in any letter case, and the character behind them is skipped whatever it is.
std::string AppIdOfKey(const std::string& key) {
  const size_t words = ToUpperBytes(key).find("STEAM APP");
  return words == std::string::npos || words + 10 >= key.size() ? std::string() : key.substr(words + 10);
}

void AppendResult(SteamScan& scan, const std::string& name, const std::string& exe, const std::string& appId,
                  const std::string& source) {
  ScanResult result;
  result.name = name;
  result.exePath = exe;
  result.launchUrl = "steam://run/" + appId;
  result.source = source;
  result.found = true;
  scan.results.push_back(std::move(result));
}

void TakeUninstallKey(SteamScan& scan, const std::string& key) {
  const std::string id = AppIdOfKey(key);
  if (id.empty() || IsIgnored(id)) return;
  const std::string keyPath = std::string(kUninstallKey) + "\\" + key;
  std::string name = ReadRegistryString(keyPath, "DisplayName", "");
  const std::string location = ReadRegistryString(keyPath, "InstallLocation", "");
  // Kept: this one test makes the narrow call with the text as the registry gave it, so a folder whose name
  // the ANSI code page spells differently from UTF-8 is left to the library pass
  // (docs/decisions/narrow-file-tests.md).
  if (name.empty() || location.empty() || !NarrowDirectoryExists(location)) return;
  StripTrademarkSigns(name);
  const std::string exe = FindSteamGameExe(location, id, scan.signaturesByAppId);
  if (!FileExists(exe) || scan.seenExePaths.contains(exe)) return;
  AppendResult(scan, name, exe, id, keyPath);
  scan.seenExePaths.insert(exe);
  LogStream() << "[Steam] Found (Registry): " << name << " (ID: " << id << ") -> " << exe << "\n";
}

void TakeManifest(SteamScan& scan, const SteamManifestInfo& manifest) {
  const std::string& id = manifest.appId;
  if (IsIgnored(id)) return;
  const std::string exe = FindSteamGameExe(manifest.installDir, id, scan.signaturesByAppId);
  if (!FileExists(exe)) {
    LogStream() << "[Steam] Found (Library-Dynamic): " << manifest.name << " (ID: " << id
                << ") -> No Exe (Skipping)\n";
    return;
  }
  if (scan.seenExePaths.contains(exe)) return;  // as a rule the registry pass has reported it
  const GameSignature* signature = FindSignature(scan.signaturesByAppId, id);
  const std::string& name = signature == nullptr ? manifest.name : signature->DisplayName;
  AppendResult(scan, name, exe, id, "Steam App " + id);
  if (exe.empty()) {  // a safeguard: the test above lets no such app through
    LogStream() << "[Steam] Found (Library-Dynamic): " << name << " (ID: " << id << ") -> No Exe\n";
    return;
  }
  scan.seenExePaths.insert(exe);
  LogStream() << "[Steam] Found (Library): " << name << " (ID: " << id << ") -> " << exe << "\n";
}

void ScanLibraries(SteamScan& scan) {
  const std::string steamPath = GetSteamInstallPath();
  if (steamPath.empty()) return;
  const std::vector<std::string> libraries = GetSteamLibraryFolders(steamPath);
  LogStream() << "[Steam] Found " << libraries.size() << " library folders.\n";
  const std::vector<SteamManifestInfo> manifests = ScanAppManifests(libraries);
  LogStream() << "[Steam] Found " << manifests.size() << " games in library folders.\n";
  for (const SteamManifestInfo& manifest : manifests) TakeManifest(scan, manifest);
}

// Where a library keeps its manifests; empty if it has no such folder. A library may be that folder itself,
// under a name in lower case.
std::string ManifestFolder(const std::string& library) {
  const std::string folder = CombinePath(library, "steamapps");
  if (DirectoryExists(folder)) return folder;
  const bool isManifestFolder = library.find("steamapps") != std::string::npos && DirectoryExists(library);
  return isManifestFolder ? library : std::string();
}

bool IsManifestName(std::wstring_view name) {
  return name.starts_with(L"appmanifest_") && ExtensionOf(std::wstring(name)) == L".acf";
}

void AppendManifests(const std::string& folder, std::vector<SteamManifestInfo>& manifests) {
  const std::string common = CombinePath(folder, "common");
  ForEach(ListFiles(folder, IsManifestName), [&](const FolderEntry& entry) {
    SteamManifestInfo manifest = ParseAppManifest(WideToUtf8(entry.path));
    if (manifest.appId.empty() || manifest.installDir.empty()) return;
    manifest.installDir = CombinePath(common, manifest.installDir);
    manifests.push_back(std::move(manifest));
  });
}

}  // namespace

ScanResults ScanSteamGames(const GameList& games, const std::string&) {
  LogStream() << "[Steam] Starting Steam game scan...\n";
  SteamScan scan{IndexSignatures(games, kSourceSteam, &GameSignature::SourceExId), {}, {}};
  const std::vector<std::string> names = UninstallNames();
  LogStream() << "[Steam] Found " << names.size() << " uninstall registry entries\n";
  for (const std::string& name : names) TakeUninstallKey(scan, name);
  ScanLibraries(scan);
  ReportCompletion(scan.results, "[Steam]");
  return scan.results;
}

std::vector<std::string> GetSteamLibraryFolders(const std::string& steamPath) {
  std::vector<std::string> folders = {steamPath};
  const std::string vdf = CombinePath(steamPath, "steamapps\\libraryfolders.vdf");
  if (!FileExists(vdf)) return folders;
  // No duplicates are removed: Steam's own folder stands in the file too, and its games then fall out of the
  // library pass as already seen.
  for (std::string& folder : ParseLibraryFoldersVdf(vdf)) folders.push_back(std::move(folder));
  return folders;
}

std::vector<std::string> ParseLibraryFoldersVdf(const std::string& vdfPath) {
  return ReadLibraryFolders(*OpenTextFile(vdfPath));
}

std::vector<SteamManifestInfo> ScanAppManifests(const std::vector<std::string>& libraries) {
  std::vector<SteamManifestInfo> manifests;
  for (const std::string& library : libraries) {
    try {
      const std::string folder = ManifestFolder(library);
      if (!folder.empty()) AppendManifests(folder, manifests);
    } catch (...) {
      // A drive that was pulled out costs its own games, and is not logged.
    }
  }
  return manifests;
}

SteamManifestInfo ParseAppManifest(const std::string& acfPath) {
  return ReadAppManifest(*OpenTextFile(acfPath));
}

std::string FindSteamGameExe(const std::string& installPath, const std::string& appId,
                             const SignatureIndex& signaturesByAppId) {
  const GameSignature* signature = FindSignature(signaturesByAppId, appId);
  if (signature == nullptr) return {};
  if (const std::string own = FirstExistingDefaultExe(installPath, *signature); !own.empty()) return own;
  const size_t steamapps = ToLowerBytes(installPath).find("steamapps");
  if (steamapps == std::string::npos) return {};
  const std::string root = installPath.substr(0, steamapps);
  // Kept: here the 64-bit field comes before the 32-bit one, unlike above
  // (docs/decisions/catalogue-fields.md).
  for (const std::string* exe :
       {&signature->DefaultFolderExe, &signature->DefaultFolderExe64, &signature->DefaultFolderExe32}) {
    const std::string candidate = TryExeUnderRoot(root, *exe);
    if (!candidate.empty()) return candidate;
  }
  return {};
}

std::string TryExeUnderRoot(const std::string& root, const std::string& relative) {
  if (relative.empty()) return {};
  const bool separated = relative.front() == '\\' || relative.front() == '/';
  const std::string candidate = CombinePath(root, separated ? relative.substr(1) : relative);
  return FileExists(candidate) ? candidate : std::string();
}

}  // namespace tarnwick
