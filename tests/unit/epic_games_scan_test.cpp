#include "launchers/epic_games_scan.h"

#include "desktop/desktop.h"
#include "foundation/machine/paths.h"
#include "matching/paths.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/hostile_texts.h"
#include "support/locked_path.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <map>

namespace tarnwick {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using tests::DebugCapture;
using tests::LockedPath;

const std::string kRoot = R"(C:\TarnwickTest\Epic)";
const std::string kData = kRoot + R"(\EpicGamesLauncher\Data)";
const std::string kManifests = kData + R"(\Manifests)";
const std::string kDat = kRoot + R"(\UnrealEngineLauncher\LauncherInstalled.dat)";
const std::string kGames = kRoot + R"(\Games)";

// Members as they stand: backslashes are not doubled, since the reader would keep them so.
std::string Object(const std::map<std::string, std::string>& members) {
  std::string text = "{";
  for (const auto& [key, value] : members) {
    const bool literal =
        value == "true" || value == "false" || value == "True" || value == "1" || value.starts_with("[");
    text += "\n\t\"" + key + "\": " + (literal ? value : '"' + value + '"') + ",";
  }
  text.back() = '\n';
  return text + "}\n";
}

std::string Expected(const std::string& name, const std::string& exe) {
  return name + '|' + exe + "||Epic Games Launcher||1|0|";
}

// What is made of a game of this name whose manifest names no other.
std::string Expected(const std::string& name) { return Expected(name, kGames + "\\" + name + "\\game.exe"); }

// A desktop with the Epic launcher on it.
class EpicGamesScan : public testing::Test {
 protected:
  EpicGamesScan() {
    desktop_.String(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Epic Games\EpicGamesLauncher)", "AppDataPath", kData,
                    desktop::View::k32);
    desktop_.Folder(kManifests);
  }

  void Item(const std::string& file, const std::map<std::string, std::string>& members) {
    desktop_.File(kManifests + "\\" + file, Object(members));
  }

  // A manifest of a game by this name whose folder has one executable, and the path of that.
  std::string Game(const std::string& name, std::map<std::string, std::string> members = {}) {
    const std::string folder = kGames + "\\" + name;
    desktop_.File(folder + "\\game.exe");
    members.insert({{"AppName", name}, {"MainGameAppName", name}, {"InstallLocation", folder}});
    Item(name + ".item", members);
    return folder + "\\game.exe";
  }

  std::vector<std::string> Scan(const GameList& games = {}) {
    return tests::Describe(ScanEpicGames(games, "S-1-5-21"));
  }

  desktop::Desktop desktop_;
};

GameSignature Signature(const std::string& appName) {
  GameSignature signature;
  signature.DisplayName = "Of the catalogue";
  signature.SourceKind = kSourceEpic;
  signature.LaunchUrl = BuildEpicLaunchUrl(appName);
  return signature;
}

TEST_F(EpicGamesScan, ReportsAManifestsGameAndSaysSo) {
  const std::string exe = Game("Wren", {{"DisplayName", "Зимородок — 游戏 é"}});
  DebugCapture log;
  EXPECT_THAT(Scan(), ElementsAre(Expected("Зимородок — 游戏 é", exe)))
      << "its address only finds the signature";
  EXPECT_THAT(
      log.Lines(),
      ElementsAre(
          "[Epic] Starting Epic Games scan...", "[Epic] Registry AppDataPath: " + kData,
          "[Epic] Epic Data Path: " + kData, "[Epic] Manifests Path: " + kManifests,
          "[Epic] Parsed manifest: Зимородок — 游戏 é (AppName: Wren, InstallLocation: " + kGames + "\\Wren)",
          "[Epic] Processed 1 .item files", "[Epic] LauncherInstalled.dat not found at: " + kDat,
          "[Epic] Found 1 games (Manifests + LauncherInstalled.dat)",
          "[Epic] Found: Зимородок — 游戏 é -> " + exe, "[Epic] Scan completed! Found 1 games."));
}

