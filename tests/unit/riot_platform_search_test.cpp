#include "launchers/riot_platform_search.h"

#include "desktop/desktop.h"
#include "desktop/launcher_files.h"
#include "foundation/machine/known_folders.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/hostile_texts.h"
#include "support/locked_path.h"

#include <gmock/gmock.h>

#include <shlobj.h>
#include <algorithm>
#include <filesystem>

namespace tarnwick {
namespace {

using desktop::RiotClientInstallsText;
using desktop::RiotProductSettingsText;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using tests::DebugCapture;

const std::string kRoot = R"(C:\TarnwickTest\Riot)";
const std::string kP = "[RiotPlatformSearch] ";

GameSignature Signature(const std::string& name, const std::string& runningExe) {
  GameSignature signature;
  signature.DisplayName = name;
  signature.SourceKind = kSourceRiot;
  signature.RunningExe = runningExe;
  signature.LaunchUrl = "riot://" + name;
  return signature;
}

std::string Expected(const std::string& name, const std::string& exe) {
  return name + '|' + exe + "|riot://" + name + "|Riot Platform||1|0|";
}

class RiotSearch : public testing::Test {
 protected:
  // A product's metadata that names the folder, and the folder itself.
  void Product(const std::string& id, const std::string& folder) {
    desktop_.File(kMetadata + "\\" + id + "\\" + id + ".yaml", RiotProductSettingsText(folder));
    desktop_.Folder(folder);
  }
  std::vector<std::string> Scan(const GameList& games) const {
    return tests::Describe(RiotPlatformSearch(games, "S-1-5-21"));
  }

