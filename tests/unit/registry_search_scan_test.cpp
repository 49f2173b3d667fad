#include "matching/registry_search_scan.h"

#include "support/strategy_fixture.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using tests::Describe;
using tests::kOddName;
using tests::SearchLog;
using tests::WithResultFields;

const std::string kRoot = "C:\\TarnwickTest\\RegistrySearch\\";
const std::string kKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickTest\\RegistrySearch\\";

class RegistrySearchScan : public tests::StrategyTest {
 protected:
  GameSignature Install(const std::string& name) {
    const GameSignature signature = Signature(name);
    desktop_.String(signature.RegistryKey, "Path", kRoot + name);
    desktop_.File(kRoot + name + "\\foo.exe");
    return signature;
  }

  static GameSignature Signature(const std::string& name) {
    GameSignature signature;
    signature.DisplayName = name;
    signature.RegistryKey = kKey + name;
    signature.RegistryPathKeyName = "Path";
    signature.DefaultExe = "foo.exe";
    return signature;
  }
};

TEST_F(RegistrySearchScan, LogsItsFrameForNoGames) {
  EXPECT_THAT(ScanRegistrySearch({}, ""), IsEmpty());
  EXPECT_THAT(capture_.Raw(), ElementsAre("[Tarnwick] [RegistrySearch] Starting Registry Search...\n",
                                          "[Tarnwick] [RegistrySearch] Scan completed! Found 0 games.\n"));
}

TEST_F(RegistrySearchScan, ReportsAnInstalledGameWithAllFields) {
  const GameSignature game = WithResultFields(Install("Foo Bar"));
  EXPECT_THAT(Describe(ScanRegistrySearch({game}, "")),
              ElementsAre("Foo Bar|" + kRoot + "Foo Bar\\foo.exe|foo://run|Registry Search||1|0|"));
  EXPECT_THAT(capture_.Raw(),
              ElementsAreArray(SearchLog("Registry", {"Foo Bar -> " + kRoot + "Foo Bar\\foo.exe"})));
}

TEST_F(RegistrySearchScan, KeepsTheOrderOfTheCatalogue) {
  const GameList games = {Install("B"), Signature("Missing"), Install(kOddName), Install("A")};
  ScanRegistrySearch(games, "");
  EXPECT_THAT(capture_.Raw(),
              ElementsAreArray(SearchLog("Registry", {"B -> " + kRoot + "B\\foo.exe",
                                                      kOddName + " -> " + kRoot + kOddName + "\\foo.exe",
                                                      "A -> " + kRoot + "A\\foo.exe"})));
}

TEST_F(RegistrySearchScan, NeedsKeyAndValueName) {
  GameSignature withoutValueName = Install("A");
  desktop_.String(withoutValueName.RegistryKey, "InstallLocation", kRoot + "A");
  withoutValueName.RegistryPathKeyName.clear();
  GameSignature withoutKey = Install("B");
  withoutKey.RegistryKey.clear();
  EXPECT_THAT(ScanRegistrySearch({withoutValueName, withoutKey}, ""), IsEmpty());
}

TEST_F(RegistrySearchScan, TestsASteamGameOnlyWithoutALaunchUrl) {
  GameSignature game = Install("Foo");
  game.SourceKind = kSourceSteam;
  EXPECT_EQ(ScanRegistrySearch({game}, "").size(), 1u);
  game.LaunchUrl = "steam://run/1";
  EXPECT_THAT(ScanRegistrySearch({game}, ""), IsEmpty());
}

TEST_F(RegistrySearchScan, FallsBackOnASubkeyOfTheGamesName) {
  GameSignature game = Signature("Foo");
  game.RegistryKey = kKey;
  desktop_.String(kKey + "Sub", "DisplayName", "Foo");
  desktop_.String(kKey + "Sub", "InstallLocation", "C:\\Elsewhere");
  desktop_.String(kKey + "Sub", "Path", kRoot + "Foo");
  desktop_.File(kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ScanRegistrySearch({game}, "").size(), 1u);
}

TEST_F(RegistrySearchScan, RewritesTheUsersHive) {
  GameSignature game = Signature("Foo");
  game.RegistryKey = "HKEY_CURRENT_USER\\SOFTWARE\\TarnwickTest\\RegistrySearch";
  desktop_.String(game.RegistryKey, "Path", kRoot + "Foo");
  desktop_.File(kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ScanRegistrySearch({game}, "").size(), 1u);
  EXPECT_THAT(ScanRegistrySearch({game}, "S-1-5-21-no-such-user"), IsEmpty());
}

TEST_F(RegistrySearchScan, OpensAKeyOfTheOtherView) {
  const GameSignature game = Signature("Foo");
  desktop_.String(game.RegistryKey, "Path", kRoot + "Foo", desktop::View::k32);
  desktop_.File(kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ScanRegistrySearch({game}, "").size(), 1u);
}

TEST_F(RegistrySearchScan, AGameWithoutExecutablesHitsOnlyByAFileInTheInstallText) {
  GameSignature game = Install("Foo");
  game.DefaultExe.clear();
  game.DefaultFolderExe = "foo.exe";
  EXPECT_THAT(ScanRegistrySearch({game}, ""), IsEmpty());
  desktop_.String(game.RegistryKey, "Path", kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ScanRegistrySearch({game}, "").size(), 1u);
}

class ResolveRegistrySearch : public tests::ResolveTest {
 protected:
  ResolveRegistrySearch() : ResolveTest(kRoot) {}

  std::string Resolve(const std::string& path) const {
    return ResolveRegistrySearchExe(kRoot + path, signature_);
  }
};

