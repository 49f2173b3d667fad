#include "steam/steam_games_scan.h"

#include "foundation/conversions.h"
#include "foundation/windows_api.h"
#include "matching/registry.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/steam_world.h"
#include "support/uninstall_key.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <set>

namespace tarnwick {
namespace {

using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::DebugCapture;
using tests::SteamSignature;
using tests::SteamWorld;

const std::string kRoot = R"(C:\TarnwickTest\SteamGames)";
const std::string kSteam = kRoot + R"(\Steam)";

std::string UninstallCount() {
  std::set<std::string> names;
  for (const RegistryView view : {RegistryView::k32, RegistryView::k64}) {
    for (const std::string& name : EnumRegistrySubKeys(tests::kUninstallKey, view)) names.insert(name);
  }
  return "[Steam] Found " + std::to_string(names.size()) + " uninstall registry entries";
}

// The log between the frame lines.
std::vector<std::string> ScanLog(const GameList& games) {
  const DebugCapture log;
  ScanSteamGames(games, "");
  std::vector<std::string> lines = log.Lines();
  lines.erase(lines.begin(), lines.begin() + 2);
  lines.pop_back();
  return lines;
}

SignatureIndex ById(const GameSignature& game) { return {{game.SourceExId, game}}; }

std::vector<std::string> Scan(const GameList& games) {
  return tests::Describe(ScanSteamGames(games, "S-1-5-21"));
}

// What is made of a game that an Uninstall key names, and of one in a library.
std::string FromKey(const std::string& name, const std::string& exe, const std::string& id,
                    const std::string& words = "Steam App ") {
  return name + '|' + exe + "|steam://run/" + id + '|' + tests::kUninstallKey + words + id + "||1|0|";
}
std::string FromLibrary(const std::string& name, const std::string& exe, const std::string& id) {
  return name + '|' + exe + "|steam://run/" + id + "|Steam App " + id + "||1|0|";
}

// --- The scan's frame

TEST(SteamGamesScan, WithoutSteamTheRegistryPassStillRuns) {
  SteamWorld world{kSteam};
  const std::string folder = kRoot + "\\Game";
  world.d.File(folder + "\\g.exe");
  world.UninstallKey("Steam App 400", "Game", folder);
  const DebugCapture log;
  EXPECT_THAT(Scan({SteamSignature("400", "Catalogue", "g.exe")}),
              ElementsAre(FromKey("Game", folder + "\\g.exe", "400")));
  EXPECT_THAT(log.Lines(), ElementsAre("[Steam] Starting Steam game scan...", UninstallCount(),
                                       "[Steam] Found (Registry): Game (ID: 400) -> " + folder + "\\g.exe",
                                       "[Steam] Scan completed! Found 1 games."));
}

TEST(SteamGamesScan, ALibraryGameHasTheCataloguesName) {
  SteamWorld world{kSteam};
  world.RegisterSteam();
  const std::string folder = world.Game(kSteam, "400", "Manifest®", "Portal", "portal.exe");
  const DebugCapture log;
  EXPECT_THAT(Scan({SteamSignature("400", "Catalogue®", "portal.exe")}),
              ElementsAre(FromLibrary("Catalogue®", folder + "\\portal.exe", "400")));
  EXPECT_THAT(log.Lines(),
              ElementsAre("[Steam] Starting Steam game scan...", UninstallCount(),
                          "[Steam] Found 1 library folders.", "[Steam] Found 1 games in library folders.",
                          "[Steam] Found (Library): Catalogue® (ID: 400) -> " + folder + "\\portal.exe",
                          "[Steam] Scan completed! Found 1 games."));
}

TEST(SteamGamesScan, TheCataloguesNameCountsEvenWhenEmpty) {
  SteamWorld world{kSteam};
  world.RegisterSteam();
  const std::string folder = world.Game(kSteam, "400", "Manifest", "Portal", "portal.exe");
  EXPECT_THAT(Scan({SteamSignature("400", "", "portal.exe")}),
              ElementsAre(FromLibrary("", folder + "\\portal.exe", "400")));
}

TEST(SteamGamesScan, NothingAtAllLogsTheFrame) {
  const DebugCapture log;
  EXPECT_THAT(Scan({}), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre("[Steam] Starting Steam game scan...", UninstallCount(),
                                       "[Steam] Scan completed! Found 0 games."));
}

TEST(SteamGamesScan, OnlySteamSignaturesWithAnIdCountAndTheLaterReplacesTheEarlier) {
  SteamWorld world{kSteam};
  world.RegisterSteam();
  const std::string folder = world.Game(kSteam, "400", "m", "Portal", "portal.exe");
  GameSignature other = SteamSignature("400", "Not Steam", "portal.exe");
  other.SourceKind = kSourceEpic;
  EXPECT_THAT(Scan({other}), IsEmpty());
  EXPECT_THAT(
      Scan({SteamSignature("400", "Earlier", "portal.exe"), SteamSignature("400", "Later", "portal.exe"),
            SteamSignature("", "No Id", "portal.exe"), other}),
      ElementsAre(FromLibrary("Later", folder + "\\portal.exe", "400")));
}

// --- The registry pass

// What the registry pass makes of a key of this name, whose game exists and is in the catalogue under `id`.
std::vector<std::string> ScanKey(const std::string& name, const std::string& id) {
  SteamWorld world{kSteam};
  const std::string folder = kRoot + "\\Game";
  world.d.File(folder + "\\g.exe");
  world.UninstallKey(name, "Game", folder);
  return Scan({SteamSignature(id, "Catalogue", "g.exe")});
}
std::string KeysGame(const std::string& id, const std::string& words = "Steam App ") {
  return FromKey("Game", kRoot + "\\Game\\g.exe", id, words);
}

TEST(SteamGamesScan, AKeyInLowerCaseMatchesAndKeepsItsSpelling) {
  EXPECT_THAT(ScanKey("steam app 400", "400"), ElementsAre(KeysGame("400", "steam app ")));
}

TEST(SteamGamesScan, TextBeforeTheWordsMatches) {
  EXPECT_THAT(ScanKey("MySteam App 400", "400"), ElementsAre(KeysGame("400", "MySteam App ")));
}

TEST(SteamGamesScan, TheCharacterBehindTheWordsIsSkippedWhateverItIs) {
  EXPECT_THAT(ScanKey("Steam App_400", "400"), ElementsAre(KeysGame("400", "Steam App_")));
  EXPECT_THAT(ScanKey("Steam App9400", "400"), ElementsAre(KeysGame("400", "Steam App9")));
}

TEST(SteamGamesScan, TheIdKeepsTheKeysSpelling) {
  EXPECT_THAT(ScanKey("STEAM APP 12x", "12x"), ElementsAre(KeysGame("12x", "STEAM APP ")));
  EXPECT_THAT(ScanKey("Steam App 12x", "12X"), IsEmpty());
}

TEST(SteamGamesScan, AKeyThatEndsBehindTheBlankOrBeforeItHasNoId) {
  EXPECT_THAT(ScanKey("Steam App ", ""), IsEmpty());
  EXPECT_THAT(ScanKey("Steam App", ""), IsEmpty());
  EXPECT_THAT(ScanKey("Steam App4", "4"), IsEmpty()) << "ten bytes: no room for an id";
  EXPECT_THAT(ScanKey("Steam App 4", "4"), ElementsAre(KeysGame("4")));
  EXPECT_THAT(ScanKey("Steam Ap", ""), IsEmpty());
}

TEST(SteamGamesScan, ThreeAppsOfSteamsOwnAreSkippedInBothPasses) {
  for (const std::string id : {"228980", "250820", "205790"}) {
    EXPECT_THAT(ScanKey("Steam App " + id, id), IsEmpty()) << id;
    SteamWorld world{kSteam};
    world.RegisterSteam();
    world.Game(kSteam, id, "Redist", "Redist", "g.exe");
    EXPECT_THAT(ScanLog({SteamSignature(id, "Redist", "g.exe")}),
                ElementsAre("[Steam] Found 1 library folders.", "[Steam] Found 1 games in library folders."))
        << id;
  }
}

TEST(SteamGamesScan, TheIgnoredIdsAreComparedWhole) {
  EXPECT_THAT(ScanKey("Steam App 2289801", "2289801"), ElementsAre(KeysGame("2289801")));
  EXPECT_THAT(ScanKey("Steam App 22898", "22898"), ElementsAre(KeysGame("22898")));
}

TEST(SteamGamesScan, ARegistryKeyNeedsNameAndLocation) {
  for (const std::string missing : {"DisplayName", "InstallLocation"}) {
    SteamWorld world{kSteam};
    const std::string folder = kRoot + "\\Game";
    world.d.File(folder + "\\g.exe");
    world.UninstallKey("Steam App 400", missing == "DisplayName" ? "" : "Game",
                       missing == "InstallLocation" ? "" : folder);
    EXPECT_THAT(Scan({SteamSignature("400", "c", "g.exe")}), IsEmpty()) << missing;
  }
}

TEST(SteamGamesScan, ALocationThatIsNoFolderIsPassedOver) {
  SteamWorld world{kSteam};
  world.d.File(kRoot + "\\Game\\g.exe");
  world.UninstallKey("Steam App 400", "Game", kRoot + "\\Gone");
  world.UninstallKey("Steam App 401", "Game", kRoot + "\\Game\\g.exe");
  EXPECT_THAT(ScanLog({SteamSignature("400", "c", "g.exe"), SteamSignature("401", "c", "g.exe")}), IsEmpty());
}

TEST(SteamGamesScan, TheLocationIsTestedByTheNarrowCall) {
  // UTF-8 bytes given to the ANSI call name this folder only where UTF-8 is the code page.
  SteamWorld world{kSteam};
  const std::string folder = kRoot + "\\Игра 游戏";
  world.d.File(folder + "\\g.exe");
  world.UninstallKey("Steam App 400", "Game", folder);
  EXPECT_THAT(ScanSteamGames({SteamSignature("400", "c", "g.exe")}, ""), SizeIs(GetACP() == CP_UTF8 ? 1 : 0));
}

TEST(SteamGamesScan, ALibraryOfANonAsciiNameIsFound) {
  SteamWorld world{kRoot + "\\Пар 蒸 é"};
  world.RegisterSteam();
  const std::string folder = world.Game(world.steam, "400", "Игра", "Игра 一", "bin\\игра é.exe");
  EXPECT_THAT(Scan({SteamSignature("400", "Игра!", "bin\\игра é.exe")}),
              ElementsAre(FromLibrary("Игра!", folder + "\\bin\\игра é.exe", "400")));
}

TEST(SteamGamesScan, TrademarkSignsGoFromARegistryName) {
  SteamWorld world{kSteam};
  world.d.File(kRoot + "\\Game\\g.exe");
  world.UninstallKey("Steam App 400", "Gäme™ Two®", kRoot + "\\Game");
  EXPECT_THAT(Scan({SteamSignature("400", "c", "g.exe")}),
              ElementsAre(FromKey("Gäme Two", kRoot + "\\Game\\g.exe", "400")));
}

TEST(SteamGamesScan, AGameOutsideTheCatalogueIsSilentInTheRegistryPass) {
  SteamWorld world{kSteam};
  world.d.File(kRoot + "\\Game\\g.exe");
  world.UninstallKey("Steam App 400", "Game", kRoot + "\\Game");
  EXPECT_THAT(ScanLog({}), IsEmpty());
  EXPECT_THAT(ScanLog({SteamSignature("400", "c", "other.exe")}), IsEmpty());
}

TEST(SteamGamesScan, TheThirtyTwoBitNamesComeFirst) {
  SteamWorld world{kSteam};
  world.d.File(kRoot + "\\A\\g.exe");
  world.d.File(kRoot + "\\B\\g.exe");
  world.UninstallKey("Steam App 1", "a", kRoot + "\\A", View::k64);
  world.UninstallKey("Steam App 2", "b", kRoot + "\\B", View::k32);
  EXPECT_THAT(Scan({SteamSignature("1", "c", "g.exe"), SteamSignature("2", "c", "g.exe")}),
              ElementsAre(FromKey("b", kRoot + "\\B\\g.exe", "2"), FromKey("a", kRoot + "\\A\\g.exe", "1")));
}

TEST(SteamGamesScan, ANameInBothViewsIsTakenOnceAndReadFromTheNativeView) {
  SteamWorld world{kSteam};
  world.d.File(kRoot + "\\A\\g.exe");
  world.d.File(kRoot + "\\B\\g.exe");
  world.UninstallKey("Steam App 1", "a", kRoot + "\\A", View::k64);
  world.UninstallKey("Steam App 1", "b", kRoot + "\\B", View::k32);
  EXPECT_THAT(Scan({SteamSignature("1", "c", "g.exe")}),
              ElementsAre(FromKey("a", kRoot + "\\A\\g.exe", "1")));
}

TEST(SteamGamesScan, AnExecutableOfTwoKeysIsReportedOnce) {
  SteamWorld world{kSteam};
  world.d.File(kRoot + "\\A\\g.exe");
  world.UninstallKey("Steam App 1", "a", kRoot + "\\A");
  world.UninstallKey("Steam App 2", "b", kRoot + "\\A");
  EXPECT_THAT(ScanLog({SteamSignature("1", "c", "g.exe"), SteamSignature("2", "c", "g.exe")}),
              ElementsAre("[Steam] Found (Registry): a (ID: 1) -> " + kRoot + "\\A\\g.exe"));
}

TEST(SteamGamesScan, SeenExecutablesAreComparedAsTheyAreSpelled) {
  SteamWorld world{kSteam};
  world.d.File(kRoot + "\\A\\g.exe");
  world.UninstallKey("Steam App 1", "a", kRoot + "\\A");
  world.UninstallKey("Steam App 2", "b", kRoot + "\\a");
  EXPECT_THAT(Scan({SteamSignature("1", "c", "g.exe"), SteamSignature("2", "c", "g.exe")}),
              ElementsAre(FromKey("a", kRoot + "\\A\\g.exe", "1"), FromKey("b", kRoot + "\\a\\g.exe", "2")));
}

TEST(SteamGamesScan, AGameInBothPassesIsTheRegistrys) {
  SteamWorld world{kSteam};
  world.RegisterSteam();
  const std::string folder = world.Game(kSteam, "400", "Manifest", "Portal", "portal.exe");
  world.UninstallKey("Steam App 400", "Registry", folder);
  const DebugCapture log;
  EXPECT_THAT(Scan({SteamSignature("400", "Catalogue", "portal.exe")}),
              ElementsAre(FromKey("Registry", folder + "\\portal.exe", "400")));
  EXPECT_THAT(log.Lines(),
              ElementsAre("[Steam] Starting Steam game scan...", UninstallCount(),
                          "[Steam] Found (Registry): Registry (ID: 400) -> " + folder + "\\portal.exe",
                          "[Steam] Found 1 library folders.", "[Steam] Found 1 games in library folders.",
                          "[Steam] Scan completed! Found 1 games."));
}

// --- The library pass

TEST(SteamGamesScan, AnAppWithoutAnExecutableIsSkippedWithALine) {
  SteamWorld world{kSteam};
  world.RegisterSteam();
  world.Game(kSteam, "400", "Known", "Portal", "portal.exe");
  world.Game(kSteam, "401", "Unknown", "Other", "o.exe");
  EXPECT_THAT(ScanLog({SteamSignature("400", "c", "")}),
              ElementsAre("[Steam] Found 1 library folders.", "[Steam] Found 2 games in library folders.",
                          "[Steam] Found (Library-Dynamic): Known (ID: 400) -> No Exe (Skipping)",
                          "[Steam] Found (Library-Dynamic): Unknown (ID: 401) -> No Exe (Skipping)"));
}

TEST(SteamGamesScan, SteamsOwnFolderStandingInTheFileGivesItsGamesOnce) {
  SteamWorld world{kSteam};
  world.RegisterSteam();
  const std::string other = kRoot + "\\Library 2";
  const auto doubled = [](std::string path) {
    for (size_t i = path.find('\\'); i != std::string::npos; i = path.find('\\', i + 2))
      path.insert(i, 1, '\\');
    return path;
  };
  world.d.File(kSteam + "\\steamapps\\libraryfolders.vdf", "\"libraryfolders\"\n{\n\"path\" \"" +
                                                               doubled(kSteam) + "\"\n\"path\" \"" +
                                                               doubled(other) + "\"\n}\n");
  const std::string first = world.Game(kSteam, "400", "a", "A", "a.exe");
  const std::string second = world.Game(other, "500", "b", "B", "b.exe");
  EXPECT_THAT(ScanLog({SteamSignature("400", "A", "a.exe"), SteamSignature("500", "B", "b.exe")}),
              ElementsAre("[Steam] Found 3 library folders.", "[Steam] Found 3 games in library folders.",
                          "[Steam] Found (Library): A (ID: 400) -> " + first + "\\a.exe",
                          "[Steam] Found (Library): B (ID: 500) -> " + second + "\\b.exe"));
}

TEST(SteamGamesScan, TheUsersSteamWithSlashesWorks) {
  SteamWorld world{kSteam};
  world.d.String(R"(HKEY_CURRENT_USER\SOFTWARE\Valve\Steam)", "SteamPath",
                 "c:/tarnwicktest/steamgames/steam");
  world.Game(kSteam, "400", "m", "Portal", "portal.exe");
  EXPECT_THAT(ScanSteamGames({SteamSignature("400", "c", "portal.exe")}, ""), SizeIs(1));
}

// --- GetSteamLibraryFolders, ParseLibraryFoldersVdf

TEST(SteamGamesScan, WithoutAListSteamsFolderIsTheOnlyLibrary) {
  desktop::Desktop d;
  d.Folder(kSteam);
  EXPECT_THAT(GetSteamLibraryFolders(kSteam), ElementsAre(kSteam));
  d.Folder(kSteam + "\\steamapps\\libraryfolders.vdf");
  EXPECT_THAT(GetSteamLibraryFolders(kSteam), ElementsAre(kSteam)) << "a folder is no list";
}

TEST(SteamGamesScan, TheListIsReadFromItsFile) {
  desktop::Desktop d;
  const std::string file = kRoot + "\\Ä 列\\libraryfolders.vdf";
  d.File(file, "\"path\" \"D:\\\\A\"\r\n\"path\" \"D:\\B\"\r\n\"path\" \"\"\r\n");
  EXPECT_THAT(ParseLibraryFoldersVdf(file), ElementsAre("D:\\A", "D:\\B", ""));
  EXPECT_THAT(ParseLibraryFoldersVdf(kRoot + "\\gone.vdf"), IsEmpty());
  EXPECT_THAT(ParseLibraryFoldersVdf(""), IsEmpty());
}

// --- ScanAppManifests, ParseAppManifest

std::vector<std::string> Ids(const std::vector<SteamManifestInfo>& manifests) {
  std::vector<std::string> ids;
  for (const SteamManifestInfo& manifest : manifests) ids.push_back(manifest.appId);
  return ids;
}

TEST(SteamGamesScan, AManifestsFolderBecomesAFullPath) {
  SteamWorld world{kSteam};
  world.Manifest(kSteam, "400", "m", "Portal");
  const std::vector<SteamManifestInfo> manifests = ScanAppManifests({kSteam});
  ASSERT_THAT(manifests, SizeIs(1));
  EXPECT_EQ(manifests[0].installDir, kSteam + "\\steamapps\\common\\Portal");
  EXPECT_EQ(manifests[0].name, "m");
  EXPECT_EQ(manifests[0].exePath, "");
}

TEST(SteamGamesScan, AManifestWithoutIdOrFolderIsDropped) {
  desktop::Desktop d;
  const std::string folder = kSteam + "\\steamapps\\";
  d.File(folder + "appmanifest_1.acf", "\"appid\" \"1\"\n\"name\" \"n\"\n");
  d.File(folder + "appmanifest_2.acf", "\"installdir\" \"d\"\n\"name\" \"n\"\n");
  d.File(folder + "appmanifest_3.acf", "\"appid\" \"3\"\n\"installdir\" \"d\"\n");
  d.File(folder + "appmanifest_4.acf", "");
  EXPECT_THAT(Ids(ScanAppManifests({kSteam})), ElementsAre("3"));
}

TEST(SteamGamesScan, OnlyRegularFilesOfTheExactNameCount) {
  desktop::Desktop d;
  const std::string folder = kSteam + "\\steamapps\\";
  const std::string text = "\"appid\" \"1\"\n\"installdir\" \"d\"\n";
  d.File(folder + "Appmanifest_1.acf", text);
  d.File(folder + "appmanifest_2.ACF", text);
  d.File(folder + "appmanifest_3.acf.bak", text);
  d.File(folder + "appmanifest4.acf", text);
  d.File(folder + "my appmanifest_5.acf", text);
  d.File(folder + "appmanifest_6.acf\\x", text);
  d.File(folder + "deeper\\appmanifest_7.acf", text);
  EXPECT_THAT(ScanAppManifests({kSteam}), IsEmpty());
  d.File(folder + "appmanifest_.acf", text);
  d.File(folder + "appmanifest_é 一.acf", text);
  EXPECT_THAT(ScanAppManifests({kSteam}), SizeIs(2)) << "the id comes from the text alone";
}

TEST(SteamGamesScan, AFolderNamedSteamappsIsItsOwnManifestFolder) {
  SteamWorld world{kSteam};
  world.Manifest(kSteam, "400", "m", "Portal");
  const std::vector<SteamManifestInfo> manifests = ScanAppManifests({kSteam + "\\steamapps"});
  ASSERT_THAT(manifests, SizeIs(1));
  EXPECT_EQ(manifests[0].installDir, kSteam + "\\steamapps\\common\\Portal");
}

TEST(SteamGamesScan, TheManifestFoldersNameIsCaseSensitive) {
  SteamWorld world{kSteam};
  world.d.File(kRoot + "\\Mixed\\SteamApps\\appmanifest_1.acf", "\"appid\" \"1\"\n\"installdir\" \"d\"\n");
  EXPECT_THAT(ScanAppManifests({kRoot + "\\Mixed\\SteamApps"}), IsEmpty());
  EXPECT_THAT(ScanAppManifests({kRoot + "\\Mixed\\steamapps"}), SizeIs(1));
  EXPECT_THAT(ScanAppManifests({kRoot + "\\Mixed"}), SizeIs(1)) << "the file system doesn't mind";
}

TEST(SteamGamesScan, LibrariesAreListedInTheirOrderAndMissingOnesPassedOver) {
  SteamWorld world{kSteam};
  world.Manifest(kRoot + "\\B", "2", "m", "d");
  world.Manifest(kRoot + "\\A", "1", "m", "d");
  EXPECT_THAT(
      Ids(ScanAppManifests({kRoot + "\\B", kRoot + "\\Gone", "Q:\\none", kRoot + "\\A", kRoot + "\\B"})),
      ElementsAre("2", "1", "2"));
}

TEST(SteamGamesScan, AnEmptyLibraryIsBelowTheCurrentFolder) {
  SteamWorld world{kSteam};
  world.Manifest(kSteam, "400", "m", "Portal");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(std::filesystem::path(Utf8ToWide(kSteam)));
  const std::vector<SteamManifestInfo> manifests = ScanAppManifests({""});
  std::filesystem::current_path(before);
  ASSERT_THAT(manifests, SizeIs(1));
  EXPECT_EQ(manifests[0].installDir, "steamapps\\common\\Portal");
}

TEST(SteamGamesScan, ALibraryThatCannotBeListedCostsItselfAlone) {
  SteamWorld world{kSteam};
  world.Manifest(kRoot + "\\A", "1", "m", "d");
  // A junction whose target is gone is still a folder by its attributes.
  world.d.Folder(kRoot + "\\Target");
  world.d.Junction(kRoot + "\\Broken\\steamapps", kRoot + "\\Target");
  std::filesystem::remove(std::filesystem::path(Utf8ToWide(kRoot + "\\Target")));
  const DebugCapture log;
  EXPECT_THAT(Ids(ScanAppManifests({kRoot + "\\Broken", kRoot + "\\A"})), ElementsAre("1"));
  EXPECT_THAT(log.Lines(), IsEmpty());
  // The desktop can't take a link away that leads nowhere.
  std::filesystem::create_directory(std::filesystem::path(Utf8ToWide(kRoot + "\\Target")));
}

TEST(SteamGamesScan, AManifestThatCannotBeOpenedIsEmpty) {
  EXPECT_EQ(ParseAppManifest(kRoot + "\\gone.acf").appId, "");
  EXPECT_EQ(ParseAppManifest("").appId, "");
}

// --- FindSteamGameExe, TryExeUnderRoot

TEST(SteamGamesScan, TheDefaultExesAreTriedInTheirOrder) {
  desktop::Desktop d;
  const std::string folder = kRoot + "\\G";
  GameSignature game = SteamSignature("1", "g", "a.exe");
  game.DefaultExe32 = "b.exe";
  game.DefaultExe64 = "c.exe";
  d.Folder(folder);
  EXPECT_EQ(FindSteamGameExe(folder, "1", ById(game)), "");
  d.File(folder + "\\c.exe");
  EXPECT_EQ(FindSteamGameExe(folder, "1", ById(game)), folder + "\\c.exe");
  d.File(folder + "\\b.exe");
  EXPECT_EQ(FindSteamGameExe(folder, "1", ById(game)), folder + "\\b.exe") << "32 before 64";
  d.File(folder + "\\a.exe");
  EXPECT_EQ(FindSteamGameExe(folder, "1", ById(game)), folder + "\\a.exe");
  EXPECT_EQ(FindSteamGameExe(folder, "2", ById(game)), "") << "not in the catalogue";
}

TEST(SteamGamesScan, TheFolderExesAreTriedBelowTheLibraryWithSixtyFourFirst) {
  desktop::Desktop d;
  const std::string folder = kSteam + "\\steamapps\\common\\G";
  GameSignature game = SteamSignature("1", "g", "none.exe");
  game.DefaultFolderExe = "\\steamapps\\common\\G\\bin\\a.exe";
  game.DefaultFolderExe32 = "steamapps\\common\\G\\bin\\b.exe";
  game.DefaultFolderExe64 = "/steamapps/common/G/bin/c.exe";
  d.File(folder + "\\bin\\b.exe");
  EXPECT_EQ(FindSteamGameExe(folder, "1", ById(game)), folder + "\\bin\\b.exe");
  d.File(folder + "\\bin\\c.exe");
  EXPECT_TRUE(FindSteamGameExe(folder, "1", ById(game)).ends_with("c.exe")) << "64 before 32";
  d.File(folder + "\\bin\\a.exe");
  EXPECT_EQ(FindSteamGameExe(folder, "1", ById(game)), folder + "\\bin\\a.exe");
  d.File(folder + "\\none.exe");
  EXPECT_EQ(FindSteamGameExe(folder, "1", ById(game)), folder + "\\none.exe")
      << "the game's own folder first";
}

TEST(SteamGamesScan, TheLibrarysRootIsFoundInMixedCaseAndKeepsItsOwn) {
  desktop::Desktop d;
  const std::string library = kRoot + "\\LiBrary";
  GameSignature game = SteamSignature("1", "g", "");
  game.DefaultFolderExe = "SteamApps\\common\\G\\a.exe";
  d.File(library + "\\SteamApps\\common\\G\\a.exe");
  EXPECT_EQ(FindSteamGameExe(library + "\\SteamApps\\common\\G", "1", ById(game)),
            library + "\\SteamApps\\common\\G\\a.exe");
  EXPECT_EQ(FindSteamGameExe(library, "1", ById(game)), "") << "without the word there is no root";
  EXPECT_EQ(FindSteamGameExe("", "1", ById(game)), "");
}

TEST(SteamGamesScan, OneSeparatorGoesFromTheRelativePath) {
  desktop::Desktop d;
  d.File(kRoot + "\\a.exe");
  EXPECT_EQ(TryExeUnderRoot(kRoot, "a.exe"), kRoot + "\\a.exe");
  EXPECT_EQ(TryExeUnderRoot(kRoot, "\\a.exe"), kRoot + "\\a.exe");
  EXPECT_EQ(TryExeUnderRoot(kRoot, "/a.exe"), kRoot + "\\a.exe");
  EXPECT_EQ(TryExeUnderRoot(kRoot, "\\\\a.exe"), kRoot + "\\a.exe") << "the join drops the other";
  EXPECT_EQ(TryExeUnderRoot(kRoot, ""), "");
  EXPECT_EQ(TryExeUnderRoot(kRoot, "\\"), "");
  EXPECT_EQ(TryExeUnderRoot(kRoot, "gone.exe"), "");
}

}  // namespace
}  // namespace tarnwick
