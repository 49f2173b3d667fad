#include "launchers/bethesda_registry.h"

#include "foundation/conversions.h"
#include "support/strategy_fixture.h"
#include "support/uninstall_key.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tarnwick {
namespace {

using desktop::Desktop;
using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kSoftware = R"(HKEY_LOCAL_MACHINE\SOFTWARE\)";
const std::string kLauncherKey = kSoftware + R"(Bethesda Softworks\Bethesda.net)";
const std::string& kUninstall = tests::kUninstallKey;
const std::string kFolder = R"(C:\TarnwickTest\Bethesda\)";
const std::string kStart = "[BethesdaRegistry] Starting Bethesda Registry Search...";
const std::string kNotInstalled = "[BethesdaRegistry] Bethesda launcher not installed.";
const std::string kNoGames = "[BethesdaRegistry] No Bethesda games found.";

GameSignature Signature(const std::string& name, const std::string& url, const std::string& exe) {
  GameSignature signature;
  signature.DisplayName = name;
  signature.LaunchUrl = url;
  signature.DefaultExe = exe;
  signature.SourceKind = kSourceBethesda;
  return signature;
}

class BethesdaRegistryTest : public tests::StrategyTest {
 protected:
  void Launcher() {
    desktop_.String(kLauncherKey, "installLocation", kFolder + "Launcher", View::k32);
    desktop_.File(kFolder + R"(Launcher\BethesdaNetLauncher.exe)");
  }

  void Value(const std::string& key, const std::string& name, const std::string& text) {
    desktop_.String(kUninstall + key, name, text, View::k32);
  }

  // A whole record named `key`, with product 8, a folder, and an executable game.exe in it.
  std::string Game(const std::string& key) {
    desktop_.File(kFolder + key + R"(\game.exe)");
    Value(key, "UninstallString", "bethesdanet://uninstall/8");
    Value(key, "Path", kFolder + key);
    Value(key, "ProductID", "8");
    Value(key, "DisplayName", key + " of the registry");
    return kFolder + key + R"(\game.exe)";
  }

