// Edge: games whose default folder lies in a user's profile, tried for every profile.
#include "matching/user_folder_exe_search.h"

#include "foundation/log.h"
#include "foundation/text.h"
#include "foundation/windows_api.h"
#include "matching/paths.h"

#include <filesystem>
#include <optional>

namespace tarnwick {
namespace {

std::string SystemDrive() {
  char drive[4] = {};
  const DWORD length = GetEnvironmentVariableA("SystemDrive", drive, sizeof(drive));
  return length == 0 || length >= sizeof(drive) ? "C:" : drive;
}

// Kept: case counts, so a profile named "default" is one.
bool IsUserName(const std::filesystem::path& name) {
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
  const std::filesystem::path root = PathFromUtf8(SystemDrive() + "\\Users");
  if (!std::filesystem::exists(root)) return folders;
  for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(root)) {
    if (entry.is_directory() && IsUserName(entry.path().filename()))
      folders.push_back(PathToUtf8(entry.path()));
  }
  return folders;
}

ScanResults ScanUserFolderExe(const GameList& games, const std::string&) {
  LogStream() << "[UserFolderExeSearch] Starting UserFolderExe Search...\n";
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
    result.found = true;
    results.push_back(result);
    LogStream() << "[UserFolderExeSearch] Found: " << result.name << " -> " << exe << "\n";
  }
  LogStream() << "[UserFolderExeSearch] Scan completed! Found " << results.size() << " games.\n";
  return results;
}

}  // namespace tarnwick
