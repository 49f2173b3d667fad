// Edge: Riot games, from the client's metadata folders and the catalogue.
#include "launchers/riot_platform_search.h"

#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/machine/data_files.h"
#include "foundation/machine/folders.h"
#include "foundation/machine/known_folders.h"
#include "foundation/machine/paths.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/signature_index.h"

namespace tarnwick {
namespace {

const std::string kPrefix = "[RiotPlatformSearch]";

bool IsYamlName(std::wstring_view name) { return name.find(L".yaml") != std::wstring_view::npos; }

void AppendNamedFolder(const FolderEntry& yaml, std::vector<std::string>& folders) {
  LogStream() << "[RiotPlatformSearch] Found YAML file: " << WideToUtf8(yaml.name) << "\n";
  const std::string folder = ReadYamlInstallPath(WideToUtf8(yaml.path));
  LogStream() << "[RiotPlatformSearch] Parsed game folder: " << folder << "\n";
  if (ExistsOrThrow(folder)) {
    folders.push_back(folder);
  } else {
    LogStream() << "[RiotPlatformSearch] Game folder from YAML invalid or not exists: " << folder << "\n";
  }
}

// The install folder by a product's first .yaml file; others are not looked at, even if the first names none.
void AppendFolderOf(const std::wstring& product, std::vector<std::string>& folders) {
  FolderListing files = ListFiles(product, IsYamlName);
  // With a first one found, whatever ended the list behind it doesn't matter.
  if (!files.entries.empty()) files = {{files.entries.front()}, nullptr};
  ForEach(files, [&](const FolderEntry& yaml) { AppendNamedFolder(yaml, folders); });
}

void LogVerdictOnHelper(const std::string& helper) {
  LogStream() << "[RiotPlatformSearch] Riot Launch Helper: " << helper << "\n";
  if (!helper.empty()) return;
  LogStream() << "[RiotPlatformSearch] Riot launch helper not found.\n";
  LogStream() << "[RiotPlatformSearch] Proceeding with game scan anyway (Fallback mode)...\n";
}

void LogCandidate(const GameSignature& signature, const std::string& candidate) {
  if (signature.DisplayName.size() <= 7 || signature.DisplayName.find("VALORANT") == std::string::npos)
    return;
  LogStream() << "[RiotPlatformSearch] Checking VALORANT: " << candidate << "\n";
}

void ReportFolder(ScanResults& results, const std::string& folder,
                  const SignatureIndex& signaturesByRunningExe) {
  for (const auto& [runningExe, signature] : signaturesByRunningExe) {
    const std::string candidate = FullPath(CombinePath(folder, runningExe));
    LogCandidate(signature, candidate);
    if (!FileExists(candidate)) continue;
    LogStream() << "[RiotPlatformSearch] Match found! " << signature.DisplayName << " at " << candidate
                << "\n";
    ScanResult result;
    result.name = signature.DisplayName;
    result.exePath = candidate;
    result.launchUrl = signature.LaunchUrl;
    result.source = "Riot Platform";
    ReportFound(results, kPrefix, result);
    return;
  }
}

}  // namespace

ScanResults RiotPlatformSearch(const GameList& games, const std::string&) {
  LogStream() << "[RiotPlatformSearch] Starting Riot Platform Search...\n";
  const std::string commonAppData = KnownFolderPath(KnownFolder::kCommonData);
  LogVerdictOnHelper(GetRiotLaunchHelper(commonAppData));
  const std::vector<std::string> folders = GetRiotGameFolders(commonAppData);
  if (folders.empty()) {
    LogStream() << "[RiotPlatformSearch] No Riot game folders found.\n";
    return {};
  }
  LogStream() << "[RiotPlatformSearch] Found " << folders.size() << " Riot game folders.\n";
  for (const std::string& folder : folders)
    LogStream() << "[RiotPlatformSearch] Game Folder: " << folder << "\n";
  const SignatureIndex signaturesByRunningExe =
      IndexSignatures(games, kSourceRiot, &GameSignature::RunningExe);
  LogStream() << "[RiotPlatformSearch] MGL Riot Games count: " << signaturesByRunningExe.size() << "\n";
  ScanResults results;
  for (const std::string& folder : folders) {
    if (IsDirectoryOrThrow(folder)) {
      ReportFolder(results, folder, signaturesByRunningExe);
    } else {
      LogStream() << "[RiotPlatformSearch] Folder does not exist or is not a directory: " << folder << "\n";
    }
  }
  ReportCompletion(results, kPrefix);
  return results;
}

std::string GetRiotLaunchHelper(const std::string& commonAppData) {
  std::string helper;
  if (commonAppData.empty()) return helper;
  LogExceptions("[RiotPlatformSearch] Error getting Riot launch helper: ", [&] {
    const std::string path = commonAppData + "\\Riot Games\\RiotClientInstalls.json";
    LogStream() << "[RiotPlatformSearch] Checking JSON path: " << path << "\n";
    if (!ExistsOrThrow(path)) {
      LogStream() << "[RiotPlatformSearch] JSON file not found: " << path << "\n";
      return;
    }
    helper = ReadRiotLaunchHelper(*OpenTextFile(path));
  });
  return helper;
}

std::vector<std::string> GetRiotGameFolders(const std::string& commonAppData) {
  std::vector<std::string> folders;
  if (commonAppData.empty()) return folders;
  LogExceptions("[RiotPlatformSearch] Error getting Riot game folders: ", [&] {
    const std::string path = commonAppData + "\\Riot Games\\Metadata";
    LogStream() << "[RiotPlatformSearch] Checking Metadata path: " << path << "\n";
    if (!IsDirectoryOrThrow(path)) {
      LogStream() << "[RiotPlatformSearch] Metadata path not found or not a directory.\n";
      return;
    }
    ForEach(ListFolders(path), [&](const FolderEntry& product) {
      if (product.name.find(L".live") == std::wstring::npos) return;
      LogStream() << "[RiotPlatformSearch] Found live directory: " << WideToUtf8(product.name) << "\n";
      AppendFolderOf(product.path, folders);
    });
  });
  return folders;
}

std::string ReadYamlInstallPath(const std::string& path) {
  return ReadYamlInstallPath(*OpenTextFile(path), path);
}

}  // namespace tarnwick