  std::vector<std::string> Search(const GameList& games = {
                                      Signature("Doom", "bethesdanet://run/8", "game.exe")}) {
    return tests::Describe(BethesdaRegistrySearch(games, "S-1-5-21"));
  }
};

std::string Expected(const std::string& name, const std::string& exe, const std::string& key) {
  return name + "|" + exe + "|bethesdanet://run/8|Bethesda: " + kUninstall + key + "||1|0|";
}

TEST_F(BethesdaRegistryTest, EndsWithoutTheLauncher) {
  Game("Doom");
  EXPECT_THAT(Search(), IsEmpty());
  EXPECT_THAT(capture_.Lines(), ElementsAre(kStart, kNotInstalled));
}

TEST_F(BethesdaRegistryTest, EndsWhereTheLaunchersExecutableIsGone) {
  Game("Doom");
  desktop_.String(kLauncherKey, "installLocation", kFolder + "Launcher", View::k32);
  desktop_.Folder(kFolder + "Launcher");
  EXPECT_THAT(Search(), IsEmpty());
  EXPECT_THAT(capture_.Lines(), ElementsAre(kStart, kNotInstalled));
}

TEST_F(BethesdaRegistryTest, EndsWhereTheLaunchersFolderIsEmptyText) {
  Game("Doom");
  desktop_.String(kLauncherKey, "installLocation", "", View::k32);
  EXPECT_THAT(Search(), IsEmpty());
  EXPECT_THAT(capture_.Lines(), ElementsAre(kStart, kNotInstalled));
}

TEST_F(BethesdaRegistryTest, KeepsQuotesAroundTheLaunchersFolder) {
  Launcher();
  desktop_.String(kLauncherKey, "installLocation", "\"" + kFolder + "Launcher\"", View::k32);
  EXPECT_FALSE(IsBethesdaLauncherInstalled());
}

TEST_F(BethesdaRegistryTest, ReadsTheLaunchersFolderFromEitherView) {
  Launcher();
  EXPECT_TRUE(IsBethesdaLauncherInstalled());
  desktop_.Remove();
  EXPECT_FALSE(IsBethesdaLauncherInstalled());
  desktop_.String(kLauncherKey, "installLocation", kFolder + "Launcher", View::k64);
  desktop_.File(kFolder + R"(Launcher\BethesdaNetLauncher.exe)");
  EXPECT_TRUE(IsBethesdaLauncherInstalled());
}

TEST_F(BethesdaRegistryTest, CountsAFailureAsNotInstalled) {
  Launcher();
  Game("Doom");
  desktop_.String(kLauncherKey, "installLocation", std::string(3000, 'l'), View::k32);
  {
    tests::FailingAllocation failing(3000);
    EXPECT_FALSE(IsBethesdaLauncherInstalled());
    EXPECT_THAT(BethesdaRegistrySearch({}, {}), IsEmpty());
  }
  EXPECT_THAT(capture_.Lines(), ElementsAre(kStart, kNotInstalled));
}

TEST_F(BethesdaRegistryTest, EndsWithoutGames) {
  Launcher();
  Value("Other program", "UninstallString", R"(C:\Other\unins000.exe)");
  EXPECT_THAT(Search(), IsEmpty());
  EXPECT_THAT(capture_.Lines(), ElementsAre(kStart, kNoGames));
}

TEST_F(BethesdaRegistryTest, ReportsARecordWithASignature) {
  Launcher();
  const std::string exe = Game("Doom");
  EXPECT_THAT(Search(), ElementsAre(Expected("Doom", exe, "Doom")));
  EXPECT_THAT(capture_.Lines(), ElementsAre(kStart, "[BethesdaRegistry] Found: Doom -> " + exe,
                                            "[BethesdaRegistry] Scan completed! Found 1 games."));
}

TEST_F(BethesdaRegistryTest, IsSilentAboutARecordWithoutASignature) {
  Launcher();
  Game("Doom");
  EXPECT_THAT(Search({}), IsEmpty());
  EXPECT_THAT(capture_.Lines(), ElementsAre(kStart, "[BethesdaRegistry] Scan completed! Found 0 games."));
}

TEST_F(BethesdaRegistryTest, FillsEveryFieldOfAnEntry) {
  Game("Doom");
  Value("Doom", "DisplayIcon", R"("C:\Icons\doom.ico")");
  const auto entries = GetBethesdaGamesFromRegistry();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].productId, "8");
  EXPECT_EQ(entries[0].displayName, "Doom of the registry");
  EXPECT_EQ(entries[0].installPath, kFolder + "Doom");
  EXPECT_EQ(entries[0].displayIcon, R"(C:\Icons\doom.ico)");
  EXPECT_EQ(entries[0].registryKey, kUninstall + "Doom");
  EXPECT_EQ(entries[0].valueName, "Path");
}

TEST_F(BethesdaRegistryTest, FindsTheUriAnywhereInTheUninstallString) {
  for (const std::string uninstall :
       {"\"bethesdanet://uninstall/8\"", R"("C:\Launcher\BethesdaNetLauncher.exe" bethesdanet://uninstall/8)",
        "bethesdanet://uninstall/8?keep=1", "bethesdanet://uninstall/x bethesdanet://uninstall/0",
        "bethesdanet://uninstall/bethesdanet://uninstall/9",
        "bethesdanet://uninstall/123456789012345678901234567890"}) {
    Game("Doom");
    Value("Doom", "UninstallString", uninstall);
    EXPECT_EQ(GetBethesdaGamesFromRegistry().size(), 1u) << uninstall;
  }
}

