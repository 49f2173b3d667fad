#include "matching/uninstall_registry_search.h"

#include "support/strategy_fixture.h"
#include "support/uninstall_key.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using tests::Describe;
using tests::kOddName;
using tests::SearchLog;
using tests::WithResultFields;

const std::string kRoot = "C:\\TarnwickTest\\Uninstall\\";
const std::string& kKey = tests::kUninstallKey;
const std::string kGuid = "7A9C1F40-1111-4000-8000-7461726E7769";
const std::string kOtherGuid = "7A9C1F40-2222-4000-8000-7461726E7769";
const std::string kZeroGuid = "00000000-0000-0000-0000-000000000000";

class UninstallSearch : public tests::StrategyTest {
 protected:
  GameSignature Install(const std::string& name, const std::string& guid = kGuid) {
    GameSignature signature;
    signature.DisplayName = name;
    signature.GameGUID = guid;
    signature.DefaultFolderExe = "bin\\foo.exe";
    desktop_.String(kKey + "{" + guid + "}", "InstallLocation", kRoot + name);
    desktop_.File(kRoot + name + "\\bin\\foo.exe");
    return signature;
  }
};

TEST_F(UninstallSearch, LogsItsFrameForNoGames) {
  EXPECT_THAT(ScanUninstallSearch({}), IsEmpty());
  EXPECT_THAT(capture_.Raw(), ElementsAre("[Tarnwick] [UninstallSearch] Starting Uninstall Search...\n",
                                          "[Tarnwick] [UninstallSearch] Scan completed! Found 0 games.\n"));
}

TEST_F(UninstallSearch, ReportsAnInstalledGameWithAllFields) {
  const GameSignature game = WithResultFields(Install("Foo Bar"));
  desktop_.String(kKey + "{" + kGuid + "}", "DisplayIcon", "C:\\icons\\foo.ico,1");
  EXPECT_THAT(Describe(ScanUninstallSearch({game})),
              ElementsAre("Foo Bar|" + kRoot +
                          "Foo Bar\\bin\\foo.exe|foo://run|Uninstall Registry|C:\\icons\\foo.ico,1|1|0|"));
  EXPECT_THAT(capture_.Raw(),
              ElementsAreArray(SearchLog("Uninstall", {"Foo Bar -> " + kRoot + "Foo Bar\\bin\\foo.exe"})));
}

TEST_F(UninstallSearch, TheIconMayBeMissing) {
  EXPECT_THAT(Describe(ScanUninstallSearch({Install(kOddName)})),
              ElementsAre(kOddName + "|" + kRoot + kOddName + "\\bin\\foo.exe||Uninstall Registry||1|0|"));
}

TEST_F(UninstallSearch, TrailingSeparatorsOfTheFolderMakeNoDifference) {
  const GameSignature game = Install("Foo");
  for (const std::string tail : {"\\", "/", "\\\\//\\"}) {
    desktop_.String(kKey + "{" + kGuid + "}", "InstallLocation", kRoot + "Foo" + tail);
    EXPECT_THAT(Describe(ScanUninstallSearch({game})),
                ElementsAre("Foo|" + kRoot + "Foo\\bin\\foo.exe||Uninstall Registry||1|0|"));
  }
}

TEST_F(UninstallSearch, PassesOverGamesWithoutAGuidAndThoseOfSteam) {
  GameSignature withoutGuid = Install("A");
  withoutGuid.GameGUID.clear();
  GameSignature zero = Install("B", kZeroGuid);
  GameSignature steam = Install("C");
  steam.SourceKind = kSourceSteam;
  EXPECT_THAT(ScanUninstallSearch({withoutGuid, zero, steam}), IsEmpty());
  EXPECT_THAT(capture_.Lines().size(), 2u);
}

TEST_F(UninstallSearch, TheRegistryKnowsGuidsInAnyCase) {
  GameSignature game = Install("Foo");
  game.GameGUID = "7a9c1f40-1111-4000-8000-7461726e7769";
  EXPECT_EQ(ScanUninstallSearch({game}).size(), 1u);
}

TEST_F(UninstallSearch, AGuidWithBracesIsAnotherKey) {
  GameSignature game = Install("Foo");
  game.GameGUID = "{" + kGuid + "}";
  EXPECT_THAT(ScanUninstallSearch({game}), IsEmpty());
}

TEST_F(UninstallSearch, FindsAKeyOfThe32BitView) {
  GameSignature game;
  game.DisplayName = "Foo";
  game.GameGUID = kGuid;
  game.DefaultFolderExe = "foo.exe";
  desktop_.String(kKey + "{" + kGuid + "}", "InstallLocation", kRoot + "Foo", desktop::View::k32);
  desktop_.File(kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ScanUninstallSearch({game}).size(), 1u);
}

TEST_F(UninstallSearch, MissingKeysValuesAndFilesAreSilent) {
  GameSignature withoutKey = Install("A");
  withoutKey.GameGUID = "7A9C1F40-3333-4000-8000-7461726E7769";
  desktop_.String(kKey + "{" + kOtherGuid + "}", "DisplayIcon", "x");
  GameSignature withoutFolder = withoutKey;
  withoutFolder.GameGUID = kOtherGuid;
  GameSignature withoutFile = Install("B");
  withoutFile.DefaultFolderExe = "missing.exe";
  EXPECT_THAT(ScanUninstallSearch({withoutKey, withoutFolder, withoutFile}), IsEmpty());
  EXPECT_THAT(capture_.Lines().size(), 2u);
}

