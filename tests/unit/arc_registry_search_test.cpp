#include "launchers/arc_registry_search.h"

#include "foundation/conversions.h"
#include "support/strategy_fixture.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tarnwick {
namespace {

using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kRoot = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Perfect World Entertainment\Core\)";
const std::string kFolder = R"(C:\TarnwickTest\Arc\)";

std::string Expected(const std::string& name, const std::string& exe, const std::string& url,
                     const std::string& subkey) {
  return name + "|" + exe + "|" + url + "|Arc: " + kRoot + subkey + "||1|0|";
}

GameSignature Signature(const std::string& name, const std::string& key, const std::string& url) {
  GameSignature signature;
  signature.DisplayName = name;
  signature.RegistryKey = key;
  signature.LaunchUrl = url;
  signature.SourceKind = kSourceArc;
  return signature;
}

class ArcRegistrySearchTest : public tests::StrategyTest {
 protected:
  std::string Game(const std::string& name) {
    const std::string exe = kFolder + name + ".exe";
    desktop_.File(exe);
    Client(name, exe);
    desktop_.String(kRoot + name, "InstallPath", kFolder, View::k32);
    return exe;
  }

  void Client(const std::string& name, const std::string& client) {
    desktop_.String(kRoot + name, "Client", client, View::k32);
  }

  std::vector<std::string> Search(const GameList& games = {}) {
    return tests::Describe(ArcRegistrySearch(games, "S-1-5-21"));
  }
};

TEST_F(ArcRegistrySearchTest, WritesTwoLinesWhereNothingIsInstalled) {
  EXPECT_THAT(Search(), IsEmpty());
  EXPECT_THAT(capture_.Lines(), ElementsAre("[ArcRegistrySearch] Starting Arc Registry Search...",
                                            "[ArcRegistrySearch] Scan completed! Found 0 games."));
}

TEST_F(ArcRegistrySearchTest, ReportsATitleWithoutASignatureByItsKeysName) {
  const std::string exe = Game("9000en");
  EXPECT_THAT(Search(), ElementsAre(Expected("9000en", exe, "", "9000en")));
  EXPECT_THAT(capture_.Lines(), ElementsAre("[ArcRegistrySearch] Starting Arc Registry Search...",
                                            "[ArcRegistrySearch] Found: 9000en -> " + exe,
                                            "[ArcRegistrySearch] Scan completed! Found 1 games."));
}

TEST_F(ArcRegistrySearchTest, TakesNameAndUrlFromTheSignature) {
  const std::string exe = Game("9000en");
  EXPECT_THAT(Search({Signature("Never\xE2\x84\xA2 Winter", kRoot + "9000en", "arc://play/nw")}),
              ElementsAre(Expected("Never\xE2\x84\xA2 Winter", exe, "arc://play/nw", "9000en")));
}

TEST_F(ArcRegistrySearchTest, TakesTheSignaturesNameEvenWhereItIsEmpty) {
  const std::string exe = Game("9000en");
  EXPECT_THAT(Search({Signature("", kRoot + "9000en", "")}), ElementsAre(Expected("", exe, "", "9000en")));
  EXPECT_EQ(capture_.Lines()[1], "[ArcRegistrySearch] Found:  -> " + exe);
}

TEST_F(ArcRegistrySearchTest, ComparesTheSignaturesKeyByteForByte) {
  const std::string exe = Game("Game");
  const std::string expected = Expected("Game", exe, "", "Game");
  EXPECT_THAT(Search({Signature("Other", kRoot + "game", "")}), ElementsAre(expected));
  EXPECT_THAT(Search({Signature("Other", kRoot + "Game\\", "")}), ElementsAre(expected));
  EXPECT_THAT(Search({Signature("Other", R"(SOFTWARE\Perfect World Entertainment\Core\Game)", "")}),
              ElementsAre(expected));
}

TEST_F(ArcRegistrySearchTest, TakesTheLaterOfTwoSignaturesOfOneKey) {
  const std::string exe = Game("Game");
  EXPECT_THAT(
      Search({Signature("Early", kRoot + "Game", "arc://1"), Signature("Late", kRoot + "Game", "arc://2")}),
      ElementsAre(Expected("Late", exe, "arc://2", "Game")));
}

TEST_F(ArcRegistrySearchTest, IgnoresSignaturesOfOtherSources) {
  const std::string exe = Game("Game");
  GameSignature other = Signature("Other", kRoot + "Game", "x://1");
  other.SourceKind = kSourceBethesda;
  EXPECT_THAT(Search({other}), ElementsAre(Expected("Game", exe, "", "Game")));
}