TEST_F(BethesdaRegistryTest, PassesOverOtherUninstallStrings) {
  for (const std::string uninstall :
       {"bethesdanet://uninstall/", "bethesdanet://uninstall/x8", "bethesdanet://uninstall//8",
        "bethesdanet://uninstall/:", "8bethesdanet://uninstall/bethesdanet://uninstall",
        "BethesdaNet://uninstall/8", "bethesdanet://run/8", "bethesdanet:/uninstall/8", "", "8"}) {
    Game("Doom");
    Value("Doom", "UninstallString", uninstall);
    EXPECT_THAT(GetBethesdaGamesFromRegistry(), IsEmpty()) << uninstall;
  }
}

TEST_F(BethesdaRegistryTest, FindsTheUriInTheLongestValueThatIsRead) {
  Game("Doom");
  Value("Doom", "UninstallString", "bethesdanet://uninstall/" + std::string(2000, '8'));
  EXPECT_EQ(GetBethesdaGamesFromRegistry().size(), 1u);
}

TEST_F(BethesdaRegistryTest, PassesOverARecordWithoutARequiredValue) {
  const std::vector<std::string> names = {"UninstallString", "Path", "ProductID", "DisplayName"};
  desktop_.Folder(kFolder + "Doom");
  for (const std::string& missing : names) {
    Desktop partial;
    for (const std::string& name : names) {
      if (name == missing) continue;
      const std::string text = name == "Path" ? kFolder + "Doom" : "bethesdanet://uninstall/8";
      partial.String(kUninstall + "Doom", name, text, View::k32);
    }
    EXPECT_THAT(GetBethesdaGamesFromRegistry(), IsEmpty()) << missing;
  }
}

TEST_F(BethesdaRegistryTest, TakesOnlyExistingFolders) {
  Game("Doom");
  Value("Doom", "Path", kFolder + R"(Doom\game.exe)");
  EXPECT_THAT(GetBethesdaGamesFromRegistry(), IsEmpty());
  Value("Doom", "Path", kFolder + "gone");
  EXPECT_THAT(GetBethesdaGamesFromRegistry(), IsEmpty());
  Value("Doom", "Path", "");
  EXPECT_THAT(GetBethesdaGamesFromRegistry(), IsEmpty());
  Value("Doom", "Path", "\"");
  EXPECT_THAT(GetBethesdaGamesFromRegistry(), IsEmpty());
}

TEST_F(BethesdaRegistryTest, RemovesQuotesAndMakesThePathAbsolute) {
  Game("Doom");
  Value("Doom", "Path", "\"" + kFolder + R"(Other\..\Doom")");
  const auto entries = GetBethesdaGamesFromRegistry();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].installPath, kFolder + "Doom");
}

TEST_F(BethesdaRegistryTest, TakesARelativePathFromTheCurrentFolder) {
  const auto before = std::filesystem::current_path();
  Game("Doom");
  Value("Doom", "Path", "Doom");
  std::filesystem::current_path(std::filesystem::path(Utf8ToWide(kFolder)));
  const auto entries = GetBethesdaGamesFromRegistry();
  std::filesystem::current_path(before);
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].installPath, kFolder + "Doom");
}

TEST_F(BethesdaRegistryTest, NeverReadsUninstallRecordsOfThe64BitView) {
  desktop_.Folder(kFolder + "Doom");
  for (const std::string name : {"UninstallString", "ProductID", "DisplayName"}) {
    desktop_.String(kUninstall + "Doom", name, "bethesdanet://uninstall/8", View::k64);
  }
  desktop_.String(kUninstall + "Doom", "Path", kFolder + "Doom", View::k64);
  EXPECT_THAT(GetBethesdaGamesFromRegistry(), IsEmpty());
}

TEST_F(BethesdaRegistryTest, ComparesTheRunUriWithCase) {
  Launcher();
  Game("Doom");
  EXPECT_THAT(Search({Signature("Doom", "Bethesdanet://run/8", "game.exe")}), IsEmpty());
  EXPECT_EQ(BuildBethesdaRunUri("8"), "bethesdanet://run/8");
}