TEST_F(UninstallSearch, AFailureCostsOneGameAndALine) {
  GameSignature broken = Install("Broken");
  broken.DefaultFolder = "D:";
  broken.DefaultExe = "foo.exe";
  std::string reason;
  try {
    ResolveUninstallExe(kRoot + "Broken", broken);
  } catch (const std::out_of_range& error) {
    reason = error.what();
  }
  ASSERT_NE(reason, "");
  EXPECT_EQ(ScanUninstallSearch({broken, Install("Whole", kOtherGuid)}).size(), 1u);
  EXPECT_THAT(capture_.Lines(),
              ElementsAre("[UninstallSearch] Starting Uninstall Search...",
                          "[UninstallSearch] Error finding game (Broken): " + reason,
                          "[UninstallSearch] Found: Whole -> " + kRoot + "Whole\\bin\\foo.exe",
                          "[UninstallSearch] Scan completed! Found 1 games."));
}

class ResolveUninstall : public tests::ResolveTest {
 protected:
  ResolveUninstall() : ResolveTest(kRoot) {}

  std::string Resolve(const std::string& path) const { return ResolveUninstallExe(kRoot + path, signature_); }
};

TEST_F(ResolveUninstall, ListEntriesAreTriedInTheirOrderPlainBeforeMerged) {
  signature_.DefaultFolderExe = "z\\last.exe|Foo\\a.exe";
  const std::string merged = Make("Foo\\a.exe");
  EXPECT_EQ(Resolve("Foo"), merged);
  const std::string plain = Make("Foo\\Foo\\a.exe");
  EXPECT_EQ(Resolve("Foo"), plain);
  const std::string first = Make("Foo\\z\\last.exe");
  EXPECT_EQ(Resolve("Foo"), first);
}

TEST_F(ResolveUninstall, TheInstallFolderTakesTheRoleOfTheDrive) {
  signature_.DefaultFolder = "C:\\Games\\Foo";
  signature_.DefaultExe = "foo.exe";
  const std::string byTail = Make("Install\\Foo\\foo.exe");
  EXPECT_EQ(Resolve("Install"), byTail);
  const std::string whole = Make("Install\\Games\\Foo\\foo.exe");
  EXPECT_EQ(Resolve("Install"), whole);
}

TEST_F(ResolveUninstall, TheListComesBeforeTheDefaultFolder) {
  signature_.DefaultFolderExe = "a.exe";
  signature_.DefaultFolder = "Games\\Foo";
  signature_.DefaultExe = "foo.exe";
  Make("Install\\Games\\Foo\\foo.exe");
  const std::string listed = Make("Install\\a.exe");
  EXPECT_EQ(Resolve("Install"), listed);
}

TEST_F(ResolveUninstall, TrailingSeparatorsOfTheDefaultFolderAreDropped) {
  signature_.DefaultFolder = "C:/Games/Foo/\\/";
  signature_.DefaultExe = "foo.exe";
  const std::string byTail = Make("Install\\Foo\\foo.exe");
  EXPECT_EQ(Resolve("Install"), byTail);
}

TEST_F(ResolveUninstall, AFolderOfOneSegmentHasNoTail) {
  signature_.DefaultFolder = "Foo";
  signature_.DefaultExe = "foo.exe";
  EXPECT_EQ(Resolve("Install"), "");
  Make("Install\\Foo\\foo.exe");  // by the whole folder
  EXPECT_EQ(Resolve("Install"), kRoot + "Install\\Foo\\foo.exe");
}

TEST_F(ResolveUninstall, TokensAreExpandedBeforeTheTailIsCut) {
  signature_.DefaultFolder = "%ProgramFiles(x86)%\\Foo";
  signature_.DefaultExe = "foo.exe";
  const std::string byTail = Make("Install\\Foo\\foo.exe");
  EXPECT_EQ(Resolve("Install"), byTail);
}

TEST_F(ResolveUninstall, TheExecutableIsNotTriedInTheInstallFolderItself) {
  signature_.DefaultFolder = "C:\\Games\\Foo";
  signature_.DefaultExe = "foo.exe";
  Make("Install\\foo.exe");
  EXPECT_EQ(Resolve("Install"), "");
}

TEST_F(ResolveUninstall, NeedsFolderAndExecutableBothOrAList) {
  Make("Install\\foo.exe");
  signature_.DefaultExe = "foo.exe";
  EXPECT_EQ(Resolve("Install"), "");
  signature_ = GameSignature();
  signature_.DefaultFolder = "Install";
  EXPECT_EQ(Resolve("Install"), "");
}

TEST_F(ResolveUninstall, The32FieldsTakePartThroughThePickers) {
  signature_.DefaultFolder32 = "C:\\Games\\Foo";
  signature_.DefaultExe32 = "foo32.exe";
  const std::string exe = Make("Install\\Foo\\foo32.exe");
  EXPECT_EQ(Resolve("Install"), exe);
  signature_.DefaultExe = "plain.exe";
  EXPECT_EQ(Resolve("Install"), "");
}

TEST_F(ResolveUninstall, ThrowsForADefaultFolderThatIsADriveAlone) {
  signature_.DefaultFolder = "D:";
  signature_.DefaultExe = "foo.exe";
  EXPECT_THROW(Resolve("Install"), std::out_of_range);
}

}  // namespace
}  // namespace tarnwick
