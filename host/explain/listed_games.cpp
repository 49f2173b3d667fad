#include "host/explain/listed_games.h"

#include "foundation/machine/uninstall_key.h"
#include "foundation/text.h"
#include "launchers/agent_log_reader.h"
#include "launchers/appx_manifest_reader.h"
#include "launchers/epic_manifest_reader.h"
#include "launchers/game_data_reader.h"
#include "launchers/json_text_reader.h"
#include "launchers/riot_files_reader.h"
#include "launchers/uplay_configurations_reader.h"
#include "launchers/uwp_packages.h"
#include "steam/app_manifest_reader.h"
#include "steam/shortcuts_reader.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

namespace tarnwick::host {
namespace {

using common::Heard;

// A key that values were asked of, and what it answered.
struct AskedKey {
  std::string key;
  std::map<std::string, std::string> values = {};
};

std::string ValueOf(const AskedKey& key, const std::string& name) {
  const auto found = key.values.find(name);
  return found == key.values.end() ? std::string() : found->second;
}

AskedKey& KeyIn(std::vector<AskedKey>& keys, std::map<std::string, size_t>& index, const std::string& text) {
  const auto [at, isNew] = index.emplace(text, keys.size());
  if (isNew) keys.push_back({text});
  return keys[at->second];
}

void TakeListedValues(AskedKey& key, const std::string& listing) {
  std::istringstream lines(listing);
  for (std::string line; std::getline(lines, line);) {
    const size_t equals = line.find('=');
    if (equals == std::string::npos) continue;
    key.values[line.substr(0, equals)] = std::string(line.substr(equals + 1).c_str());
  }
}

std::vector<AskedKey> AskedKeys(const std::vector<Heard>& heard) {
  std::vector<AskedKey> keys;
  std::map<std::string, size_t> index;
  for (const Heard& one : heard) {
    const QuestionKind kind = one.question.kind;
    if (kind != QuestionKind::kReadValue && kind != QuestionKind::kListValues) continue;
    AskedKey& key = KeyIn(keys, index, PlainKey(one.question.subject));
    if (!one.answer.given) continue;
    if (kind == QuestionKind::kListValues)
      TakeListedValues(key, one.answer.text);
    else
      key.values[one.question.detail] = TextOf(one.answer);
  }
  return keys;
}

// How a launcher keeps its games in the registry: one key for each.
struct RegistryList {
  const char* strategy;
  const char* parent;  // the end of the parent key's text, in lower case
  const char* mark;    // what the key's own name begins with, in lower case
  const char* name;    // the value with the game's name; empty: the key's own
  const char* id;      // the value with its id; empty: the key's own name behind the mark
  std::vector<const char*> leads;
};

constexpr char kGameUx[] = R"(\gameux\games)";
constexpr char kUninstall[] = R"(\currentversion\uninstall)";

const RegistryList kRegistryLists[] = {
    {"Arc Registry Search", R"(\perfect world entertainment\core)", "", "", "", {"Client", "InstallPath"}},
    {"GOG Registry Search", R"(\gog.com\games)", "", "gameName", "", {"exe"}},
    {"Uplay Configuration Search", kUninstall, "uplay install ", "DisplayName", "", {"InstallLocation"}},
    {"Bethesda Registry", kUninstall, "", "DisplayName", "ProductID", {"Path"}},
    {"GameUX Registry Search", kGameUx, "", "Title", "ApplicationId", {"AppExePath", "ConfigGDFBinaryPath"}},
    {"GameUX Info Search", kGameUx, "", "", "", {"AppExePath", "ConfigGdfBinaryPath"}},
    {"UWP/Microsoft Store Scan",
     R"(\appmodel\repository\packages)",
     "",
     "DisplayName",
     "PackageFamilyName",
     {"PackageRootFolder"}},
    {"Steam Games Scan", kUninstall, "steam app ", "DisplayName", "", {"InstallLocation"}},
    {"Steam AppInfo Scan", kUninstall, "steam app ", "DisplayName", "", {"InstallLocation"}},
};

// Of all programs with an Uninstall key only those are Bethesda's that its launcher takes away.
bool BelongsTo(const RegistryList& list, const AskedKey& key) {
  if (std::string(list.strategy) != "Bethesda Registry") return true;
  return ValueOf(key, "UninstallString").find("bethesdanet://uninstall/") != std::string::npos;
}

bool IsBelow(const std::string& key, const char* parent) {
  const size_t separator = key.rfind('\\');
  return separator != std::string::npos && ToLowerBytes(key.substr(0, separator)).ends_with(parent);
}

ListedGame GameOfKey(const RegistryList& list, const AskedKey& key) {
  const std::string own = LastPart(key.key);
  const std::string mark = list.mark;
  ListedGame game{{}, {}, key.key, {}};
  game.name = *list.name == '\0' ? own : ValueOf(key, list.name);
  game.id = *list.id == '\0' ? own.substr(mark.size()) : ValueOf(key, list.id);
  std::erase_if(game.id, [](char byte) { return byte == '{' || byte == '}'; });
  for (const char* lead : list.leads) {
    const std::string path = StripOuterQuotes(ValueOf(key, lead));
    if (!path.empty()) game.leads.push_back(path);
  }
  return game;
}

std::vector<ListedGame> GamesOfKeys(const RegistryList& list, const std::vector<AskedKey>& keys) {
  std::vector<ListedGame> games;
  for (const AskedKey& key : keys) {
    const bool marked = ToLowerBytes(LastPart(key.key)).starts_with(list.mark);
    if (marked && IsBelow(key.key, list.parent) && BelongsTo(list, key))
      games.push_back(GameOfKey(list, key));
  }
  return games;
}

// EA's publishers name the product; the product's Uninstall key has the rest.
std::vector<ListedGame> EaGames(const std::vector<AskedKey>& keys) {
  std::vector<ListedGame> games;
  for (const AskedKey& publisher : keys) {
    const std::string guid = ValueOf(publisher, "Product GUID");
    if (guid.empty()) continue;
    ListedGame game{LastPart(publisher.key), guid, publisher.key, {}};
    for (const AskedKey& key : keys) {
      if (!IsBelow(key.key, kUninstall) || LastPart(key.key) != guid) continue;
      game = {ValueOf(key, "DisplayName"), guid, key.key, {StripOuterQuotes(ValueOf(key, "DisplayIcon"))}};
    }
    games.push_back(game);
  }
  return games;
}

using Games = std::vector<ListedGame>;

std::string FolderOf(const std::string& path) { return path.substr(0, path.find_last_of("\\/")); }

void ReadSteamManifest(const std::string& path, const std::string& bytes, Games& games) {
  std::istringstream text(bytes);
  const SteamManifestInfo manifest = ReadAppManifest(text);
  games.push_back(
      {manifest.name, manifest.appId, path, {FolderOf(path) + "\\common\\" + manifest.installDir}});
}

void ReadSteamShortcuts(const std::string& path, const std::string& bytes, Games& games) {
  std::vector<SteamShortcut> shortcuts;
  ReadShortcuts(bytes, shortcuts);
  for (const SteamShortcut& shortcut : shortcuts)
    games.push_back({shortcut.appName, {}, path, {shortcut.exe}});
}

void ReadUplay(const std::string& path, const std::string& bytes, Games& games) {
  for (const UplayConfigRecord& record : ReadUplayConfigurations(bytes)) {
    if (!record.name.empty()) games.push_back({record.name, record.installId, path, {}});
  }
}

void TakeEpic(const std::string& path, const EpicManifestEntry& entry, Games& games) {
  const std::string& name = entry.DisplayName.empty() ? entry.AppName : entry.DisplayName;
  games.push_back({name, entry.AppName, path, {entry.InstallLocation}});
}

void ReadEpicItem(const std::string& path, const std::string& bytes, Games& games) {
  TakeEpic(path, ReadEpicManifest(bytes), games);
}

void ReadEpicList(const std::string& path, const std::string& bytes, Games& games) {
  for (const std::string_view object : JsonFindObjectArray(bytes, "InstallationList"))
    TakeEpic(path, ReadLauncherInstalledObject(object), games);
}

void ReadMihoyo(const std::string& path, const std::string& bytes, Games& games) {
  std::istringstream text(bytes);
  for (const MihoyoGameEntry& entry : ReadGameData(text, path))
    games.push_back({entry.gameShortcutName, entry.gameBiz, path, {entry.installPath}});
}

void ReadAgent(const std::string& path, const std::string& bytes, Games& games) {
  std::istringstream text(bytes);
  for (const BattleNetGameEntry& entry : ReadAgentLog(text, path))
    games.push_back({{}, entry.gameId, path, {entry.installPath}});
}

void ReadRiot(const std::string& path, const std::string& bytes, Games& games) {
  std::istringstream text(bytes);
  const std::string folder = ReadYamlInstallPath(text, path);
  games.push_back({LastPart(folder), LastPart(FolderOf(path)), path, {folder}});
}

void ReadPackage(const std::string& path, const std::string& bytes, Games& games) {
  const std::string folder = FolderOf(path);
  games.push_back(
      {ParseAppxManifest(bytes).displayName, PackageFamilyNameOf(LastPart(folder)), path, {folder}});
}

// How a launcher keeps its games in files.
struct FileList {
  const char* strategy;
  const char* nameEnd;  // of the file's path, in lower case
  void (*read)(const std::string& path, const std::string& bytes, Games& games);
};

constexpr FileList kFileLists[] = {
    {"Steam Shortcuts Search", "shortcuts.vdf", ReadSteamShortcuts},
    {"Uplay Configuration Search", "configurations", ReadUplay},
    {"Riot Platform Search", ".yaml", ReadRiot},
    {"Mihoyo Platform Search", "gamedata.dat", ReadMihoyo},
    {"Epic Games Scan", ".item", ReadEpicItem},
    {"Epic Games Scan", "launcherinstalled.dat", ReadEpicList},
    {"UWP/Microsoft Store Scan", "appxmanifest.xml", ReadPackage},
    {"Battle.net Search V2", "", ReadAgent},
    {"Steam Games Scan", ".acf", ReadSteamManifest},
};

bool IsReadFile(const Heard& heard) {
  const QuestionKind kind = heard.question.kind;
  return heard.answer.given && (kind == QuestionKind::kReadTextFile || kind == QuestionKind::kReadBinaryFile);
}

void ReadFiles(const FileList& list, const std::vector<Heard>& heard, Games& games) {
  for (const Heard& one : heard) {
    if (IsReadFile(one) && ToLowerBytes(one.question.subject).ends_with(list.nameEnd))
      list.read(one.question.subject, one.answer.text, games);
  }
}

void Append(Games& games, const Games& more) { games.insert(games.end(), more.begin(), more.end()); }

// The same game has the same id in each of a launcher's lists.
const std::string& IdentityOf(const ListedGame& game) {
  if (!game.id.empty()) return game.id;
  return game.name.empty() ? game.place : game.name;
}

}  // namespace

std::vector<ListedGame> ListedGames(const std::string& strategy, const std::vector<Heard>& heard) {
  const std::vector<AskedKey> keys = AskedKeys(heard);
  Games games;
  for (const RegistryList& list : kRegistryLists) {
    if (strategy == list.strategy) Append(games, GamesOfKeys(list, keys));
  }
  if (strategy == "EA Registry Search") Append(games, EaGames(keys));
  for (const FileList& list : kFileLists) {
    if (strategy == list.strategy) ReadFiles(list, heard, games);
  }
  return games;
}

size_t CountGames(const std::vector<ListedGame>& listed) {
  std::set<std::string> identities;
  for (const ListedGame& game : listed) identities.insert(IdentityOf(game));
  return identities.size();
}

std::vector<ListedGame> UninstallEntries(const std::vector<Heard>& heard) {
  const RegistryList list = {"", kUninstall, "", "DisplayName", "", {"InstallLocation", "DisplayIcon"}};
  Games games = GamesOfKeys(list, AskedKeys(heard));
  std::erase_if(games, [](const ListedGame& game) { return game.name.empty(); });
  return games;
}

std::string TextOf(const Answer& answer) { return answer.text.c_str(); }

std::string PlainKey(const std::string& key) { return TrimTrailingSeparators(key); }

std::string LastPart(const std::string& path) { return path.substr(path.find_last_of("\\/") + 1); }

}  // namespace tarnwick::host
