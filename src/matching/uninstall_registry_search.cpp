// Edge: games whose catalogue record has a product GUID, by that product's Uninstall entry.
#include "matching/uninstall_registry_search.h"

#include "foundation/log.h"
#include "foundation/machine/uninstall_key.h"
#include "foundation/text.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/registry.h"
#include "matching/signatures.h"

namespace tarnwick {
namespace {

constexpr char kPrefix[] = "[UninstallSearch]";

bool IsTested(const GameSignature& signature) {
  return HasGameGuid(signature) && signature.SourceKind != kSourceSteam;
}

// The default folder's last segment, or empty for a folder of one segment alone.
std::string LastFolderSegment(const std::string& defaultFolder) {
  const std::string folder = TrimTrailingSeparators(NormalizeFragment(ExpandPathTokens(defaultFolder)));
  const size_t separator = folder.find_last_of("\\/");
  return separator == std::string::npos ? std::string() : folder.substr(separator + 1);
}

// The default folder and its last segment, each put below the install folder as if that were a drive's root.
std::vector<std::string> DefaultFolderCandidates(const std::string& folder, const GameSignature& signature) {
  const std::string defaultFolder = GetDefaultFolder(signature);
  const std::string exe = GetDefaultExe(signature);
  if (exe.empty() || defaultFolder.empty()) return {};
  return {ResolveDefaultExePath(signature, folder),
          BuildDrivePath(folder, LastFolderSegment(defaultFolder), exe)};
}

std::vector<std::string> FragmentCandidates(const std::string& folder, const GameSignature& signature) {
  std::vector<std::string> candidates;
  for (const std::string& fragment : SplitPipeList(GetDefaultFolderExe(signature))) {
    candidates.push_back(JoinFolderFragment(folder, fragment, false));
    candidates.push_back(JoinFolderFragment(folder, fragment, true));
  }
  return candidates;
}

void FindGame(const GameSignature& signature, ScanResults& results) {
  const std::string key = std::string(kUninstallKey) + "\\{" + signature.GameGUID + "}";
  const std::string folder = ReadRegistryString(key, "InstallLocation", "");
  if (folder.empty()) return;
  const std::string displayIcon = ReadRegistryString(key, "DisplayIcon", "");
  const std::string exe = ResolveUninstallExe(TrimTrailingSeparators(folder), signature);
  if (!FileExists(exe)) return;
  ScanResult result;
  result.name = signature.DisplayName;
  result.exePath = exe;
  result.launchUrl = signature.LaunchUrl;
  result.source = "Uninstall Registry";
  result.displayIcon = displayIcon;
  ReportFound(results, kPrefix, result);
}

}  // namespace

std::string ResolveUninstallExe(const std::string& folder, const GameSignature& signature) {
  std::vector<std::string> candidates = FragmentCandidates(folder, signature);
  for (const std::string& candidate : DefaultFolderCandidates(folder, signature))
    candidates.push_back(candidate);
  return FirstExistingFile(candidates);
}

ScanResults ScanUninstallSearch(const GameList& games) {
  LogStream() << kPrefix << " Starting Uninstall Search...\n";
  ScanResults results;
  for (const GameSignature& signature : games) {
    if (!IsTested(signature)) continue;
    GuardSignature("[UninstallSearch] ", signature, [&] { FindGame(signature, results); });
  }
  ReportCompletion(results, kPrefix);
  return results;
}

}  // namespace tarnwick