TEST_F(EpicGamesScan, EveryLineGoesOutWithItsPrefixAndLineFeed) {
  DebugCapture log;
  ScanEpicGames({}, "");
  EXPECT_EQ(log.Raw().front(), "[Tarnwick] [Epic] Starting Epic Games scan...\n");
  EXPECT_EQ(log.Raw().back(), "[Tarnwick] [Epic] Scan completed! Found 0 games.\n");
}

TEST(EpicGamesScanWithoutRegistry, LooksInTheDefaultFolder) {
  const std::string data = R"(C:\ProgramData\Epic\EpicGamesLauncher\Data)";
  const std::string dat = R"(C:\ProgramData\Epic\UnrealEngineLauncher\LauncherInstalled.dat)";
  desktop::Desktop desktop;
  desktop.File(kGames + "\\Owl\\owl.exe");
  desktop.Folder(data + "\\Manifests");
  desktop.File(dat, "{\"InstallationList\": [" +
                        Object({{"AppName", "Owl"}, {"InstallLocation", kGames + "\\Owl"}}) + "]}");
  DebugCapture log;
  EXPECT_THAT(tests::Describe(ScanEpicGames({}, "")), ElementsAre(Expected("Owl", kGames + "\\Owl\\owl.exe")))
      << "named by its AppName";
  EXPECT_THAT(log.Lines(), ElementsAre("[Epic] Starting Epic Games scan...", "[Epic] Registry AppDataPath: ",
                                       "[Epic] Using default path: " + data, "[Epic] Epic Data Path: " + data,
                                       "[Epic] Manifests Path: " + data + "\\Manifests",
                                       "[Epic] Processed 0 .item files", "[Epic] Parsed from dat: Owl",
                                       "[Epic] Found 1 games (Manifests + LauncherInstalled.dat)",
                                       "[Epic] Found: Owl -> " + kGames + "\\Owl\\owl.exe",
                                       "[Epic] Scan completed! Found 1 games."));
}

TEST(EpicGamesScanWithoutRegistry, NoLauncherIsNoError) {
  DebugCapture log;
  EXPECT_THAT(ScanEpicGames({}, ""), IsEmpty());
  EXPECT_THAT(log.Lines(),
              ElementsAre("[Epic] Starting Epic Games scan...", "[Epic] Registry AppDataPath: ",
                          R"([Epic] Using default path: C:\ProgramData\Epic\EpicGamesLauncher\Data)",
                          R"([Epic] Epic Data Path: C:\ProgramData\Epic\EpicGamesLauncher\Data)",
                          R"([Epic] Manifests Path: C:\ProgramData\Epic\EpicGamesLauncher\Data\Manifests)",
                          "[Epic] Manifests path does not exist or is not a directory",
                          "[Epic] LauncherInstalled.dat not found at: "
                          R"(C:\ProgramData\Epic\UnrealEngineLauncher\LauncherInstalled.dat)",
                          "[Epic] Found 0 games (Manifests + LauncherInstalled.dat)",
                          "[Epic] Scan completed! Found 0 games."));
}

TEST_F(EpicGamesScan, SkipsTheEngineByTheStartOfItsName) {
  Game("UE_5.3");
  Game("UE_");
  Game("TrueUE_");
  Game("ue_game");
  EXPECT_THAT(Scan(), ElementsAre(Expected("TrueUE_"), Expected("ue_game")));
}

TEST_F(EpicGamesScan, SkipsAddOns) {
  Game("Addon", {{"MainGameAppName", "Wren"}});
  Game("WithoutMain", {{"MainGameAppName", ""}});
  Game("CaseDiffers", {{"MainGameAppName", "casediffers"}});
  Game("Wren");
  EXPECT_THAT(Scan(), ElementsAre(Expected("Wren")));
}

TEST_F(EpicGamesScan, SkipsAManifestWithoutTheKeyOfItsMainGame) {
  desktop_.File(kGames + "\\x\\game.exe");
  Item("x.item", {{"AppName", "x"}, {"InstallLocation", kGames + "\\x"}});
  EXPECT_THAT(Scan(), IsEmpty());
}

