#include "matching/default_registry_scan.h"

#include "support/strategy_fixture.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::Describe;
using tests::kOddName;

const std::string kRoot = "C:\\TarnwickTest\\DefaultRegistry\\";
const std::string kKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickTest\\DefaultRegistry\\";

class DefaultRegistryScan : public tests::StrategyTest {
 protected:
  // A game whose key gives its folder, and whose executable exists.
  GameSignature Install(const std::string& name, const std::string& exe = "foo.exe") {
    GameSignature signature = Signature(name, exe);
    desktop_.String(signature.RegistryKey, "InstallLocation", "\"" + kRoot + name + "\"");
    desktop_.File(kRoot + name + "\\" + exe);
    return signature;
  }

  static GameSignature Signature(const std::string& name, const std::string& exe = "foo.exe") {
    GameSignature signature;
    signature.DisplayName = name;
    signature.RegistryKey = kKey + name;
    signature.DefaultExe = exe;
    return signature;
  }
};

TEST_F(DefaultRegistryScan, LogsItsFrameForNoGames) {
  EXPECT_THAT(ScanRegistryGames({}, ""), IsEmpty());
  EXPECT_THAT(capture_.Raw(), ElementsAre("[Tarnwick] Starting registry scan, 0 games total...\n",
                                          "[Tarnwick] \nScan completed! Found 0 games.\n"));
}

TEST_F(DefaultRegistryScan, ReportsAnInstalledGameWithAllFields) {
  GameSignature game = tests::WithResultFields(Install("Foo"));
  game.GameGUID = "{X}";
  EXPECT_THAT(Describe(ScanRegistryGames({game}, "")),
              ElementsAre("Foo|" + kRoot + "Foo\\foo.exe|foo://run|" + kKey + "Foo||1|0|"));
  EXPECT_THAT(capture_.Raw(), ElementsAre("[Tarnwick] Starting registry scan, 1 games total...\n",
                                          "[Tarnwick] [Found] Foo -> " + kRoot + "Foo\\foo.exe\n",
                                          "[Tarnwick] \nScan completed! Found 1 games.\n"));
}

TEST_F(DefaultRegistryScan, KeepsTheOrderOfTheCatalogueAndCountsAllGames) {
  const GameList games = {Install("Second"), Signature("Missing"), Install(kOddName), Install("First")};
  EXPECT_THAT(Describe(ScanRegistryGames(games, "")).size(), 3u);
  EXPECT_THAT(capture_.Lines(), ElementsAre("Starting registry scan, 4 games total...",
                                            "[Found] Second -> " + kRoot + "Second\\foo.exe",
                                            "[Found] " + kOddName + " -> " + kRoot + kOddName + "\\foo.exe",
                                            "[Found] First -> " + kRoot + "First\\foo.exe",
                                            "\nScan completed! Found 3 games."));
}

TEST_F(DefaultRegistryScan, PassesOverSignaturesThatAreNotItsBusiness) {
  GameSignature withValueName = Install("ValueName");
  withValueName.RegistryPathKeyName = "InstallLocation";
  GameSignature steam = Install("Steam");
  steam.SourceKind = kSourceSteam;
  GameSignature withoutKey = Install("NoKey");
  withoutKey.RegistryKey.clear();
  EXPECT_THAT(ScanRegistryGames({withValueName, steam, withoutKey}, ""), IsEmpty());
  EXPECT_THAT(capture_.Lines(),
              ElementsAre("Starting registry scan, 3 games total...", "\nScan completed! Found 0 games."));
}

TEST_F(DefaultRegistryScan, TestsEverySourceButSteam) {
  for (const int32_t kind : {0, 1, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13}) {
    GameSignature game = Install("Kind");
    game.SourceKind = kind;
    EXPECT_EQ(ScanRegistryGames({game}, "").size(), 1u) << kind;
  }
}

TEST_F(DefaultRegistryScan, FallsBackOnASubkeyOfTheGamesName) {
  GameSignature game = Signature("Foo");
  game.RegistryKey = kKey;
  desktop_.String(kKey + "Sub", "DisplayName", "Foo");
  desktop_.String(kKey + "Sub", "InstallLocation", kRoot + "Foo");
  desktop_.File(kRoot + "Foo\\foo.exe");
  EXPECT_THAT(Describe(ScanRegistryGames({game}, "")),
              ElementsAre("Foo|" + kRoot + "Foo\\foo.exe||" + kKey + "||1|0|"));
}

TEST_F(DefaultRegistryScan, AnEmptyInstallLocationFallsBackToo) {
  GameSignature game = Signature("Foo");
  game.RegistryKey = kKey;
  desktop_.String(kKey, "InstallLocation", "");
  desktop_.String(kKey + "Sub", "DisplayName", "Foo");
  desktop_.String(kKey + "Sub", "InstallLocation", kRoot + "Foo");
  desktop_.File(kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ScanRegistryGames({game}, "").size(), 1u);
}

TEST_F(DefaultRegistryScan, AnUnquotedFolderWithABlankIsNoHit) {
  GameSignature game = Signature("Foo Bar");
  desktop_.File(kRoot + "Foo Bar\\foo.exe");
  desktop_.String(game.RegistryKey, "InstallLocation", kRoot + "Foo Bar");
  EXPECT_THAT(ScanRegistryGames({game}, ""), IsEmpty());
  desktop_.String(game.RegistryKey, "InstallLocation", "\"" + kRoot + "Foo Bar\"");
  EXPECT_EQ(ScanRegistryGames({game}, "").size(), 1u);
}

TEST_F(DefaultRegistryScan, FolderFieldsPlayNoPart) {
  GameSignature game = Signature("Foo", "missing.exe");
  game.DefaultFolder = kRoot + "Foo";
  game.DefaultFolderExe = "foo.exe";
  desktop_.String(game.RegistryKey, "InstallLocation", kRoot + "Foo");
  desktop_.File(kRoot + "Foo\\foo.exe");
  EXPECT_THAT(ScanRegistryGames({game}, ""), IsEmpty());
}

TEST_F(DefaultRegistryScan, RewritesTheUsersHiveAndReportsTheCataloguesKey) {
  GameSignature game = Signature("Foo");
  game.RegistryKey = "HKEY_CURRENT_USER\\SOFTWARE\\TarnwickTest\\DefaultRegistry";
  desktop_.String(game.RegistryKey, "InstallLocation", kRoot + "Foo");
  desktop_.File(kRoot + "Foo\\foo.exe");
  EXPECT_THAT(Describe(ScanRegistryGames({game}, "")),
              ElementsAre("Foo|" + kRoot + "Foo\\foo.exe||" + game.RegistryKey + "||1|0|"));
  EXPECT_THAT(ScanRegistryGames({game}, "S-1-5-21-no-such-user"), IsEmpty());
}

TEST_F(DefaultRegistryScan, FindsAGameOfThe32BitView) {
  GameSignature game = Signature("Foo");
  desktop_.String(game.RegistryKey, "InstallLocation", kRoot + "Foo", desktop::View::k32);
  desktop_.File(kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ScanRegistryGames({game}, "").size(), 1u);
}

}  // namespace
}  // namespace tarnwick
