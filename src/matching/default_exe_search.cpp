// Edge: games in their default folder, tried on every fixed drive.
#include "matching/default_exe_search.h"

#include "foundation/log.h"
#include "foundation/machine/known_folders.h"
#include "foundation/text.h"
#include "matching/found_report.h"
#include "matching/paths.h"

namespace tarnwick {
namespace {

constexpr char kPrefix[] = "[DefaultExeSearch]";

constexpr char kProgramFiles[] = "Program Files";
constexpr char kProgramFilesX86[] = "Program Files (x86)";

bool IsTested(const GameSignature& signature) {
  if (signature.DefaultExe.empty() || GetDefaultFolder(signature).empty()) return false;
  const int32_t kind = signature.SourceKind;
  return kind != kSourceSteam && kind != kSourceEpic && kind != kSourceUwp;
}

void Append(std::vector<std::string>& paths, const std::vector<std::string>& more) {
  paths.insert(paths.end(), more.begin(), more.end());
}

// The same place below the drive's Program Files; empty for a path without a drive.
std::string BelowProgramFiles(const std::string& path, const std::string& driveRoot) {
  const size_t colon = path.find(':');
  if (colon == std::string::npos || colon + 1 == path.size()) return {};
  // The root ends in a backslash, so this doubles it; FullPath makes it a single one again.
  return driveRoot + "\\Program Files\\" + TrimLeadingSeparators(path.substr(colon + 1));
}

std::vector<std::string> AllDriveCandidates(const GameSignature& signature, const std::string& driveRoot) {
  const std::vector<std::string> candidates = BuildDriveCandidates(signature, driveRoot);
  std::vector<std::string> all = candidates;
  for (const std::string& candidate : candidates) {
    if (candidate.find(kProgramFiles) != std::string::npos) continue;
    const std::string further = BelowProgramFiles(candidate, driveRoot);
    if (!further.empty()) all.push_back(further);
  }
  return all;
}

// A drive may have the plain program files folder only.
std::string PreferExistingProgramFiles(const std::string& path) {
  const size_t at = path.find(kProgramFilesX86);
  if (at == std::string::npos || FileExists(path)) return path;
  std::string plain = path;
  plain.replace(at, sizeof(kProgramFilesX86) - 1, kProgramFiles);
  return FileExists(plain) ? plain : path;
}

std::string FindOnDrive(const GameSignature& signature, const std::string& driveRoot) {
  for (const std::string& candidate : AllDriveCandidates(signature, driveRoot)) {
    const std::string path = FullPath(PreferExistingProgramFiles(candidate));
    if (FileExists(path)) return path;
  }
  return {};
}

}  // namespace

std::vector<std::string> ListFixedDrives() {
  std::vector<std::string> roots;
  const uint32_t drives = LogicalDrives();
  for (int i = 0; i < 26; ++i) {
    if ((drives >> i & 1) == 0) continue;
    const std::string root = std::string(1, static_cast<char>('A' + i)) + ":\\";
    if (IsFixedDrive(root)) roots.push_back(root);
  }
  return roots;
}

std::vector<std::string> BuildDriveCandidates(const GameSignature& signature, const std::string& driveRoot) {
  const std::string path = ResolveDefaultExePath(signature, driveRoot);
  if (path.empty()) return {};
  std::vector<std::string> candidates =
      BuildFolderCandidates(path, SplitPipeList(GetDefaultFolderExe(signature)));
  const std::string& exe = signature.DefaultExe;
  const auto appendList = [&](const std::string& otherExe, const std::string& list) {
    if (otherExe.empty() || otherExe == exe || list.empty()) return;
    Append(candidates, BuildFolderCandidates(path, SplitPipeList(list)));
  };
  // The path stays that of the default executable: only the lists differ. Kept: the 64-bit executable goes
  // with the plain list (docs/decisions/catalogue-fields.md).
  appendList(signature.DefaultExe32, signature.DefaultFolderExe32);
  appendList(signature.DefaultExe64, signature.DefaultFolderExe);
  return candidates;
}

ScanResults ScanDefaultExe(const GameList& games, const std::string&) {
  LogStream() << kPrefix << " Starting DefaultExe Search...\n";
  const std::vector<std::string> drives = ListFixedDrives();
  ScanResults results;
  for (const GameSignature& signature : games) {
    if (!IsTested(signature)) continue;
    for (const std::string& drive : drives) {
      const std::string exe = FindOnDrive(signature, drive);
      if (exe.empty()) continue;
      ScanResult result;
      result.name = signature.DisplayName;
      result.exePath = exe;
      result.launchUrl = signature.LaunchUrl;
      result.source = "DefaultExe Search";
      ReportFound(results, kPrefix, result);
    }
  }
  ReportCompletion(results, kPrefix);
  return results;
}

}  // namespace tarnwick