TEST_F(EpicGamesScan, SkipsAManifestWithoutAName) {
  Game("x", {{"AppName", ""}, {"MainGameAppName", ""}});
  DebugCapture log;
  EXPECT_THAT(Scan(), IsEmpty()) << "both names are equal, but there is no launch address";
  EXPECT_THAT(log.Lines(), testing::Contains("[Epic] Found 1 games (Manifests + LauncherInstalled.dat)"));
}

TEST_F(EpicGamesScan, SkipsWhatIsIncomplete) {
  Game("Incomplete", {{"bIsIncompleteInstall", "true"}});
  Game("Complete", {{"bIsIncompleteInstall", "false"}});
  Game("Number", {{"bIsIncompleteInstall", "1"}});
  Game("Upper", {{"bIsIncompleteInstall", "True"}});
  EXPECT_THAT(Scan(), ElementsAre(Expected("Complete"), Expected("Number"), Expected("Upper")));
}

TEST_F(EpicGamesScan, PluginsAreNotFiltered) {
  Game("Plugin", {{"AppCategories", R"(["plugins", "plugins/engine"])"}});
  EXPECT_THAT(Scan(), ElementsAre(Expected("Plugin")));
}

TEST_F(EpicGamesScan, SkipsGamesWhoseFolderIsNotThere) {
  Game("Gone", {{"InstallLocation", kGames + "\\nowhere"}});
  desktop_.File(kGames + "\\a file");
  Game("File", {{"InstallLocation", kGames + "\\a file"}});
  Game("Empty", {{"InstallLocation", ""}});
  DebugCapture log;
  EXPECT_THAT(Scan(), IsEmpty());
  EXPECT_THAT(log.Lines(), testing::Contains("[Epic] Found 2 games (Manifests + LauncherInstalled.dat)"))
      << "an entry without a folder isn't even counted";
}

TEST_F(EpicGamesScan, AFolderThatCannotBeAskedForEndsTheScan) {
  Game("Odd", {{"InstallLocation", tests::kUnaskablePath}});
  DebugCapture log;
  EXPECT_THROW(ScanEpicGames({}, ""), std::filesystem::filesystem_error);
  EXPECT_EQ(log.Lines().back(), "[Epic] Found 1 games (Manifests + LauncherInstalled.dat)");
}

TEST_F(EpicGamesScan, SkipsAGameWithoutAnExecutable) {
  desktop_.File(kGames + "\\Bare\\readme.txt");
  Item("Bare.item",
       {{"AppName", "Bare"}, {"MainGameAppName", "Bare"}, {"InstallLocation", kGames + "\\Bare"}});
  desktop_.File(kGames + "\\Removed\\Uninstall.exe");
  Item("Removed.item",
       {{"AppName", "Removed"}, {"MainGameAppName", "Removed"}, {"InstallLocation", kGames + "\\Removed"}});
  EXPECT_THAT(Scan(), IsEmpty());
}

TEST_F(EpicGamesScan, TheNameIsTheDisplayNameOrElseTheAppName) {
  const std::string a = Game("A", {{"DisplayName", "Shown"}});
  Game("B", {{"DisplayName", ""}});
  const std::string c = Game("C", {{"DisplayName", R"(The \"C\")"}});
  EXPECT_THAT(Scan(), ElementsAre(Expected("Shown", a), Expected("B"), Expected(R"(The \"C\")", c)));
}

TEST_F(EpicGamesScan, DoubledBackslashesOfTheFileStayInThePath) {
  const std::string folder = R"(C:\\TarnwickTest\\Epic\\Games\\Doubled)";
  Game("Doubled", {{"InstallLocation", folder}});
  const std::string exe = folder + "\\game.exe";
  EXPECT_THAT(Scan(), ElementsAre(Expected("Doubled", exe)));
  EXPECT_TRUE(FileExists(exe));
}