TEST_F(ArcRegistrySearchTest, RemovesQuotesBeforeTheFileTest) {
  const std::string exe = Game("Game");
  Client("Game", "\"" + exe + "\"");
  EXPECT_THAT(Search(), ElementsAre(Expected("Game", exe, "", "Game")));
}

TEST_F(ArcRegistrySearchTest, MakesARelativeClientAbsolute) {
  const auto before = std::filesystem::current_path();
  Game("Game");
  Client("Game", R"(Below\..\Game.exe)");
  std::filesystem::current_path(std::filesystem::path(Utf8ToWide(kFolder)));
  const auto results = Search();
  std::filesystem::current_path(before);
  EXPECT_THAT(results, ElementsAre(Expected("Game", kFolder + "Game.exe", "", "Game")));
}

TEST_F(ArcRegistrySearchTest, SkipsAKeyWithoutInstallPathOrClient) {
  desktop_.File(kFolder + "a.exe");
  Client("No path", kFolder + "a.exe");
  desktop_.String(kRoot + "No client", "InstallPath", kFolder, View::k32);
  EXPECT_THAT(Search(), IsEmpty());
  EXPECT_EQ(capture_.Lines().size(), 2u);
}

TEST_F(ArcRegistrySearchTest, ContentsItselfWithAnEmptyInstallPath) {
  Game("Game");
  desktop_.String(kRoot + "Game", "InstallPath", "", View::k32);
  EXPECT_EQ(Search().size(), 1u);
}

TEST_F(ArcRegistrySearchTest, SkipsClientsThatAreNoFiles) {
  Game("Gone");
  Client("Gone", kFolder + "missing.exe");
  Game("Folder");
  Client("Folder", kFolder);
  Game("Empty");
  Client("Empty", "");
  Game("Lone");
  Client("Lone", "\"");
  EXPECT_THAT(Search(), IsEmpty());
}

TEST_F(ArcRegistrySearchTest, FillsEveryFieldOfAnEntry) {
  const std::string exe = Game("Game");
  desktop_.String(kRoot + "Game", "InstallPath", R"("C:\Arc\Game")", View::k32);
  desktop_.String(kRoot + "Game", "Launcher", R"("C:\Arc\Launcher.exe")", View::k32);
  const auto entries = GetArcGamesFromRegistry();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].subKeyName, "Game");
  EXPECT_EQ(entries[0].clientPath, exe);
  EXPECT_EQ(entries[0].installPath, R"(C:\Arc\Game)");
  EXPECT_EQ(entries[0].launcher, R"(C:\Arc\Launcher.exe)");
  EXPECT_EQ(entries[0].registryKey, kRoot + "Game");
  EXPECT_EQ(entries[0].valueName, "Client");
}

TEST_F(ArcRegistrySearchTest, LeavesTheLauncherEmptyWhereThereIsNone) {
  Game("Game");
  const auto entries = GetArcGamesFromRegistry();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].launcher, "");
}

TEST_F(ArcRegistrySearchTest, NeverReadsThe64BitView) {
  desktop_.File(kFolder + "Wide.exe");
  desktop_.String(kRoot + "Wide", "Client", kFolder + "Wide.exe", View::k64);
  desktop_.String(kRoot + "Wide", "InstallPath", kFolder, View::k64);
  EXPECT_THAT(Search(), IsEmpty());
}

TEST_F(ArcRegistrySearchTest, ReadsNamesOfAllLanguages) {
  const std::string name = "Игра 完美世界 é";
  const std::string exe = Game(name);
  EXPECT_THAT(Search({Signature("Идеал", kRoot + name, "arc://и")}),
              ElementsAre(Expected("Идеал", exe, "arc://и", name)));
}

TEST_F(ArcRegistrySearchTest, KeepsWhatItReadBeforeAFailure) {
  const std::string exe = Game("A");
  Game("B");
  Client("B", std::string(1800, 'c'));
  EXPECT_THAT(tests::WithoutMemory(1800, [&] { return Search(); }), ElementsAre(Expected("A", exe, "", "A")));
  EXPECT_THAT(capture_.Lines(), ElementsAre("[ArcRegistrySearch] Starting Arc Registry Search...",
                                            "[ArcRegistrySearch] Error reading Arc registry: std::bad_alloc",
                                            "[ArcRegistrySearch] Found: A -> " + exe,
                                            "[ArcRegistrySearch] Scan completed! Found 1 games."));
}

}  // namespace
}  // namespace tarnwick