TEST_F(ResolveRegistrySearch, AFileIsItselfACandidateAndGivesItsFolder) {
  signature_.DefaultExe = "foo.exe";
  const std::string run = Make("Foo\\run.exe");
  EXPECT_EQ(Resolve("Foo\\run.exe"), run);
  const std::string foo = Make("Foo\\foo.exe");  // sorts before run.exe
  EXPECT_EQ(Resolve("Foo\\run.exe"), foo);
  EXPECT_EQ(Resolve("Foo\\missing.exe"), foo);
}

TEST_F(ResolveRegistrySearch, AFolderWithADotCountsAsAFile) {
  signature_.DefaultExe = "foo.exe";
  Make("Foo.Bar\\foo.exe");
  EXPECT_EQ(Resolve("Foo.Bar"), "");
  const std::string parent = Make("foo.exe");
  EXPECT_EQ(Resolve("Foo.Bar"), parent);
}

TEST_F(ResolveRegistrySearch, AFileWithoutAFolderIsItsOwnBase) {
  signature_.DefaultExe = "..\\foo.exe";
  EXPECT_EQ(ResolveRegistrySearchExe("no_such.exe", signature_), "");
}

TEST_F(ResolveRegistrySearch, ThePathThatSortsFirstWins) {
  signature_.DefaultExe = "foo.exe";
  Make("Foo\\foo.exe");
  const std::string below = Make("Foo\\Game\\foo.exe");
  EXPECT_EQ(Resolve("Foo"), below);
}

TEST_F(ResolveRegistrySearch, TriesTheGameFolderForThePlainExecutableOnly) {
  Make("Foo\\Game\\foo.exe");
  signature_.DefaultExe32 = "foo.exe";
  signature_.DefaultExe64 = "foo.exe";
  EXPECT_EQ(Resolve("Foo"), "");
  signature_.DefaultExe = "foo.exe";
  EXPECT_EQ(Resolve("Foo"), kRoot + "Foo\\Game\\foo.exe");
}

TEST_F(ResolveRegistrySearch, ThePlainListGoesByFolderCandidates) {
  signature_.DefaultExe = "foo.exe";
  signature_.DefaultFolderExe = "bin\\x.exe|RegistrySearch\\y.exe";
  Make("Foo\\RegistrySearch\\y.exe");
  EXPECT_EQ(Resolve("Foo"), "");  // the segment moves: it leaves its old place in the folder
  desktop_.File("C:\\TarnwickTest\\Foo\\RegistrySearch\\y.exe");
  EXPECT_EQ(Resolve("Foo"), "C:\\TarnwickTest\\Foo\\RegistrySearch\\y.exe");
  Make("Foo\\bin\\x.exe");
  EXPECT_EQ(Resolve("Foo"), "C:\\TarnwickTest\\Foo\\RegistrySearch\\y.exe");
}

TEST_F(ResolveRegistrySearch, ThePlainListIsPickedFromThe32FieldToo) {
  signature_.DefaultExe = "foo.exe";
  signature_.DefaultFolderExe32 = "bin\\x.exe";
  const std::string listed = Make("Foo\\bin\\x.exe");
  EXPECT_EQ(Resolve("Foo"), listed);
}

TEST_F(ResolveRegistrySearch, The32ListIsJoinedMergedAndPlain) {
  signature_.DefaultExe32 = "foo32.exe";
  signature_.DefaultFolderExe32 = "Foo\\bin\\x.exe";
  const std::string plain = Make("Foo\\Foo\\bin\\x.exe");
  EXPECT_EQ(Resolve("Foo"), plain);
  const std::string merged = Make("Foo\\bin\\x.exe");
  EXPECT_EQ(Resolve("Foo"), plain);  // "Foo" sorts before "bin"
  desktop_.Remove();
  Make("Foo\\bin\\x.exe");
  EXPECT_EQ(Resolve("Foo"), merged);
}

TEST_F(ResolveRegistrySearch, ABitnessListNeedsItsExecutable) {
  signature_.DefaultFolderExe32 = "bin\\x.exe";
  signature_.DefaultFolderExe64 = "bin\\x.exe";
  Make("Foo\\bin\\x.exe");
  EXPECT_EQ(Resolve("Foo"), "");
  signature_.DefaultExe64 = "foo64.exe";
  EXPECT_EQ(Resolve("Foo"), kRoot + "Foo\\bin\\x.exe");
}

TEST_F(ResolveRegistrySearch, The64ListFallsBackOnThePlainOneAndThe32ListDoesNot) {
  signature_.DefaultFolderExe = "bin\\x.exe";
  Make("Foo\\bin\\x.exe");
  signature_.DefaultExe32 = "foo32.exe";
  EXPECT_EQ(Resolve("Foo"), "");
  signature_.DefaultExe64 = "foo64.exe";
  EXPECT_EQ(Resolve("Foo"), kRoot + "Foo\\bin\\x.exe");
  signature_.DefaultFolderExe64 = "other\\x.exe";
  EXPECT_EQ(Resolve("Foo"), "");
}

TEST_F(ResolveRegistrySearch, EachExecutableIsTriedInTheFolder) {
  for (std::string GameSignature::* field :
       {&GameSignature::DefaultExe, &GameSignature::DefaultExe32, &GameSignature::DefaultExe64}) {
    signature_ = GameSignature();
    signature_.*field = kOddName + ".exe";
    const std::string exe = Make(kOddName + "\\" + kOddName + ".exe");
    EXPECT_EQ(Resolve(kOddName), exe);
  }
}

TEST_F(ResolveRegistrySearch, AFolderIsNoExecutable) {
  signature_.DefaultExe = "foo.exe";
  desktop_.Folder(kRoot + "Foo\\foo.exe");
  EXPECT_EQ(Resolve("Foo"), "");
  EXPECT_EQ(ResolveRegistrySearchExe("", GameSignature()), "");
}

}  // namespace
}  // namespace tarnwick