TEST_F(EpicGamesScan, BothFilesAreReadAndNotMerged) {
  const std::string exe = Game("Wren", {{"DisplayName", "Shown"}});
  desktop_.File(kDat, "{\"InstallationList\":[" +
                          Object({{"AppName", "Wren"}, {"InstallLocation", kGames + "\\Wren"}}) + "," +
                          Object({{"AppName", "NoFolder"}}) + "]}");
  DebugCapture log;
  EXPECT_THAT(Scan(), ElementsAre(Expected("Shown", exe), Expected("Wren", exe)));
  EXPECT_THAT(log.Lines(),
              AllOf(testing::Contains("[Epic] Found 2 games (Manifests + LauncherInstalled.dat)"),
                    testing::Contains("[Epic] Parsed from dat: Wren"),
                    testing::Not(testing::Contains("[Epic] Parsed from dat: NoFolder"))));
}

TEST_F(EpicGamesScan, ASignatureIsFoundByItsLaunchAddress) {
  Game("Wren");
  desktop_.File(kGames + "\\Wren\\bin\\chosen.exe");
  GameSignature signature = Signature("Wren");
  signature.DefaultExe = "bin\\chosen.exe";
  const auto chosen = ElementsAre(Expected("Wren", kGames + "\\Wren\\bin\\chosen.exe"));
  const auto other = ElementsAre(Expected("Wren"));
  EXPECT_THAT(Scan({signature}), chosen) << "the catalogue's name is not used";
  GameSignature ofAnotherKind = signature;
  ofAnotherKind.SourceKind = kSourceGog;
  EXPECT_THAT(Scan({ofAnotherKind}), other);
  GameSignature withoutAddress = signature;
  withoutAddress.LaunchUrl = "";
  EXPECT_THAT(Scan({withoutAddress}), other);
  GameSignature ofAnotherGame = signature;
  ofAnotherGame.LaunchUrl = BuildEpicLaunchUrl("wren");
  EXPECT_THAT(Scan({ofAnotherGame}), other);
  GameSignature later = signature;
  later.DefaultExe = "missing.exe";
  EXPECT_THAT(Scan({signature, later}), other) << "of two the later one counts";
  EXPECT_THAT(Scan({later, signature}), chosen);
}

TEST(EpicLaunchUrl, JoinsTheNameAsItStands) {
  EXPECT_EQ(BuildEpicLaunchUrl(""), "");
  EXPECT_EQ(BuildEpicLaunchUrl("a b/ё"), "com.epicgames.launcher://apps/a b/ё?action=launch&silent=true");
}

// Manifests

TEST_F(EpicGamesScan, ReadsOnlyFilesWithTheExtensionInLowerCase) {
  const std::string exe = Game("A");
  for (const char* name : {"b.ITEM", "c.Item", "d.items", "item", ".item", "e.item.bak"}) {
    Item(name, {{"AppName", name}, {"MainGameAppName", name}, {"InstallLocation", kGames + "\\A"}});
  }
  desktop_.Folder(kManifests + "\\folder.item");
  Item("sub\\f.item", {{"AppName", "f"}, {"MainGameAppName", "f"}, {"InstallLocation", kGames + "\\A"}});
  Item("имя 游戏.item", {{"AppName", "g"}, {"MainGameAppName", "g"}, {"InstallLocation", kGames + "\\A"}});
  DebugCapture log;
  EXPECT_THAT(Scan(), ElementsAre(Expected("A"), Expected("g", exe)));
  EXPECT_THAT(log.Lines(), testing::Contains("[Epic] Processed 2 .item files"));
}

TEST_F(EpicGamesScan, ManifestsWithoutMeaningAreCountedAndDropped) {
  int number = 0;
  for (const std::string& text :
       tests::MeaninglessTexts(Object({{"AppName", "x"}, {"InstallLocation", "C:/"}}))) {
    desktop_.File(kManifests + "\\" + std::to_string(++number) + ".item", text);
  }
  DebugCapture log;
  EXPECT_THAT(ReadEpicManifests(kManifests), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre("[Epic] Processed " + std::to_string(number) + " .item files"));
}

