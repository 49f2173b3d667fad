#include "host/catalogue/import.h"

#include "desktop/description.h"
#include "host/catalogue/merge.h"
#include "support/file_bytes.h"
#include "support/steam_bytes.h"
#include "support/steam_world.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>

namespace tarnwick::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using tests::AppInfoBytes;
using tests::SteamWorld;

const std::string kSteam = R"(C:\TarnwickTest\Import\Steam)";
const std::string kAppInfo = kSteam + R"(\appcache\appinfo.vdf)";

struct World : SteamWorld {
  AppInfoBytes bytes{41, {}};
  World() : SteamWorld{kSteam} { RegisterSteam(); }
  void Cache(const std::string& records) { d.File(kAppInfo, bytes.File(records)); }
  std::string App(const std::string& type, const std::string& name, const std::string& folder,
                  const std::string& exe) {
    return bytes.Section(
               "appinfo",
               bytes.Section("common", bytes.Text("name", name) + bytes.Text("type", type)) +
                   bytes.Section(
                       "config",
                       bytes.Text("installdir", folder) +
                           bytes.Section("launch", bytes.Section("0", bytes.Text("executable", exe))))) +
           '\x08';
  }
};

TEST(HostCatalogueImport, TakesEveryGameOfSteamsCacheWithItsProgramAndFolder) {
  World world;
  world.Cache(world.bytes.Record(70, world.App("game", "Wren", "Wren Folder", "bin/wren.exe")));
  const Import import = ImportSteam();
  ASSERT_THAT(import.games, SizeIs(1));
  const GameSignature& game = import.games[0];
  EXPECT_EQ(RecordTitle(game), "STEAM 70 Wren");
  EXPECT_EQ(game.DefaultExe, "bin\\wren.exe");
  EXPECT_EQ(game.DefaultFolder, R"(C:\Program Files (x86)\Steam\steamapps\common\Wren Folder)");
  EXPECT_THAT(import.left, IsEmpty());
}

TEST(HostCatalogueImport, SaysWhatOfSteamsCacheIsLeftAndWhy) {
  World world;
  const auto record = [&](uint32_t id, const char* type, const char* name, const char* folder,
                          const char* exe) {
    return world.bytes.Record(id, world.App(type, name, folder, exe));
  };
  world.Cache(record(1, "Tool", "A", "a", "a.exe") + record(2, "", "A", "a", "a.exe") +
              record(3, "Game", "", "a", "a.exe") + record(4, "Game", "A", "a", "a.sh") +
              record(5, "Game", "A", "", "a.exe") + record(6, "Game", "A\x01", "a", "a.exe") +
              record(7, "GAME", "Owl", "owl", "owl.EXE"));
  const Import import = ImportSteam();
  ASSERT_THAT(import.games, SizeIs(1));
  EXPECT_EQ(import.games[0].DisplayName, "Owl");
  EXPECT_THAT(import.left, ElementsAre(Pair("no game: tool", 1), Pair("no install folder", 1),
                                       Pair("no name", 1), Pair("no program for Windows", 1),
                                       Pair("no type told", 1), Pair("text that no catalogue can hold", 1)));
}

