// Edge: games whose catalogue record names a registry key and a value in it.
#include "matching/registry_search_scan.h"

#include "foundation/log.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/registry.h"
#include "matching/signatures.h"

#include <algorithm>
#include <set>

namespace tarnwick {
namespace {

constexpr char kPrefix[] = "[RegistrySearch]";

using SortedPaths = std::set<std::string>;

void AddUnlessEmpty(SortedPaths& paths, const std::string& path) {
  if (!path.empty()) paths.insert(path);
}

void AddFolderCandidates(SortedPaths& paths, const std::string& exePath,
                         const std::vector<std::string>& fragments) {
  for (const std::string& candidate : BuildFolderCandidates(exePath, fragments))
    AddUnlessEmpty(paths, candidate);
}

void AddPlainExe(SortedPaths& paths, const std::string& base, const GameSignature& signature) {
  const std::string& exe = signature.DefaultExe;
  if (exe.empty()) return;
  const std::string path = CombinePath(base, exe);
  AddUnlessEmpty(paths, path);
  AddFolderCandidates(paths, path, SplitPipeList(GetDefaultFolderExe(signature)));
  AddUnlessEmpty(paths, CombinePath(CombinePath(base, "Game"), exe));
}

// One of the two executables that belong to a bitness; `list` holds the paths relative to the default folder.
void AddBitnessExe(SortedPaths& paths, const std::string& base, const std::string& exe,
                   const std::string& list) {
  if (exe.empty()) return;
  const std::string path = CombinePath(base, exe);
  AddUnlessEmpty(paths, path);
  const std::vector<std::string> fragments = SplitPipeList(list);
  for (const std::string& fragment : fragments) {
    AddUnlessEmpty(paths, JoinFolderFragment(base, fragment, true));
    AddUnlessEmpty(paths, JoinFolderFragment(base, fragment, false));
  }
  AddFolderCandidates(paths, path, fragments);
}

bool IsTested(const GameSignature& signature) {
  if (signature.RegistryKey.empty() || signature.RegistryPathKeyName.empty()) return false;
  // A Steam record is left to Steam's strategies, unless it has no launch URL.
  return signature.SourceKind != kSourceSteam || signature.LaunchUrl.empty();
}

std::string ReadInstallText(const GameSignature& signature, const std::string& userSid) {
  const std::string key = ExpandUserHive(signature.RegistryKey, userSid);
  const std::string text = ReadRegistryString(key, signature.RegistryPathKeyName, "");
  return text.empty() ? FindInstallValueByDisplayName(signature, key, signature.RegistryPathKeyName) : text;
}

void FindGame(const GameSignature& signature, const std::string& userSid, ScanResults& results) {
  const std::string text = ReadInstallText(signature, userSid);
  if (text.empty()) return;
  const std::string exe = ResolveRegistrySearchExe(text, signature);
  if (!FileExists(exe)) return;
  ScanResult result;
  result.name = signature.DisplayName;
  result.exePath = exe;
  result.launchUrl = signature.LaunchUrl;
  result.source = "Registry Search";
  ReportFound(results, kPrefix, result);
}

}  // namespace

std::string ResolveRegistrySearchExe(const std::string& text, const GameSignature& signature) {
  // Kept: the paths are tried in the order of their bytes, not in the order in which the fields add them
  // (docs/decisions/install-paths.md).
  SortedPaths paths;
  std::string base = text;
  if (!GetExtension(text).empty()) {
    AddUnlessEmpty(paths, text);
    const std::string parent = GetParentFolder(text);
    if (!parent.empty()) base = parent;
  }
  AddPlainExe(paths, base, signature);
  AddBitnessExe(paths, base, signature.DefaultExe32, signature.DefaultFolderExe32);
  const bool has64List = !signature.DefaultFolderExe64.empty();
  AddBitnessExe(paths, base, signature.DefaultExe64,
                has64List ? signature.DefaultFolderExe64 : signature.DefaultFolderExe);
  const auto found = std::find_if(paths.begin(), paths.end(), FileExists);
  return found == paths.end() ? std::string() : *found;
}

ScanResults ScanRegistrySearch(const GameList& games, const std::string& userSid) {
  LogStream() << kPrefix << " Starting Registry Search...\n";
  ScanResults results;
  for (const GameSignature& signature : games) {
    if (!IsTested(signature)) continue;
    GuardSignature("[RegistrySearch] ", signature, [&] { FindGame(signature, userSid, results); });
  }
  ReportCompletion(results, kPrefix);
  return results;
}

}  // namespace tarnwick