TEST_F(EpicGamesScan, AManifestThatCannotBeOpenedIsCountedAndNamed) {
  Game("A");
  Game("Б");
  const LockedPath lock(kManifests + "\\Б.item");
  DebugCapture log;
  EXPECT_THAT(ReadEpicManifests(kManifests), SizeIs(1));
  EXPECT_THAT(log.Lines(), ElementsAre(StartsWith("[Epic] Parsed manifest:  (AppName: A,"),
                                       "[Epic] Failed to open: " + kManifests + "\\Б.item",
                                       "[Epic] Processed 2 .item files"));
}

TEST_F(EpicGamesScan, AManifestsFolderThatIsAFileIsNamed) {
  desktop_.File(kRoot + "\\file");
  DebugCapture log;
  EXPECT_THAT(ReadEpicManifests(kRoot + "\\file"), IsEmpty());
  EXPECT_THAT(ReadEpicManifests(kRoot + "\\nothing"), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre("[Epic] Manifests path does not exist or is not a directory",
                                       "[Epic] Manifests path does not exist or is not a directory"));
}

TEST_F(EpicGamesScan, AManifestsFolderThatCannotBeListedIsAnError) {
  Game("A");
  const LockedPath lock(kManifests);
  DebugCapture log;
  EXPECT_THAT(ReadEpicManifests(kManifests), IsEmpty());
  ASSERT_THAT(log.Lines(), SizeIs(1)) << "no line counts the files";
  EXPECT_THAT(log.Lines()[0], StartsWith("[Epic] Error reading manifests: "));
  EXPECT_GT(log.Lines()[0].size(), std::string("[Epic] Error reading manifests: ").size());
}

TEST_F(EpicGamesScan, AfterAnErrorTheOtherFileIsStillRead) {
  Game("A");
  desktop_.File(kDat, "{\"InstallationList\":[" +
                          Object({{"AppName", "A"}, {"InstallLocation", kGames + "\\A"}}) + "]}");
  const LockedPath lock(kManifests);
  EXPECT_THAT(Scan(), ElementsAre(Expected("A")));
}

// LauncherInstalled.dat

TEST(EpicLauncherInstalled, TheFileIsLookedForBesideTheLaunchersFolder) {
  const auto lookedFor = [](const std::string& dataPath) {
    DebugCapture log;
    ReadLauncherInstalledDat(dataPath);
    return log.Lines().at(0);
  };
  const std::string line = "[Epic] LauncherInstalled.dat not found at: ";
  const std::string file = R"(\UnrealEngineLauncher\LauncherInstalled.dat)";
  EXPECT_EQ(lookedFor(R"(Q:\Ё\EpicGamesLauncher\Data)"), line + R"(Q:\Ё)" + file);
  EXPECT_EQ(lookedFor(R"(Q:\x\Data)"), line + R"(Q:\x)" + file);
  EXPECT_EQ(lookedFor(R"(Q:\x\EpicGamesLauncher)"), line + R"(Q:\x)" + file) << "each step by itself";
  EXPECT_EQ(lookedFor(R"(Q:\x\Other)"), line + R"(Q:\x\Other)" + file);
  EXPECT_EQ(lookedFor(R"(Q:\x\EpicGamesLauncher\data)"), line + R"(Q:\x\EpicGamesLauncher\data)" + file);
  EXPECT_EQ(lookedFor(R"(Q:\x\Data\EpicGamesLauncher)"), line + R"(Q:\x\Data)" + file)
      << "in this order only";
  EXPECT_EQ(lookedFor(R"(Q:\x\EpicGamesLauncher\Data\)"), line + R"(Q:\x\EpicGamesLauncher\Data)" + file)
      << "behind a trailing backslash the last element is empty";
}