  const std::string kAppData = KnownFolderPath(KnownFolder::kCommonData);
  const std::string kJson = kAppData + "\\Riot Games\\RiotClientInstalls.json";
  const std::string kMetadata = kAppData + "\\Riot Games\\Metadata";
  const std::string kYaml = "valorant.live.yaml";
  const std::string kGame = kRoot + "\\VALORANT\\live";
  desktop::Desktop desktop_;
};

TEST_F(RiotSearch, ReportsAGameAndSaysSo) {
  std::string slashes = kGame;
  std::replace(slashes.begin(), slashes.end(), '\\', '/');
  desktop_.File(kJson, RiotClientInstallsText("C:/Riot Games/Клиент.exe"));
  Product("valorant.live", slashes);
  desktop_.File(kGame + "\\VALORANT.exe");
  DebugCapture log;
  const std::string exe = kGame + "\\VALORANT.exe";
  EXPECT_THAT(Scan({Signature("VALORANT™", "VALORANT.exe")}), ElementsAre(Expected("VALORANT™", exe)))
      << "the sign stays";
  EXPECT_THAT(log.Lines(),
              ElementsAre(kP + "Starting Riot Platform Search...", kP + "Checking JSON path: " + kJson,
                          kP + "Riot Launch Helper: C:/Riot Games/Клиент.exe",
                          kP + "Checking Metadata path: " + kMetadata,
                          kP + "Found live directory: valorant.live", kP + "Found YAML file: " + kYaml,
                          kP + "Parsed game folder: " + slashes, kP + "Found 1 Riot game folders.",
                          kP + "Game Folder: " + slashes, kP + "MGL Riot Games count: 1",
                          kP + "Checking VALORANT: " + exe, kP + "Match found! VALORANT™ at " + exe,
                          kP + "Found: VALORANT™ -> " + exe, kP + "Scan completed! Found 1 games."));
}

TEST_F(RiotSearch, WithoutTheJsonFileTheSearchGoesOn) {
  Product("lol.live", kGame);
  desktop_.File(kGame + "\\lol.exe");
  DebugCapture log;
  EXPECT_THAT(Scan({Signature("LoL", "lol.exe")}), ElementsAre(Expected("LoL", kGame + "\\lol.exe")));
  EXPECT_THAT(
      log.Lines(),
      ElementsAre(kP + "Starting Riot Platform Search...", kP + "Checking JSON path: " + kJson,
                  kP + "JSON file not found: " + kJson,
                  kP + "Riot Launch Helper: ", kP + "Riot launch helper not found.",
                  kP + "Proceeding with game scan anyway (Fallback mode)...",
                  kP + "Checking Metadata path: " + kMetadata, kP + "Found live directory: lol.live",
                  kP + "Found YAML file: lol.live.yaml", kP + "Parsed game folder: " + kGame,
                  kP + "Found 1 Riot game folders.", kP + "Game Folder: " + kGame,
                  kP + "MGL Riot Games count: 1", kP + "Match found! LoL at " + kGame + "\\lol.exe",
                  kP + "Found: LoL -> " + kGame + "\\lol.exe", kP + "Scan completed! Found 1 games."));
}

TEST_F(RiotSearch, WithoutMetadataTheCompletionLineIsMissing) {
  DebugCapture log;
  EXPECT_THAT(RiotPlatformSearch({Signature("LoL", "lol.exe")}, ""), IsEmpty());
  EXPECT_THAT(
      log.Lines(),
      ElementsAre(kP + "Starting Riot Platform Search...", kP + "Checking JSON path: " + kJson,
                  kP + "JSON file not found: " + kJson,
                  kP + "Riot Launch Helper: ", kP + "Riot launch helper not found.",
                  kP + "Proceeding with game scan anyway (Fallback mode)...",
                  kP + "Checking Metadata path: " + kMetadata,
                  kP + "Metadata path not found or not a directory.", kP + "No Riot game folders found."));
}

TEST_F(RiotSearch, WithoutTheShellsFolderNothingIsEvenLookedFor) {
  DebugCapture log;
  EXPECT_EQ(GetRiotLaunchHelper(""), "");
  EXPECT_THAT(GetRiotGameFolders(""), IsEmpty());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

// The helper

TEST_F(RiotSearch, AJsonFileWithoutAHelperIsNotMissing) {
  desktop_.File(kJson, "{}");
  DebugCapture log;
  EXPECT_EQ(GetRiotLaunchHelper(kAppData), "");
  EXPECT_THAT(log.Lines(), ElementsAre(kP + "Checking JSON path: " + kJson));
}

TEST_F(RiotSearch, AJsonFileThatCannotBeOpenedGivesNoHelper) {
  desktop_.File(kJson, RiotClientInstallsText("x"));
  EXPECT_EQ(GetRiotLaunchHelper(kAppData), "x");
  const tests::LockedPath lock(kJson);
  DebugCapture log;
  EXPECT_EQ(GetRiotLaunchHelper(kAppData), "");
  EXPECT_THAT(log.Lines(), ElementsAre(kP + "Checking JSON path: " + kJson));
}

TEST_F(RiotSearch, AJsonFileThatCannotBeAskedForIsAnError) {
  DebugCapture log;
  EXPECT_EQ(GetRiotLaunchHelper(tests::kUnaskablePath), "");
  ASSERT_THAT(log.Lines(), SizeIs(2));
  EXPECT_EQ(log.Lines()[0],
            kP + "Checking JSON path: " + tests::kUnaskablePath + "\\Riot Games\\RiotClientInstalls.json");
  EXPECT_THAT(log.Lines()[1], StartsWith(kP + "Error getting Riot launch helper: "));
}

TEST_F(RiotSearch, JsonFilesWithoutMeaningGiveNoHelper) {
  for (const std::string& text : tests::MeaninglessTexts(RiotClientInstallsText("x"))) {
    desktop_.File(kJson, text);
    EXPECT_EQ(GetRiotLaunchHelper(kAppData), "");
  }
}

// The folders

TEST_F(RiotSearch, OnlyLiveDirectoriesAreLookedAt) {
  Product("a.live", kGame);
  Product("b.live.x", kRoot + "\\b");
  Product("игра.live", kRoot + "\\游戏");
  Product("c.pbe", kRoot + "\\c");
  Product("d.LIVE", kRoot + "\\d");
  desktop_.File(kMetadata + "\\file.live", "x");
  Product("sub\\e.live", kRoot + "\\e");
  DebugCapture log;
  EXPECT_THAT(GetRiotGameFolders(kAppData), ElementsAre(kGame, kRoot + "\\b", kRoot + "\\游戏"));
  EXPECT_THAT(log.LinesWith(kP + "Found live"),
              ElementsAre(kP + "Found live directory: a.live", kP + "Found live directory: b.live.x",
                          kP + "Found live directory: игра.live"));
}

TEST_F(RiotSearch, OnlyTheFirstYamlFileIsRead) {
  const std::string product = kMetadata + "\\a.live\\";
  desktop_.File(product + "1.txt", RiotProductSettingsText(kRoot));
  desktop_.Folder(product + "2.yaml");
  desktop_.File(product + "3.yaml.bak", "nothing here\n");
  desktop_.File(product + "4.yaml", RiotProductSettingsText(kGame));
  desktop_.Folder(kGame);
  DebugCapture log;
  EXPECT_THAT(GetRiotGameFolders(kAppData), IsEmpty());
  EXPECT_THAT(log.Lines(),
              ElementsAre(kP + "Checking Metadata path: " + kMetadata, kP + "Found live directory: a.live",
                          kP + "Found YAML file: 3.yaml.bak",
                          kP + "Parsed game folder: ", kP + "Game folder from YAML invalid or not exists: "));
}

TEST_F(RiotSearch, ADirectoryWithoutAYamlFileIsPassedOver) {
  desktop_.File(kMetadata + "\\a.live\\b.YAML", RiotProductSettingsText(kRoot));
  DebugCapture log;
  EXPECT_THAT(GetRiotGameFolders(kAppData), IsEmpty());
  EXPECT_THAT(log.Lines(),
              ElementsAre(kP + "Checking Metadata path: " + kMetadata, kP + "Found live directory: a.live"));
}

TEST_F(RiotSearch, AFolderThatIsGoneIsNamed) {
  desktop_.File(kMetadata + "\\a.live\\a.yaml", RiotProductSettingsText(kRoot + "\\gone"));
  DebugCapture log;
  EXPECT_THAT(Scan({}), IsEmpty());
  EXPECT_THAT(log.Lines(),
              testing::Contains(kP + "Game folder from YAML invalid or not exists: " + kRoot + "\\gone"));
  EXPECT_EQ(log.Lines().back(), kP + "No Riot game folders found.");
}

TEST_F(RiotSearch, AFolderThatIsAFileIsPassedOverLater) {
  desktop_.File(kRoot + "\\file");
  desktop_.File(kMetadata + "\\a.live\\a.yaml", RiotProductSettingsText(kRoot + "\\file"));
  DebugCapture log;
  EXPECT_THAT(Scan({}), IsEmpty());
  const std::vector<std::string> lines = log.Lines();
  ASSERT_GE(lines.size(), 5u);
  EXPECT_THAT(std::vector<std::string>(lines.end() - 5, lines.end()),
              ElementsAre(kP + "Found 1 Riot game folders.", kP + "Game Folder: " + kRoot + "\\file",
                          kP + "MGL Riot Games count: 0",
                          kP + "Folder does not exist or is not a directory: " + kRoot + "\\file",
                          kP + "Scan completed! Found 0 games."));
}

TEST_F(RiotSearch, AYamlFileThatCannotBeOpenedNamesNoFolder) {
  Product("a.live", kGame);
  const tests::LockedPath lock(kMetadata + "\\a.live\\a.live.yaml");
  DebugCapture log;
  EXPECT_THAT(GetRiotGameFolders(kAppData), IsEmpty());
  EXPECT_THAT(log.Lines(), testing::Contains(kP + "Parsed game folder: "));
  EXPECT_EQ(ReadYamlInstallPath(kRoot + "\\nothing"), "");
}

TEST_F(RiotSearch, ADirectoryThatCannotBeListedEndsTheList) {
  Product("a.live", kGame);
  Product("b.live", kRoot);
  Product("c.live", kRoot);
  desktop_.File(kGame + "\\lol.exe");
  const tests::LockedPath lock(kMetadata + "\\b.live");
  DebugCapture log;
  EXPECT_THAT(Scan({Signature("LoL", "lol.exe")}), ElementsAre(Expected("LoL", kGame + "\\lol.exe")))
      << "what was found before it counts";
  EXPECT_THAT(log.LinesWith(kP + "Error"), ElementsAre(StartsWith(kP + "Error getting Riot game folders: ")));
  EXPECT_THAT(log.Lines(), testing::Contains(kP + "Found 1 Riot game folders."));
}

TEST_F(RiotSearch, MetadataThatCannotBeAskedForIsAnError) {
  DebugCapture log;
  EXPECT_THAT(GetRiotGameFolders(tests::kUnaskablePath), IsEmpty());
  ASSERT_THAT(log.Lines(), SizeIs(2));
  EXPECT_THAT(log.Lines()[1], StartsWith(kP + "Error getting Riot game folders: "));
}

TEST_F(RiotSearch, AGameFolderThatCannotBeAskedForEndsTheList) {
  desktop_.File(kMetadata + "\\a.live\\a.yaml", RiotProductSettingsText(tests::kUnaskablePath));
  DebugCapture log;
  EXPECT_THAT(GetRiotGameFolders(kAppData), IsEmpty());
  EXPECT_THAT(log.Lines().back(), StartsWith(kP + "Error getting Riot game folders: "));
}

TEST_F(RiotSearch, AMetadataFolderThatIsAFileIsNamed) {
  desktop_.File(kMetadata, "x");
  DebugCapture log;
  EXPECT_THAT(GetRiotGameFolders(kAppData), IsEmpty());
  EXPECT_EQ(log.Lines().back(), kP + "Metadata path not found or not a directory.");
}

TEST_F(RiotSearch, AYamlFileIsReadAsText) {
  desktop_.Folder(kRoot);
  desktop_.File(kMetadata + "\\a.live\\a.yaml", "product_install_full_path: \"" + kRoot + "\"\r\nx: y\r\n");
  EXPECT_THAT(GetRiotGameFolders(kAppData), ElementsAre(kRoot)) << "the quote stands at the line's end";
}

// The match

TEST_F(RiotSearch, TheLowerKeyInByteOrderWins) {
  Product("a.live", kGame);
  desktop_.File(kGame + "\\a.exe");
  desktop_.File(kGame + "\\Z.exe");
  DebugCapture log;
  EXPECT_THAT(Scan({Signature("Lower", "a.exe"), Signature("Upper", "Z.exe")}),
              ElementsAre(Expected("Upper", kGame + "\\Z.exe")))
      << "one game for each folder";
  EXPECT_THAT(log.LinesWith(kP + "Match"), SizeIs(1));
}

TEST_F(RiotSearch, EqualFoldersGiveEqualResults) {
  Product("a.live", kGame);
  Product("b.live", kGame);
  desktop_.File(kGame + "\\a.exe");
  const std::string expected = Expected("A", kGame + "\\a.exe");
  EXPECT_THAT(Scan({Signature("A", "a.exe")}), ElementsAre(expected, expected));
}

TEST_F(RiotSearch, OnlyRiotsSignaturesWithARunningExeCount) {
  Product("a.live", kGame);
  desktop_.File(kGame + "\\a.exe");
  GameSignature withoutExe = Signature("Without", "");
  withoutExe.DefaultExe = "a.exe";
  GameSignature ofAnotherKind = Signature("Other", "a.exe");
  ofAnotherKind.SourceKind = kSourceMihoyo;
  DebugCapture log;
  EXPECT_THAT(Scan({withoutExe, ofAnotherKind}), IsEmpty());
  EXPECT_THAT(log.Lines(), testing::Contains(kP + "MGL Riot Games count: 0"));
  EXPECT_THAT(Scan({Signature("First", "a.exe"), Signature("Second", "a.exe")}),
              ElementsAre(Expected("Second", kGame + "\\a.exe")));
}

TEST_F(RiotSearch, AFolderIsNoExecutable) {
  Product("a.live", kGame);
  desktop_.Folder(kGame + "\\a.exe");
  EXPECT_THAT(Scan({Signature("A", "a.exe")}), IsEmpty());
}

TEST_F(RiotSearch, ValorantIsOnlyMentioned) {
  Product("a.live", kGame);
  DebugCapture log;
  RiotPlatformSearch({Signature("VALORANT", "1.exe"), Signature("The VALORANT game", "2.exe"),
                      Signature("Valorant", "3.exe"), Signature("VALORAN", "4.exe")},
                     "");
  EXPECT_THAT(log.LinesWith(kP + "Checking VALORANT"),
              ElementsAre(kP + "Checking VALORANT: " + kGame + "\\1.exe",
                          kP + "Checking VALORANT: " + kGame + "\\2.exe"));
}

TEST_F(RiotSearch, TheCandidateIsMadeFull) {
  Product("a.live", kGame);
  desktop_.File(kRoot + "\\игра é\\a.exe");
  GameSignature signature = Signature("A", "..\\..\\игра é\\a.exe");
  signature.LaunchUrl = "";
  EXPECT_THAT(Scan({signature}), ElementsAre("A|" + kRoot + "\\игра é\\a.exe||Riot Platform||1|0|"));
}

TEST_F(RiotSearch, YamlFilesWithoutMeaningNameNoFolder) {
  for (const std::string& text : tests::MeaninglessTexts(RiotProductSettingsText(kRoot))) {
    desktop_.File(kMetadata + "\\a.live\\a.yaml", text);
    EXPECT_THAT(GetRiotGameFolders(kAppData), IsEmpty());
  }
}

}  // namespace
}  // namespace tarnwick
