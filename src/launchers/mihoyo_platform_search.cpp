// Edge: miHoYo games, from the HoYoPlay launcher's gamedata.dat files and the catalogue.
#include "launchers/mihoyo_platform_search.h"

#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/machine/data_files.h"
#include "foundation/machine/folders.h"
#include "foundation/machine/known_folders.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/signature_index.h"

#include <iterator>
#include <map>
#include <utility>

namespace tarnwick {
namespace {

const std::string kPrefix = "[MihoyoPlatformSearch]";

constexpr const char* kLauncherRoots[] = {"\\miHoYo\\HYP", "\\Cognosphere\\HYP",
                                          "\\Cognosphere\\HYP\\standalone"};

// The id is trimmed on both sides of the comparison; of signatures that are equal then, the last in the list
// stays.
SignatureIndex IndexByTrimmedId(const GameList& games) {
  SignatureIndex index;
  for (const GameSignature& game : games) {
    if (game.SourceKind != kSourceMihoyo || game.SourceExId.empty()) continue;
    index[TrimCharacters(game.SourceExId, " \t")] = game;
  }
  return index;
}

bool IsGameData(std::wstring_view name) { return name == L"gamedata.dat"; }

std::vector<MihoyoGameEntry> ReadRoot(int root, const std::string& appData) {
  std::vector<MihoyoGameEntry> entries;
  for (const std::string& path : GetGameDataPaths(root, appData)) {
    for (MihoyoGameEntry& entry : ParseGameDataFile(path)) entries.push_back(std::move(entry));
  }
  return entries;
}

// The first entry of each gameBiz, and so miHoYo's before Cognosphere's.
std::map<std::string, MihoyoGameEntry> ReadEntriesByGameBiz() {
  const std::string appData = KnownFolderPath(KnownFolder::kRoamingData);
  std::map<std::string, MihoyoGameEntry> entries;
  for (const int root : {0, 1}) {
    for (MihoyoGameEntry& entry : ReadRoot(root, appData))
      entries.try_emplace(entry.gameBiz, std::move(entry));
  }
  // Kept: the standalone root's files are read and contribute nothing (docs/decisions/launcher-records.md).
  ReadRoot(2, appData);
  return entries;
}

void ReportEntry(ScanResults& results, const MihoyoGameEntry& entry, const SignatureIndex& signaturesByExId) {
  const GameSignature* signature = FindSignature(signaturesByExId, TrimCharacters(entry.gameBiz, " \t"));
  if (signature == nullptr) return;
  const std::string& exe = signature->RunningExe.empty() ? signature->DefaultExe : signature->RunningExe;
  if (exe.empty()) return;
  const std::string candidate = CombinePath(entry.installPath, exe);
  if (!FileExists(candidate)) return;
  ScanResult result;
  result.name = signature->DisplayName;
  result.exePath = candidate;
  result.launchUrl = signature->LaunchUrl;
  result.source = "Mihoyo Platform: " + entry.gameBiz;
  ReportFound(results, kPrefix, result);
}

}  // namespace

ScanResults MihoyoPlatformSearch(const GameList& games, const std::string&) {
  LogStream() << "[MihoyoPlatformSearch] Starting Mihoyo Platform Search...\n";
  const SignatureIndex signaturesByExId = IndexByTrimmedId(games);
  if (signaturesByExId.empty()) {
    LogStream() << "[MihoyoPlatformSearch] No Mihoyo games in MGL.\n";
    return {};
  }
  ScanResults results;
  for (const auto& [gameBiz, entry] : ReadEntriesByGameBiz()) ReportEntry(results, entry, signaturesByExId);
  ReportCompletion(results, kPrefix);
  return results;
}

std::vector<std::string> GetGameDataPaths(int root, const std::string& appData) {
  std::vector<std::string> paths;
  if (appData.empty()) return paths;
  LogExceptions("[MihoyoPlatformSearch] Error getting gamedata paths: ", [&] {
    const std::string folder = appData + kLauncherRoots[root];
    if (!IsDirectoryOrThrow(folder)) return;
    ForEach(WalkFilesDeep(folder, IsGameData), [&](const FolderEntry& file) {
      const std::string path = WideToUtf8(file.path);
      // Files below a standalone folder belong to root 2.
      if (root == 1 && path.find("standalone") != std::string::npos) return;
      paths.push_back(path);
    });
  });
  return paths;
}

std::vector<MihoyoGameEntry> ParseGameDataFile(const std::string& path) {
  return ReadGameData(*OpenTextFile(path), path);
}

}  // namespace tarnwick