TEST(EpicLauncherInstalled, AFileThatCannotBeOpenedIsAnError) {
  desktop::Desktop desktop;
  desktop.File(kDat, "{}");
  {
    const LockedPath lock(kDat);
    DebugCapture log;
    EXPECT_THAT(ReadLauncherInstalledDat(kData), IsEmpty());
    EXPECT_THAT(log.Lines(), ElementsAre("[Epic] Failed to open LauncherInstalled.dat"));
  }
  desktop.Folder(kRoot + R"(\Other\UnrealEngineLauncher\LauncherInstalled.dat)");
  DebugCapture log;
  EXPECT_THAT(ReadLauncherInstalledDat(kRoot + R"(\Other)"), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre("[Epic] Failed to open LauncherInstalled.dat"))
      << "a folder of that name";
}

TEST(EpicLauncherInstalled, AFileThatCannotBeAskedForIsAnError) {
  DebugCapture log;
  EXPECT_THAT(ReadLauncherInstalledDat(tests::kUnaskablePath), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(StartsWith("[Epic] Error reading LauncherInstalled.dat: ")));
  log.Clear();
  EXPECT_THAT(ReadEpicManifests(tests::kUnaskablePath), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(StartsWith("[Epic] Error reading manifests: ")));
}

TEST(EpicLauncherInstalled, AFileCutAnywhereGivesItsWholeObjects) {
  const std::string text = "{\"InstallationList\":[" +
                           Object({{"AppName", "A"}, {"InstallLocation", "C:/"}}) + "," +
                           Object({{"AppName", "B"}, {"InstallLocation", "D:/"}}) + "]}";
  const size_t first = text.find('}') + 1;
  for (const size_t size :
       {size_t{0}, size_t{1}, first - 1, first, first + 5, text.size() - 1, text.size()}) {
    desktop::Desktop desktop;
    desktop.File(kDat, text.substr(0, size));
    const auto entries = ReadLauncherInstalledDat(kData);
    EXPECT_THAT(entries, SizeIs(size < first ? 0 : size + 3 < text.size() ? 1 : 2)) << size;
  }
}

// The executable

class EpicExe : public testing::Test {
 protected:
  // Makes the files, given relative to the test's folder.
  explicit EpicExe() { desktop_.Folder(kWren); }
  void Files(const std::vector<std::string>& files) {
    for (const std::string& file : files) desktop_.File(kGames + "\\" + file);
  }
  // What is found, relative to the test's folder.
  std::string Find(const GameSignature* signature, const std::string& launchExecutable = {}) {
    const std::string exe = FindEpicExe(kWren, launchExecutable, signature);
    return exe.starts_with(kGames + "\\") ? exe.substr(kGames.size() + 1) : exe;
  }

  const std::string kWren = kGames + "\\Wren";
  desktop::Desktop desktop_;
  GameSignature signature_;
};

TEST_F(EpicExe, TheCataloguesThreeExecutablesAreTriedInOrder) {
  signature_.DefaultExe = "a.exe";
  signature_.DefaultExe32 = "b.exe";
  signature_.DefaultExe64 = "\\bin\\c.exe";
  Files({"Wren\\bin\\c.exe", "Wren\\z.exe"});
  EXPECT_EQ(Find(&signature_), "Wren\\bin\\c.exe");
  Files({"Wren\\b.exe"});
  EXPECT_EQ(Find(&signature_), "Wren\\b.exe");
  Files({"Wren\\a.exe"});
  EXPECT_EQ(Find(&signature_), "Wren\\a.exe");
}

TEST_F(EpicExe, WithoutTheDefaultExeTheCatalogueIsNotAsked) {
  signature_.DefaultExe32 = "b.exe";
  signature_.DefaultExe64 = "c.exe";
  signature_.DefaultFolderExe = "Wren\\d.exe";
  Files({"Wren\\b.exe", "Wren\\c.exe", "d.exe", "Wren\\game.exe"});
  EXPECT_EQ(Find(&signature_, "game.exe"), "Wren\\game.exe");
}

