// Edge: Epic games, from the launcher's manifests and its list of installations.
#include "launchers/epic_games_scan.h"

#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/machine/data_files.h"
#include "foundation/machine/folders.h"
#include "foundation/machine/path_rules.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "launchers/json_text_reader.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/registry.h"
#include "matching/signature_index.h"

#include <algorithm>

namespace tarnwick {
namespace {

const std::string kPrefix = "[Epic]";

// The two parts of a path at its last separator; all of it is the name if it has none.
std::string NamePart(const std::string& path) { return path.substr(path.find_last_of("\\/") + 1); }
std::string FolderPart(const std::string& path) { return path.substr(0, path.find_last_of("\\/")); }

// Does the catalogue's path begin with the name of the install folder?
bool BeginsWithFolderName(const std::string& installLocation, const std::string& relativePath) {
  const std::string path = TrimLeadingSeparators(relativePath);
  return NamePart(TrimTrailingSeparators(installLocation)) == path.substr(0, path.find_first_of("\\/"));
}

// Candidates for a DefaultFolderExe that begins with the install folder's name.
std::vector<std::string> CandidatesBesideFolder(const std::string& installLocation,
                                                const GameSignature& signature) {
  const std::string parent = FolderPart(TrimTrailingSeparators(installLocation));
  const std::string path = TrimLeadingSeparators(signature.DefaultFolderExe);
  const size_t separator = path.find_first_of("\\/");
  const std::string rest = separator == std::string::npos ? std::string() : path.substr(separator + 1);
  std::vector<std::string> candidates;
  // Kept: the plain field loses the folder that has just been matched, the 32-bit field keeps all of its text
  // (docs/decisions/catalogue-fields.md).
  if (!rest.empty()) candidates.push_back(CombinePath(parent, rest));
  if (!signature.DefaultFolderExe32.empty()) {
    candidates.push_back(CombinePath(parent, TrimLeadingSeparators(signature.DefaultFolderExe32)));
  }
  return candidates;
}

std::string FindByCatalogue(const std::string& installLocation, const GameSignature& signature) {
  if (signature.DefaultExe.empty()) return {};
  if (!signature.DefaultFolderExe.empty() &&
      BeginsWithFolderName(installLocation, signature.DefaultFolderExe)) {
    return FirstExistingFile(CandidatesBesideFolder(installLocation, signature));
  }
  return FirstExistingDefaultExe(installLocation, signature);
}

std::string FindByManifest(const std::string& installLocation, const std::string& launchExecutable) {
  if (launchExecutable.empty()) return {};
  const bool absolute = launchExecutable.find(':') != std::string::npos || launchExecutable.front() == '\\' ||
                        launchExecutable.front() == '/';
  return FirstExistingFile({absolute ? launchExecutable : CombinePath(installLocation, launchExecutable)});
}

bool IsManifestName(std::wstring_view name) { return ExtensionOf(std::wstring(name)) == L".item"; }

bool IsExeName(std::wstring_view name) {
  return ToLowerBytes(WideToUtf8(ExtensionOf(std::wstring(name)))) == ".exe";
}

std::vector<std::string> ListGameExes(const std::string& folder, bool recursive) {
  std::vector<std::string> files = ListExeFiles(folder, recursive);
  std::erase_if(files, [](const std::string& path) {
    return std::find(IgnoredExeNames.begin(), IgnoredExeNames.end(), ToLowerBytes(NamePart(path))) !=
           IgnoredExeNames.end();
  });
  return files;
}

std::string FindInFolder(const std::string& installLocation) {
  const std::vector<std::string> atTop = ListGameExes(installLocation, false);
  if (atTop.size() == 1) return atTop.front();
  const std::vector<std::string> below = ListGameExes(installLocation, true);
  return below.empty() ? std::string() : below.front();
}

bool IsEnginePlugin(const std::vector<std::string>& categories) {
  return std::any_of(categories.begin(), categories.end(), [](const std::string& category) {
    return category == "plugins" || category == "plugins/engine";
  });
}

// Games only: no engine, no plug-in, no add-on, nothing incomplete, and the folder is there.
bool IsInstalledGame(const EpicManifestEntry& entry) {
  return !entry.AppName.starts_with("UE_") && !IsEnginePlugin(entry.AppCategories) &&
         entry.AppName == entry.MainGameAppName && !entry.bIsIncompleteInstall &&
         IsDirectoryOrThrow(entry.InstallLocation);
}

void ReportEntry(ScanResults& results, const EpicManifestEntry& entry,
                 const SignatureIndex& signaturesByLaunchUrl) {
  if (!IsInstalledGame(entry)) return;
  const std::string url = BuildEpicLaunchUrl(entry.AppName);
  if (url.empty()) return;
  const GameSignature* signature = FindSignature(signaturesByLaunchUrl, url);
  const std::string exe = FindEpicExe(entry.InstallLocation, entry.LaunchExecutable, signature);
  if (!FileExists(exe)) return;
  ScanResult result;
  result.name = entry.DisplayName.empty() ? entry.AppName : entry.DisplayName;
  result.exePath = exe;
  result.source = "Epic Games Launcher";
  ReportFound(results, kPrefix, result);
}

void AppendManifest(std::vector<EpicManifestEntry>& entries, const std::string& path) {
  const DataFile file = OpenBinaryFile(path);
  if (!*file) {
    LogStream() << "[Epic] Failed to open: " << path << "\n";
    return;
  }
  const EpicManifestEntry entry = ReadEpicManifest(ReadAll(*file));
  if (entry.InstallLocation.empty()) return;
  entries.push_back(entry);
  LogStream() << "[Epic] Parsed manifest: " << entry.DisplayName << " (AppName: " << entry.AppName
              << ", InstallLocation: " << entry.InstallLocation << ")\n";
}

void AppendLauncherInstalled(std::vector<EpicManifestEntry>& entries, const std::string& text) {
  for (const std::string_view object : JsonFindObjectArray(text, "InstallationList")) {
    const EpicManifestEntry entry = ReadLauncherInstalledObject(object);
    if (entry.InstallLocation.empty()) continue;
    entries.push_back(entry);
    LogStream() << "[Epic] Parsed from dat: " << entry.AppName << "\n";
  }
}

std::string LauncherInstalledPath(const std::string& dataPath) {
  const std::string launcher = WithoutLastPart(WithoutLastPart(dataPath, "Data"), "EpicGamesLauncher");
  return JoinParts(launcher, {"UnrealEngineLauncher", "LauncherInstalled.dat"});
}

}  // namespace

ScanResults ScanEpicGames(const GameList& games, const std::string&) {
  LogStream() << "[Epic] Starting Epic Games scan...\n";
  const std::string dataPath = GetEpicDataPath();
  if (dataPath.empty()) {
    LogStream() << "[Epic] Epic Games Launcher not found in registry.\n";
    return {};
  }
  LogStream() << "[Epic] Epic Data Path: " << dataPath << "\n";
  const std::string manifestsPath = CombinePath(dataPath, "Manifests");
  LogStream() << "[Epic] Manifests Path: " << manifestsPath << "\n";
  const SignatureIndex signaturesByLaunchUrl = IndexSignatures(games, kSourceEpic, &GameSignature::LaunchUrl);
  std::vector<EpicManifestEntry> entries = ReadEpicManifests(manifestsPath);
  for (EpicManifestEntry& entry : ReadLauncherInstalledDat(dataPath)) entries.push_back(std::move(entry));
  LogStream() << "[Epic] Found " << entries.size() << " games (Manifests + LauncherInstalled.dat)\n";
  ScanResults results;
  for (const EpicManifestEntry& entry : entries) ReportEntry(results, entry, signaturesByLaunchUrl);
  ReportCompletion(results, kPrefix);
  return results;
}

std::string GetEpicDataPath() {
  std::string path =
      ReadRegistryString("HKEY_LOCAL_MACHINE\\SOFTWARE\\Epic Games\\EpicGamesLauncher", "AppDataPath", "");
  LogStream() << "[Epic] Registry AppDataPath: " << path << "\n";
  if (path.empty()) {
    path = "C:\\ProgramData\\Epic\\EpicGamesLauncher\\Data";
    LogStream() << "[Epic] Using default path: " << path << "\n";
  }
  return path;
}

std::vector<EpicManifestEntry> ReadEpicManifests(const std::string& manifestsPath) {
  std::vector<EpicManifestEntry> entries;
  LogExceptions("[Epic] Error reading manifests: ", [&] {
    if (!IsDirectoryOrThrow(manifestsPath)) {
      LogStream() << "[Epic] Manifests path does not exist or is not a directory\n";
      return;
    }
    size_t processed = 0;
    ForEach(WalkFiles(manifestsPath, IsManifestName), [&](const FolderEntry& file) {
      ++processed;
      AppendManifest(entries, WideToUtf8(file.path));
    });
    LogStream() << "[Epic] Processed " << processed << " .item files\n";
  });
  return entries;
}

std::vector<EpicManifestEntry> ReadLauncherInstalledDat(const std::string& dataPath) {
  std::vector<EpicManifestEntry> entries;
  LogExceptions("[Epic] Error reading LauncherInstalled.dat: ", [&] {
    const std::string dat = LauncherInstalledPath(dataPath);
    if (!ExistsOrThrow(dat)) {
      LogStream() << "[Epic] LauncherInstalled.dat not found at: " << dat << "\n";
      return;
    }
    const DataFile file = OpenBinaryFile(dat);
    if (!*file) {
      LogStream() << "[Epic] Failed to open LauncherInstalled.dat\n";
      return;
    }
    AppendLauncherInstalled(entries, ReadAll(*file));
  });
  return entries;
}

std::string BuildEpicLaunchUrl(const std::string& appName) {
  return appName.empty() ? std::string()
                         : "com.epicgames.launcher://apps/" + appName + "?action=launch&silent=true";
}

std::string FindEpicExe(const std::string& installLocation, const std::string& launchExecutable,
                        const GameSignature* signature) {
  std::string exe = signature == nullptr ? std::string() : FindByCatalogue(installLocation, *signature);
  if (exe.empty()) exe = FindByManifest(installLocation, launchExecutable);
  if (exe.empty()) exe = FindInFolder(installLocation);
  return exe;
}

std::vector<std::string> ListExeFiles(const std::string& folder, bool recursive) {
  std::vector<std::string> files;
  try {
    if (!IsDirectoryOrThrow(folder)) return files;
    ForEach(recursive ? WalkFilesDeep(folder, IsExeName) : WalkFiles(folder, IsExeName),
            [&](const FolderEntry& file) { files.push_back(WideToUtf8(file.path)); });
  } catch (...) {
    // What was listed up to here is what there is to choose from.
  }
  return files;
}

}  // namespace tarnwick