TEST_F(BethesdaRegistryTest, ReportsNothingWithoutADefaultExe) {
  Launcher();
  Game("Doom");
  GameSignature signature = Signature("Doom", "bethesdanet://run/8", "");
  signature.DefaultExe64 = "game.exe";
  EXPECT_THAT(Search({signature}), IsEmpty());
  EXPECT_THAT(capture_.Lines(), ElementsAre(kStart, "[BethesdaRegistry] Scan completed! Found 0 games."));
}

TEST_F(BethesdaRegistryTest, ReportsNothingWhoseExecutableIsGone) {
  Launcher();
  Game("Doom");
  EXPECT_THAT(Search({Signature("Doom", "bethesdanet://run/8", "other.exe")}), IsEmpty());
}

TEST_F(BethesdaRegistryTest, TakesTheRecordsNameWhereTheSignatureHasNone) {
  Launcher();
  const std::string exe = Game("Doom");
  EXPECT_THAT(Search({Signature("", "bethesdanet://run/8", "game.exe")}),
              ElementsAre(Expected("Doom of the registry", exe, "Doom")));
}

TEST_F(BethesdaRegistryTest, LeavesTrademarkSignsInNames) {
  Launcher();
  const std::string exe = Game("Doom");
  EXPECT_THAT(Search({Signature("Doom\xC2\xAE", "bethesdanet://run/8", "game.exe")}),
              ElementsAre(Expected("Doom\xC2\xAE", exe, "Doom")));
}

TEST_F(BethesdaRegistryTest, TakesTheLaterOfTwoSignaturesOfOneUrl) {
  Launcher();
  const std::string exe = Game("Doom");
  EXPECT_THAT(Search({Signature("Early", "bethesdanet://run/8", "none.exe"),
                      Signature("Late", "bethesdanet://run/8", "game.exe")}),
              ElementsAre(Expected("Late", exe, "Doom")));
}

TEST_F(BethesdaRegistryTest, IgnoresSignaturesOfOtherSources) {
  Launcher();
  Game("Doom");
  GameSignature signature = Signature("Doom", "bethesdanet://run/8", "game.exe");
  signature.SourceKind = kSourceArc;
  EXPECT_THAT(Search({signature}), IsEmpty());
}

TEST_F(BethesdaRegistryTest, ReadsNamesOfAllLanguages) {
  Launcher();
  const std::string exe = Game("Дум 毁灭 é");
  EXPECT_THAT(Search({Signature("Дум", "bethesdanet://run/8", "game.exe")}),
              ElementsAre(Expected("Дум", exe, "Дум 毁灭 é")));
}

TEST_F(BethesdaRegistryTest, KeepsWhatItReadBeforeAFailure) {
  Launcher();
  const std::string exe = Game("A");
  Game("B");
  Value("B", "Comments", std::string(1800, 'c'));
  EXPECT_THAT(tests::WithoutMemory(1800, [&] { return Search(); }), ElementsAre(Expected("Doom", exe, "A")));
  EXPECT_THAT(capture_.Lines(),
              ElementsAre(kStart, "[BethesdaRegistry] Error reading Bethesda registry: std::bad_alloc",
                          "[BethesdaRegistry] Found: Doom -> " + exe,
                          "[BethesdaRegistry] Scan completed! Found 1 games."));
}

TEST_F(BethesdaRegistryTest, SaysThatThereAreNoGamesBehindAnEarlyFailure) {
  Launcher();
  Game("A");
  Value("A", "Comments", std::string(1800, 'c'));
  {
    tests::FailingAllocation failing(1800);
    EXPECT_THAT(BethesdaRegistrySearch({}, {}), IsEmpty());
  }
  EXPECT_THAT(
      capture_.Lines(),
      ElementsAre(kStart, "[BethesdaRegistry] Error reading Bethesda registry: std::bad_alloc", kNoGames));
}

}  // namespace
}  // namespace tarnwick