TEST_F(EpicExe, AFolderThatMatchesIsDroppedFromThePath) {
  signature_.DefaultExe = "game.exe";
  signature_.DefaultFolderExe = "\\Wren\\bin\\game.exe";
  Files({"bin\\game.exe", "Wren\\bin\\game.exe", "Wren\\game.exe", "Wren\\other.exe"});
  EXPECT_EQ(Find(&signature_), "bin\\game.exe") << "beside the install folder";
}

TEST_F(EpicExe, The32BitFieldKeepsItsFolder) {
  signature_.DefaultExe = "game.exe";
  signature_.DefaultFolderExe = "Wren/bin/game.exe";
  signature_.DefaultFolderExe32 = "\\Wren\\bin32\\game.exe";
  Files({"Wren\\bin32\\game.exe", "bin32\\game.exe", "Wren\\game.exe", "Wren\\x.exe"});
  EXPECT_EQ(Find(&signature_), "Wren\\bin32\\game.exe");
}

TEST_F(EpicExe, AfterAMatchTheDefaultExeIsNotTried) {
  signature_.DefaultExe = "game.exe";
  signature_.DefaultExe32 = "game.exe";
  signature_.DefaultExe64 = "game.exe";
  signature_.DefaultFolderExe = "Wren\\bin\\game.exe";
  signature_.DefaultFolderExe64 = "Wren\\game.exe";
  Files({"Wren\\game.exe", "Wren\\a.exe", "Wren\\b.exe"});
  EXPECT_EQ(Find(&signature_, "b.exe"), "Wren\\b.exe") << "the manifest's comes next";
  EXPECT_EQ(Find(&signature_), "Wren\\a.exe") << "and then the folder's first";
}

TEST_F(EpicExe, APathThatIsTheFolderAloneMatchesToo) {
  signature_.DefaultExe = "game.exe";
  signature_.DefaultFolderExe = "Wren";
  Files({"Wren\\game.exe", "Wren\\a.exe"});
  EXPECT_EQ(Find(&signature_), "Wren\\a.exe") << "there is nothing to try";
}

TEST_F(EpicExe, AFolderMatchesExactlyOrNotAtAll) {
  signature_.DefaultExe = "game.exe";
  signature_.DefaultFolderExe = "wren\\bin\\game.exe";
  Files({"bin\\game.exe", "Wren\\game.exe", "Wren\\a.exe"});
  EXPECT_EQ(Find(&signature_), "Wren\\game.exe") << "by its letter case";
  EXPECT_EQ(FindEpicExe(kWren + "\\/", "", &signature_), CombinePath(kWren + "\\/", "game.exe"));
  signature_.DefaultFolderExe = "Wren\\bin\\game.exe";
  EXPECT_EQ(FindEpicExe(kWren + "\\/", "", &signature_), kGames + "\\bin\\game.exe")
      << "separators at its end don't count";
}

TEST_F(EpicExe, TheManifestsExecutableIsRelativeOrAbsolute) {
  Files({"Wren\\bin\\game.exe", "Wren\\a.exe", "Wren\\b.exe", "Elsewhere\\x.exe"});
  EXPECT_EQ(Find(nullptr, "bin\\game.exe"), "Wren\\bin\\game.exe");
  EXPECT_EQ(Find(nullptr, "bin/game.exe"), CombinePath("Wren", "bin/game.exe"));
  EXPECT_EQ(Find(nullptr, kGames + "\\Elsewhere\\x.exe"), "Elsewhere\\x.exe");
  EXPECT_EQ(Find(nullptr, "\\bin\\game.exe"), "Wren\\a.exe") << "a leading backslash makes it absolute";
  EXPECT_EQ(Find(nullptr, "/bin/game.exe"), "Wren\\a.exe") << "and so does a slash";
  EXPECT_EQ(Find(nullptr, "missing.exe"), "Wren\\a.exe");
  EXPECT_EQ(Find(nullptr, "bin"), "Wren\\a.exe") << "a folder is no executable";
}

