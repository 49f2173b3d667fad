// Edge: Battle.net games, from the agent's logs.
#include "launchers/battle_net_search_v2.h"

#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/machine/data_files.h"
#include "foundation/machine/folders.h"
#include "foundation/machine/known_folders.h"
#include "foundation/machine/paths.h"
#include "foundation/machine/versions.h"
#include "foundation/text.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/signature_index.h"

#include <algorithm>
#include <optional>
#include <set>

namespace tarnwick {
namespace {

const std::string kPrefix = "[BattleNetSearchV2]";

constexpr size_t kLogsRead = 3;
constexpr size_t kMostProducts = 20;

// The launcher's own components.
const std::set<std::string> kExcludedProducts = {"bna", "agent", "clnt", "battle.net", "prometheus"};

bool IsAgentLog(std::wstring_view name) {
  return name.starts_with(L"Agent-") && name.find(L".log") != std::wstring_view::npos;
}

struct AgentLog {
  uint64_t written = 0;
  std::string path;
};

// The newest agent logs of a folder and all below it, newest first.
std::vector<AgentLog> NewestAgentLogs(const std::string& folder) {
  std::vector<AgentLog> logs;
  ForEach(WalkFilesDeep(folder, IsAgentLog), [&](const FolderEntry& file) {
    logs.push_back({LastWriteTime(file.path), WideToUtf8(file.path)});
  });
  std::stable_sort(logs.begin(), logs.end(), [](const AgentLog& first, const AgentLog& second) {
    return first.written > second.written;
  });
  logs.resize(std::min(logs.size(), kLogsRead));
  return logs;
}

void AppendCandidates(std::vector<std::string>& candidates, const std::string& installPath,
                      const std::string& exe, const std::string& fragments) {
  if (exe.empty()) return;
  for (std::string& candidate :
       BuildFolderCandidates(CombinePath(installPath, exe), SplitPipeList(fragments))) {
    candidates.push_back(std::move(candidate));
  }
}

std::string FindByCatalogue(const std::string& installPath, const GameSignature& signature) {
  std::vector<std::string> candidates;
  AppendCandidates(candidates, installPath, signature.DefaultExe, GetDefaultFolderExe(signature));
  AppendCandidates(candidates, installPath, signature.DefaultExe32, signature.DefaultFolderExe32);
  // Kept: the 64-bit executable goes with the plain folders, not with DefaultFolderExe64
  // (docs/decisions/catalogue-fields.md).
  AppendCandidates(candidates, installPath, signature.DefaultExe64, signature.DefaultFolderExe);
  if (const std::string exe = GetDefaultExe(signature); !exe.empty()) {
    candidates.push_back(CombinePath(installPath, exe));
  }
  return FirstExistingFile(candidates);
}

std::string FindByLog(const BattleNetGameEntry& entry) {
  std::string exe;
  if (!entry.relativePath64.empty()) exe = CombinePath(entry.installPath, entry.relativePath64);
  if (!FileExists(exe) && !entry.relativePath.empty())
    exe = CombinePath(entry.installPath, entry.relativePath);
  return exe.empty() ? exe : FullPath(exe);
}

void ReportEntry(ScanResults& results, const BattleNetGameEntry& entry,
                 const SignatureIndex& signaturesByExId) {
  if (kExcludedProducts.contains(ToLowerBytes(entry.gameId)) || !ExistsOrThrow(entry.installPath)) return;
  const GameSignature* signature = FindSignature(signaturesByExId, entry.gameId);
  std::string exe = signature == nullptr ? std::string() : FindByCatalogue(entry.installPath, *signature);
  if (exe.empty()) exe = FindByLog(entry);
  if (!FileExists(exe)) return;
  ScanResult result;
  result.name = ShownGameName(GetExeProductName(exe), exe);
  result.exePath = exe;
  result.launchUrl = "battle.net://launch/" + entry.gameId;
  result.source = "Battle.net: " + entry.gameId;
  ReportFound(results, kPrefix, result);
}

bool NamesSetup(const std::string& text) { return ToUpperBytes(text).find("SETUP") != std::string::npos; }

}  // namespace

ScanResults BattleNetSearchV2(const GameList& games, const std::string&) {
  LogStream() << "[BattleNetSearchV2] Starting Battle.net Search V2...\n";
  const std::vector<BattleNetGameEntry> entries =
      GetBattleNetGamesFromLogs(KnownFolderPath(KnownFolder::kCommonData));
  const SignatureIndex signaturesByExId =
      IndexSignatures(games, kSourceBattleNet, &GameSignature::SourceExId);
  ScanResults results;
  for (const BattleNetGameEntry& entry : entries) ReportEntry(results, entry, signaturesByExId);
  ReportCompletion(results, kPrefix);
  return results;
}

std::vector<BattleNetGameEntry> GetBattleNetGamesFromLogs(const std::string& commonAppData) {
  std::vector<BattleNetGameEntry> entries;
  if (commonAppData.empty()) return entries;
  LogExceptions("[BattleNetSearchV2] Error getting Battle.net games: ", [&] {
    const std::string folder = commonAppData + "\\Battle.net\\Agent";
    if (!IsDirectoryOrThrow(folder)) return;
    std::set<std::string> seen;
    for (const AgentLog& log : NewestAgentLogs(folder)) {
      for (BattleNetGameEntry& entry : ParseAgentLog(log.path)) {
        if (seen.insert(ToLowerBytes(entry.gameId)).second) entries.push_back(std::move(entry));
      }
    }
    // The limit comes before all tests: the 21st product stays out even if an earlier one proves to be gone.
    if (entries.size() > kMostProducts) entries.resize(kMostProducts);
  });
  return entries;
}

std::vector<BattleNetGameEntry> ParseAgentLog(const std::string& path) {
  return ReadAgentLog(*OpenTextFile(path), path);
}

std::string GetExeProductName(const std::string& path) {
  std::string name;
  try {
    const VersionBlock block = ReadNarrowVersionBlock(path);
    const auto table = block.empty() ? std::nullopt : FirstNarrowTranslation(block);
    if (!table) return name;
    name = NarrowVersionText(block, *table, "FileDescription").value_or("");
    if (!NamesSetup(name)) return name;
    const std::string product = NarrowVersionText(block, *table, "ProductName").value_or(name);
    if (!NamesSetup(product)) name = product;
  } catch (...) {
    // The name so far is returned; for an empty one the caller takes the file's name.
  }
  return name;
}

}  // namespace tarnwick
