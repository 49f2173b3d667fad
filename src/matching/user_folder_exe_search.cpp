// Edge: games whose default folder lies in a user's profile, tried for every profile.
#include "matching/user_folder_exe_search.h"

#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/machine/folders.h"
#include "foundation/machine/known_folders.h"
#include "foundation/text.h"
#include "matching/found_report.h"
#include "matching/paths.h"

#include <optional>

namespace tarnwick {
namespace {

constexpr char kPrefix[] = "[UserFolderExeSearch]";

std::string SystemDrive() {
  constexpr uint32_t kDriveBytes = 4;
  const std::string drive = EnvironmentText("SystemDrive", kDriveBytes);
  return drive.empty() ? "C:" : drive;
}

// Kept: case counts, so a profile named "default" is one (docs/decisions/letter-case.md).
bool IsUserName(const std::wstring& name) {
  return name != L"Public" && name != L"Default" && name != L"Default User";
}

// What stands behind the profile's token, without leading separators; nothing if the folder has no such
// token.
std::optional<std::string> FolderInProfile(const std::string& folder) {
  const std::string lower = ToLowerBytes(folder);
  for (const std::string token : {"%userprofile%", "userprofile"}) {
    const size_t at = lower.find(token);
    if (at != std::string::npos) return TrimLeadingSeparators(folder.substr(at + token.size()));
  }
  return std::nullopt;
}

std::string FindInProfiles(const std::vector<std::string>& profiles, const std::string& folder,
                           const std::string& exe) {
  for (const std::string& profile : profiles) {
    const std::string path = FullPath(CombinePath(CombinePath(profile, folder), exe));
    if (FileExists(path)) return path;
  }
  return {};
}

}  // namespace

std::vector<std::string> ListUserFolders() {
  std::vector<std::string> folders;
  const std::string root = SystemDrive() + "\\Users";
  if (!FileOrFolderExists(root)) return folders;
  ForEach(ListFolders(root), [&](const FolderEntry& entry) {
    if (IsUserName(entry.name)) folders.push_back(WideToUtf8(entry.path));
  });
  return folders;
}

ScanResults ScanUserFolderExe(const GameList& games, const std::string&) {
  LogStream() << kPrefix << " Starting UserFolderExe Search...\n";
  ScanResults results;
  std::optional<std::vector<std::string>> profiles;  // listed when the first signature asks for them
  for (const GameSignature& signature : games) {
    if (signature.DefaultExe.empty()) continue;
    const std::optional<std::string> folder = FolderInProfile(GetDefaultFolder(signature));
    if (!folder) continue;
    if (!profiles) profiles = ListUserFolders();
    const std::string exe = FindInProfiles(*profiles, *folder, signature.DefaultExe);
    if (exe.empty()) continue;
    ScanResult result;
    result.name = signature.DisplayName;
    result.exePath = exe;
    result.launchUrl = signature.LaunchUrl;
    result.source = "UserFolderExe Search";
    ReportFound(results, kPrefix, result);
  }
  ReportCompletion(results, kPrefix);
  return results;
}

}  // namespace tarnwick
