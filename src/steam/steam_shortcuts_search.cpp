// Edge: the Steam shortcuts search.
#include "steam/steam_shortcuts_search.h"

#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/machine/data_files.h"
#include "foundation/machine/folders.h"
#include "foundation/machine/path_rules.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "matching/found_report.h"
#include "steam/steam_folders.h"

#include <memory>

namespace tarnwick {
namespace {

constexpr char kTag[] = "[SteamShortcutsSearch]";

void AppendUserShortcuts(const std::string& user, std::vector<SteamShortcut>& shortcuts) {
  const std::string file = JoinParts(user, {"config", "shortcuts.vdf"});
  if (!FileOrFolderExists(file)) return;
  for (SteamShortcut& shortcut : ParseShortcutsVdf(file)) shortcuts.push_back(std::move(shortcut));
}

void AppendAllShortcuts(const std::string& steamPath, std::vector<SteamShortcut>& shortcuts) {
  const std::string userdata = JoinParts(steamPath, {"userdata"});
  if (!DirectoryExists(userdata)) return;
  const FolderListing users = ListFoldersIfOpen(userdata);
  ForEach(users, [&](const FolderEntry& user) {
    // A folder that can't be opened has had no entries on any system so far, so nobody has seen this line.
    if (!users.openingError.empty()) {
      LogStream() << kTag << " Warning: Error accessing directory entry: " << users.openingError << "\n";
      return;
    }
    AppendUserShortcuts(WideToUtf8(user.path), shortcuts);
  });
}

// The whole file, in one buffer of its size.
void AppendFileShortcuts(const std::string& path, std::vector<SteamShortcut>& shortcuts) {
  const DataFile file = OpenBinaryFile(path);
  if (!file->seekg(0, std::ios::end)) return;
  const auto size = static_cast<size_t>(static_cast<std::streamoff>(file->tellg()));
  const auto bytes = std::make_unique_for_overwrite<char[]>(size);
  file->seekg(0, std::ios::beg);
  file->read(bytes.get(), static_cast<std::streamsize>(size));
  ReadShortcuts({bytes.get(), static_cast<size_t>(file->gcount())}, shortcuts);
}

void CheckShortcut(const SteamShortcut& shortcut, ScanResults& results) {
  if (!FileExists(shortcut.exe)) return;
  const std::string path = StripOuterQuotes(shortcut.exe);
  if (!FileExists(path)) return;
  ScanResult result;
  result.name = shortcut.appName;
  result.exePath = path;
  result.source = "Steam Shortcuts";
  ReportFound(results, kTag, result);
}

}  // namespace

ScanResults ScanSteamShortcuts() {
  LogStream() << kTag << " Starting Steam Shortcuts Search...\n";
  const std::string steamPath = GetShortcutsSteamPath();
  if (!FileOrFolderExists(steamPath)) {
    LogStream() << kTag << " Steam path not found.\n";
    return {};
  }
  ScanResults results;
  for (const SteamShortcut& shortcut : GetSteamShortcuts(steamPath)) CheckShortcut(shortcut, results);
  ReportCompletion(results, kTag);
  return results;
}

std::vector<SteamShortcut> GetSteamShortcuts(const std::string& steamPath) {
  std::vector<SteamShortcut> shortcuts;
  LogExceptions(std::string(kTag) + " Error getting Steam shortcuts: ",
                [&] { AppendAllShortcuts(steamPath, shortcuts); });
  return shortcuts;
}

std::vector<SteamShortcut> ParseShortcutsVdf(const std::string& path) {
  std::vector<SteamShortcut> shortcuts;
  LogExceptions(std::string(kTag) + " Error parsing shortcuts.vdf (" + path + "): ",
                [&] { AppendFileShortcuts(path, shortcuts); });
  return shortcuts;
}

}  // namespace tarnwick