TEST_F(EpicExe, TheOnlyExecutableAtTheTopIsTheGames) {
  Files(
      {"Wren\\Game.EXE", "Wren\\setup.exe", "Wren\\UnIns000.exe", "Wren\\a\\first.exe", "Wren\\readme.txt"});
  EXPECT_EQ(Find(nullptr), "Wren\\Game.EXE");
}

TEST_F(EpicExe, OfSeveralTheFirstListedIsTaken) {
  Files({"Wren\\y.exe", "Wren\\z.exe", "Wren\\a\\deep\\first.exe", "Wren\\a\\install.exe"});
  const std::vector<std::string> listed = ListExeFiles(kWren, true);
  ASSERT_THAT(listed, SizeIs(4));
  EXPECT_EQ(FindEpicExe(kWren, "", nullptr), listed.front());
  EXPECT_EQ(Find(nullptr), "Wren\\a\\deep\\first.exe")
      << "folders are listed here in the order of their names";
}

TEST_F(EpicExe, InstallersAreNeverTheGame) {
  Files({"Wren\\uninstall.exe", "Wren\\bin\\Setup.exe", "Wren\\bin\\INSTALL.EXE"});
  EXPECT_EQ(Find(nullptr), "");
  Files({"Wren\\bin\\uninstaller.exe"});
  EXPECT_EQ(Find(nullptr), "Wren\\bin\\uninstaller.exe") << "only the exact names count";
}

TEST_F(EpicExe, AFolderThatIsNotThereHasNoExecutable) {
  EXPECT_EQ(FindEpicExe(kGames + "\\nowhere", "", nullptr), "");
  EXPECT_EQ(FindEpicExe("", "", nullptr), "");
}

TEST_F(EpicExe, ListsExecutablesByTheirExtension) {
  Files({"Wren\\a.exe", "Wren\\b.EXE", "Wren\\c.exe.bak", "Wren\\exe", "Wren\\.exe", "Wren\\игра 游戏.exe",
         "Wren\\sub\\d.exe"});
  desktop_.Folder(kWren + "\\folder.exe");
  EXPECT_THAT(ListExeFiles(kWren, false),
              testing::UnorderedElementsAre(kWren + "\\a.exe", kWren + "\\b.EXE", kWren + "\\игра 游戏.exe"));
  EXPECT_THAT(ListExeFiles(kWren, true),
              testing::UnorderedElementsAre(kWren + "\\a.exe", kWren + "\\b.EXE", kWren + "\\игра 游戏.exe",
                                            kWren + "\\sub\\d.exe"));
  EXPECT_THAT(ListExeFiles(kWren + "\\a.exe", true), IsEmpty()) << "a file is no folder";
  EXPECT_THAT(ListExeFiles(tests::kUnaskablePath, true), IsEmpty()) << "and nothing is thrown";
}

TEST_F(EpicExe, AJunctionIsNotEntered) {
  Files({"Wren\\sub\\a.exe", "Elsewhere\\b.exe"});
  desktop_.Junction(kWren + "\\sub\\loop", kWren);
  desktop_.Junction(kWren + "\\out", kGames + "\\Elsewhere");
  EXPECT_THAT(ListExeFiles(kWren, true), ElementsAre(kWren + "\\sub\\a.exe"));
  EXPECT_THAT(ListExeFiles(kWren + "\\out", true), ElementsAre(kWren + "\\out\\b.exe"))
      << "unless it is the start";
}

TEST_F(EpicExe, AFolderThatCannotBeListedEndsTheList) {
  Files({"Wren\\a.exe", "Wren\\locked\\b.exe", "Wren\\z.exe"});
  const LockedPath lock(kWren + "\\locked");
  DebugCapture log;
  EXPECT_THAT(ListExeFiles(kWren, true), ElementsAre(kWren + "\\a.exe")) << "what was listed before it";
  EXPECT_THAT(log.Lines(), IsEmpty());
}

}  // namespace
}  // namespace tarnwick
