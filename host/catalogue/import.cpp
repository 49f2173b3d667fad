// Edge: what this machine knows, as records.
#include "host/catalogue/import.h"

#include "common/catalogue_text.h"
#include "common/xml_text.h"
#include "core/strategy_runner.h"
#include "foundation/seh_guard.h"
#include "foundation/text.h"
#include "launchers/epic_games_scan.h"
#include "matching/registry.h"
#include "steam/app_info_file.h"
#include "steam/steam_folders.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "host/catalogue/merge.h"

namespace tarnwick::host {
namespace {

const std::string kSteamLibrary = R"(C:\Program Files (x86)\Steam\steamapps\common\)";

std::string WithBackslashes(std::string path) {
  std::ranges::replace(path, '/', '\\');
  return path;
}

bool IsExe(const std::string& path) { return ToLowerBytes(path).ends_with(".exe"); }

bool CanBeWritten(const GameSignature& game) {
  return std::ranges::all_of(common::CatalogueElements(), [&](const CatalogueElement& element) {
    return common::FindNoXml(common::ElementText(game, element)) == std::string::npos;
  });
}

void Take(Import& import, GameSignature game) {
  if (!CanBeWritten(game)) {
    ++import.left["text that no catalogue can hold"];
  } else {
    import.games.push_back(std::move(game));
  }
}

// ---- Steam's cache.

// Why an app is none to import, or an empty text.
std::string WhyLeft(const AppInfoDetails& app) {
  if (ToLowerBytes(app.type) != "game")
    return app.type.empty() ? "no type told" : "no game: " + ToLowerBytes(app.type);
  if (app.name.empty()) return "no name";
  if (!IsExe(app.executable)) return "no program for Windows";
  return app.installDir.empty() ? "no install folder" : std::string();
}

GameSignature SteamRecord(const AppInfoDetails& app) {
  GameSignature game;
  game.SourceKind = kSourceSteam;
  game.DisplayName = app.name;
  game.SourceExId = std::to_string(app.appId);
  game.DefaultExe = TrimLeadingSeparators(WithBackslashes(app.executable));
  game.DefaultFolder = kSteamLibrary + app.installDir;
  return game;
}

void TakeApp(Import& import, SteamAppInfoReader& reader, uint32_t id) {
  AppInfoDetails app;
  if (!ReadAppDetails(reader, id, app)) {
    ++import.left["not readable"];
  } else if (const std::string why = WhyLeft(app); !why.empty()) {
    ++import.left[why];
  } else {
    Take(import, SteamRecord(app));
  }
}

// Nesting in the cache may overflow the stack, and a thread's stack survives that once: each overflow costs its
// app and a thread.
void TakeApps(Import& import, SteamAppInfoReader& reader, const std::vector<uint32_t>& ids) {
  for (size_t at = 0; at < ids.size(); ++at) {
    uint32_t fault = 0;
    std::thread([&] {
      fault = RunGuarded([&] {
        for (; at < ids.size(); ++at) TakeApp(import, reader, ids[at]);
      });
    }).join();
    if (fault != 0) ++import.left["nested too deep to be read"];
  }
}

// ---- What a scan found.

// The path below a folder, in any letter case; empty if it doesn't lie there.
std::string Below(const std::string& path, const std::string& folder) {
  const std::string root = TrimTrailingSeparators(WithBackslashes(folder)) + "\\";
  const std::string whole = WithBackslashes(path);
  return root.size() > 1 && ToLowerBytes(whole).starts_with(ToLowerBytes(root)) ? whole.substr(root.size())
                                                                                : std::string();
}

std::string FileName(const std::string& path) { return path.substr(path.find_last_of("\\/") + 1); }

// Between two texts, of which the first begins the whole; empty where that isn't so.
std::string Between(const std::string& whole, std::string_view from, std::string_view to) {
  if (!whole.starts_with(from)) return {};
  const size_t end = to.empty() ? whole.size() : whole.find(to, from.size());
  return end == whole.npos ? std::string() : whole.substr(from.size(), end - from.size());
}

// Each of these fills in what a launcher's record is found by again. False if the result isn't the launcher's,
// or doesn't tell enough.
using FillIn = bool (*)(GameSignature& game, const ScanResult& result);

bool FillInSteam(GameSignature& game, const ScanResult& result) {
  constexpr std::string_view kCommon = "\\steamapps\\common\\";
  game.SourceExId = Between(result.launchUrl, "steam://run/", "");
  const std::string path = WithBackslashes(result.exePath);
  const size_t common = ToLowerBytes(path).find(kCommon);
  if (game.SourceExId.empty() || common == path.npos) return false;
  const size_t folder = common + kCommon.size();
  const size_t below = path.find('\\', folder);
  if (below == path.npos) return false;
  game.DefaultFolder = kSteamLibrary + path.substr(folder, below - folder);
  game.DefaultExe = path.substr(below + 1);
  return true;
}

bool FillInGog(GameSignature& game, const ScanResult& result) {
  game.SourceExId = Between(result.launchUrl, "goggalaxy://openGameView/", "");
  game.RegistryKey = Between(result.source, "GOG Registry: ", "");
  game.RegistryPathKeyName = "exe";
  game.DefaultExe = FileName(result.exePath);
  return !game.SourceExId.empty();
}

bool FillInEa(GameSignature& game, const ScanResult& result) {
  game.SourceExId = Between(result.launchUrl, "origin2://game/launch?offerIds=", "");
  game.RegistryKey = Between(result.source, "EA Registry: ", "");
  game.RegistryPathKeyName = "DisplayIcon";
  game.GameGUID = TrimCharacters(game.SourceExId, "{}");
  game.DefaultExe = FileName(result.exePath);
  return !game.SourceExId.empty();
}

bool FillInUplay(GameSignature& game, const ScanResult& result) {
  game.SourceExId = Between(result.launchUrl, "uplay://launch/", "/");
  game.RegistryKey = result.source;
  game.RegistryPathKeyName = "InstallLocation";
  game.DefaultExe = Below(result.exePath, ReadRegistryString(result.source, "InstallLocation", ""));
  return !game.SourceExId.empty() && !game.DefaultExe.empty();
}

bool FillInStore(GameSignature& game, const ScanResult& result) {
  game.GameInfo = Between(result.launchUrl, "shell:AppsFolder\\", "!");
  const std::string inPackages = Below(result.exePath, R"(C:\Program Files\WindowsApps)");
  const size_t package = inPackages.find('\\');
  if (package != inPackages.npos) game.DefaultExe = inPackages.substr(package + 1);
  return !game.GameInfo.empty();
}

bool FillInArc(GameSignature& game, const ScanResult& result) {
  game.RegistryKey = Between(result.source, "Arc: ", "");
  game.DefaultExe = FileName(result.exePath);
  return !game.RegistryKey.empty();
}

// The launcher's own list has the id that its results don't tell.
bool FillInEpic(GameSignature& game, const ScanResult& result) {
  const std::string data = GetEpicDataPath();
  std::vector<EpicManifestEntry> entries = ReadEpicManifests(data + "\\Manifests");
  std::ranges::move(ReadLauncherInstalledDat(data), std::back_inserter(entries));
  for (const EpicManifestEntry& entry : entries) {
    game.DefaultExe = Below(result.exePath, entry.InstallLocation);
    if (game.DefaultExe.empty() || entry.AppName != entry.MainGameAppName) continue;
    game.SourceExId = entry.AppName;
    game.LaunchUrl = BuildEpicLaunchUrl(entry.AppName);
    return true;
  }
  return false;
}

struct Launcher {
  std::string_view source;  // how its results' texts begin
  int32_t kind;
  FillIn fillIn;
};
constexpr Launcher kLaunchers[] = {
    {"Steam App", kSourceSteam, FillInSteam},
    {"Steam ID: ", kSourceSteam, FillInSteam},
    {"GOG Registry: ", kSourceGog, FillInGog},
    {"EA Registry: ", kSourceEa, FillInEa},
    {"Epic Games Launcher", kSourceEpic, FillInEpic},
    {"Microsoft Store (UWP)", kSourceUwp, FillInStore},
    {"Arc: ", kSourceArc, FillInArc},
    {"HKEY_LOCAL_MACHINE\\", kSourceUplay, FillInUplay},
};

void TakeResult(Import& import, const ScanResult& result) {
  const auto* const launcher = std::ranges::find_if(
      kLaunchers, [&](const Launcher& row) { return result.source.starts_with(row.source); });
  if (launcher == std::end(kLaunchers)) {
    ++import.left["reported by no launcher"];
    return;
  }
  GameSignature game;
  game.SourceKind = launcher->kind;
  game.DisplayName = result.name;
  if (result.name.empty() || !launcher->fillIn(game, result)) {
    ++import.left["not told well enough to be found again"];
  } else {
    Take(import, std::move(game));
  }
}

}  // namespace

Import ImportSteam() {
  std::string steam = GetAppInfoSteamPath();
  if (steam.empty()) steam = GetSteamInstallPath();
  if (steam.empty()) throw std::runtime_error("the registry names no Steam; install it, or run it once");
  SteamAppInfoReader reader;
  if (!LoadAppInfoIndex(reader, steam)) throw std::runtime_error("can't open " + reader.filePath);
  if (reader.index.empty()) throw std::runtime_error(reader.filePath + " holds no app; start Steam once");
  std::vector<uint32_t> ids;
  for (const auto& [id, entry] : reader.index) ids.push_back(id);
  Import import;
  TakeApps(import, reader, ids);
  return import;
}

Import RecordsOfResults(const ScanResults& results) {
  Import import;
  for (const ScanResult& result : results) TakeResult(import, result);
  MergedCatalogue merged = MergeCatalogues(import.games, {});
  const size_t again = import.games.size() - merged.games.size();
  if (again > 0) import.left["reported more than once"] = again;
  import.games = std::move(merged.games);
  return import;
}

Import ImportInstalled() { return RecordsOfResults(RunStrategies({}, ScanStrategies)); }

}  // namespace tarnwick::host