TEST(HostCatalogueImport, AnAppThatNestsWithoutEndCostsItselfAlone) {
  World world;
  std::string nested;
  for (int i = 0; i < 200'000; ++i) nested += '\0' + world.bytes.Key("a");
  const std::string good = world.App("game", "Wren", "Wren", "wren.exe");
  world.Cache(world.bytes.Record(70, good) + world.bytes.Record(71, nested) + world.bytes.Record(72, nested) +
              world.bytes.Record(73, good));
  const Import import = ImportSteam();
  EXPECT_THAT(import.games, SizeIs(2));
  EXPECT_THAT(import.left, ElementsAre(Pair("nested too deep to be read", 2)));
}

TEST(HostCatalogueImport, ASteamThatIsMissingOrEmptyIsAFaultOfOneLine) {
  EXPECT_THROW(ImportSteam(), std::runtime_error);
  World world;
  EXPECT_THROW(ImportSteam(), std::runtime_error);
  world.Cache("");
  EXPECT_THROW(ImportSteam(), std::runtime_error);
}

ScanResult Result(const std::string& name, const std::string& exe, const std::string& url,
                  const std::string& source) {
  ScanResult result;
  result.name = name;
  result.exePath = exe;
  result.launchUrl = url;
  result.source = source;
  return result;
}

GameSignature Only(const ScanResult& result) {
  const Import import = RecordsOfResults({result});
  if (import.games.size() != 1) throw std::runtime_error("no record");
  return import.games[0];
}

TEST(HostCatalogueImport, EachLaunchersResultMakesARecordThatFindsItAgain) {
  const GameSignature steam = Only(
      Result("Wren", R"(D:\Lib\SteamApps\common\Wren\bin\w.exe)", "steam://run/70", "Steam AppInfo: 70"));
  EXPECT_EQ(RecordTitle(steam), "STEAM 70 Wren");
  EXPECT_EQ(steam.DefaultFolder + "|" + steam.DefaultExe,
            R"(C:\Program Files (x86)\Steam\steamapps\common\Wren|bin\w.exe)");
  const GameSignature gog = Only(Result("Owl", R"(C:\GOG\owl.exe)", "goggalaxy://openGameView/9",
                                        R"(GOG Registry: HKEY_LOCAL_MACHINE\SOFTWARE\GOG.com\Games\9)"));
  EXPECT_EQ(RecordTitle(gog), "GOG 9 Owl");
  EXPECT_EQ(gog.RegistryKey + "|" + gog.RegistryPathKeyName,
            R"(HKEY_LOCAL_MACHINE\SOFTWARE\GOG.com\Games\9|exe)");
  const GameSignature ea = Only(Result("Lark", R"(C:\EA\lark.exe)", "origin2://game/launch?offerIds={A-B}",
                                       R"(EA Registry: HKEY_LOCAL_MACHINE\X\{A-B})"));
  EXPECT_EQ(ea.GameGUID + "|" + ea.RegistryPathKeyName + "|" + ea.DefaultExe, "A-B|DisplayIcon|lark.exe");
  const GameSignature store =
      Only(Result("Rook", R"(C:\Program Files\WindowsApps\Rook_1_x64__abc\bin\rook.exe)",
                  R"(shell:AppsFolder\Rook_abc!App)", "Microsoft Store (UWP)"));
  EXPECT_EQ(store.GameInfo + "|" + store.DefaultExe, R"(Rook_abc|bin\rook.exe)");
  const GameSignature arc =
      Only(Result("Crow", R"(C:\Arc\crow.exe)", "", R"(Arc: HKEY_LOCAL_MACHINE\Arc\1)"));
  EXPECT_EQ(arc.RegistryKey + "|" + arc.DefaultExe, R"(HKEY_LOCAL_MACHINE\Arc\1|crow.exe)");
}

TEST(HostCatalogueImport, ResultsThatNoLauncherReportsOrThatTellTooLittleAreCounted) {
  const ScanResult steam = Result("W", R"(D:\steamapps\common\W\w.exe)", "steam://run/70", "Steam App 70");
  const Import import = RecordsOfResults({steam, steam, Result("A", R"(C:\a.exe)", "", "Steam Shortcuts"),
                                          Result("B", R"(C:\b.exe)", "steam://run/71", "Steam App 71"),
                                          Result("", R"(C:\b.exe)", "", "Arc: HKEY_LOCAL_MACHINE\\A")});
  EXPECT_THAT(import.games, SizeIs(1));
  EXPECT_THAT(import.left,
              ElementsAre(Pair("not told well enough to be found again", 2),
                          Pair("reported by no launcher", 1), Pair("reported more than once", 1)));
}

TEST(HostCatalogueImport, TakesWhatTheLaunchersOfADesktopReport) {
  desktop::Desktop world;
  ApplyDescription(world, tests::ReadSource("desktop/samples/sample-desktop.json"));
  std::vector<std::string> titles;
  for (const GameSignature& game : ImportInstalled().games) titles.push_back(RecordTitle(game));
  std::ranges::sort(titles);
  EXPECT_THAT(titles, ElementsAre("ARC JadeCaravan", "ARC Thornbridge Online",
                                  "EA {1F0E1C00-0000-4000-8000-0000000000EA} Ivory Compass",
                                  "EA {5117E400-0000-4000-8000-0000000000EA} Silver Paddock",
                                  "EPIC DriftFerry DriftFerry", "EPIC glassmeridian Glass Meridian",
                                  "EPIC wrenfall Wrenfall", "GOG 1900000001 Candlemark Saga",
                                  "GOG 1900000002 Ivory Compass", "STEAM 9000010 Brasswater",
                                  "STEAM 9000020 Hollow Orchard", "STEAM 9000050 Paperlight",
                                  "UPLAY 90017 Rampart of Ash", "UWP Lumen Drops", "UWP Petrel Bay"));
}

}  // namespace
}  // namespace tarnwick::host
