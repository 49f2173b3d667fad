// Edge: the Steam Default ID search.
#include "steam/steam_default_id.h"

#include "foundation/log.h"
#include "foundation/text.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/registry.h"
#include "steam/steam_folders.h"
#include "steam/steam_guards.h"

#include <exception>

namespace tarnwick {
namespace {

constexpr char kTag[] = "[SteamDefaultId]";

bool IsCandidate(const GameSignature& game) {
  return game.SourceKind == kSourceSteam && !game.SourceExId.empty() &&
         IsSteamAppInstalled(game.SourceExId) && !game.DefaultExe.empty() && !game.DefaultFolder.empty();
}

void CheckGame(const std::string& steamPath, const GameSignature& game, ScanResults& results) {
  if (!IsCandidate(game)) return;
  const size_t steamapps = ToUpperBytes(game.DefaultFolder).find("STEAMAPPS");
  if (steamapps == std::string::npos) return;
  // The separator in front of the word stays. Kept: a folder that begins with the word has none, so substr
  // throws and the signature is passed over (docs/decisions/steam-lookups.md).
  const std::string relative = game.DefaultFolder.substr(steamapps - 1);
  const std::string exePath = BuildDrivePath(steamPath, relative, game.DefaultExe);
  // Kept: both calls, so that a path which the ANSI code page spells differently is passed over
  // (docs/decisions/narrow-file-tests.md).
  if (!FileExists(exePath) || !NarrowFileExists(exePath)) return;
  // A size that can't be told counts as not empty.
  if (FileSize(exePath) == uint64_t{0}) {
    LogStream() << kTag << " Skipping 0-byte file: " << exePath << "\n";
    return;
  }
  ScanResult result;
  result.name = game.DisplayName;
  result.exePath = exePath;
  result.launchUrl = "steam://run/" + game.SourceExId;
  result.source = "Steam ID: " + game.SourceExId;
  ReportFound(results, kTag, result);
}

// False if the scan ends without its completion line.
bool CheckGames(const GameList& games, ScanResults& results) {
  LogStream() << kTag << " Starting Steam Default ID Search...\n";
  const std::string steamPath = GetDefaultIdSteamPath();
  if (!FileOrFolderExists(steamPath)) {
    LogStream() << kTag << " Steam path not found.\n";
    return false;
  }
  for (const GameSignature& game : games) {
    try {
      CheckGame(steamPath, game, results);
    } catch (...) {
      // A signature that can't be checked costs that signature alone, and is not logged.
    }
  }
  return true;
}

}  // namespace

ScanResults ScanSteamDefaultId(const GameList& games, const std::string&) {
  ScanResults results;
  bool completed = true;
  LogCriticalErrors(kTag, [&] { completed = CheckGames(games, results); });
  if (completed) ReportCompletion(results, kTag);
  return results;
}

bool IsSteamAppInstalled(const std::string& appId) {
  try {
    return ReadRegistryDword("HKEY_CURRENT_USER\\Software\\Valve\\Steam\\Apps\\" + appId, "Installed") == 1;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace tarnwick
