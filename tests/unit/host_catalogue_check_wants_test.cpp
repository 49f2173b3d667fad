#include "host/catalogue/check_wants.h"

#include "core/strategy_wants.h"

#include <gmock/gmock.h>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;

GameSignature Game(int32_t source) {
  GameSignature game;
  game.SourceKind = source;
  return game;
}

TEST(CatalogueCheckWants, ARecordIsTestedBySomeStrategyOrNone) {
  GameSignature game = Game(kSourceGog);
  game.DefaultExe = "a.exe";
  EXPECT_FALSE(IsEverTested(game));
  game.DefaultFolder64 = "C:\\A";
  EXPECT_FALSE(IsEverTested(game));
  game.DefaultFolder32 = "C:\\A";
  EXPECT_TRUE(IsEverTested(game));
  game.SourceKind = kSourceEpic;
  EXPECT_FALSE(IsEverTested(game));
  game.DefaultFolder32 = "%UserProfile%\\A";
  EXPECT_TRUE(IsEverTested(game));
}

TEST(CatalogueCheckWants, ARecordIsLookedUpByItsSourcesId) {
  GameSignature game = Game(kSourceUwp);
  game.GameInfo = "A_b";
  EXPECT_TRUE(IsEverTested(game));
  game.SourceKind = kSourceSteam;
  game.SourceExId = "570";
  EXPECT_FALSE(IsEverTested(game));
  game.DefaultFolderExe = "a\\a.exe";
  EXPECT_TRUE(IsEverTested(game));
}

TEST(CatalogueCheckWants, AZeroGuidIsNone) {
  GameSignature game = Game(kSourceNone);
  game.GameGUID = "00000000-0000-0000-0000-000000000000";
  EXPECT_FALSE(IsEverTested(game));
  game.GameGUID.back() = '1';
  EXPECT_TRUE(IsEverTested(game));
}

// The game explorer's entry brings the executable, so a record of a GUID alone is found there.
TEST(CatalogueCheckWants, AGuidAloneIsTestedWhateverTheSource) {
  for (const int32_t source : {kSourceNone, kSourceDirect, kSourceSteam}) {
    GameSignature game = Game(source);
    game.DefaultExe = "a.exe";
    EXPECT_FALSE(IsEverTested(game));
    game.GameGUID = "7A11D3C0-0000-4000-8000-000000000001";
    EXPECT_TRUE(IsEverTested(game));
    EXPECT_EQ(WhyNotTaken(WantsOf("GameUX Registry Search"), game), "");
  }
}

TEST(CatalogueCheckWants, NamesWhatTheNearestStrategiesLack) {
  GameSignature game = Game(kSourceRiot);
  EXPECT_THAT(WhatWouldTest(game), HasSubstr("RunningExe (Riot Platform Search)"));
  game.RegistryKey = "HKEY_LOCAL_MACHINE\\A";
  EXPECT_THAT(WhatWouldTest(game), HasSubstr("RegistryPathKeyName (Registry Search Scan)"));
  // One scan leaves records that name a value to the other.
  game = Game(kSourceNone);
  game.DefaultExe = "a.exe";
  game.RegistryPathKeyName = "Path";
  EXPECT_THAT(WhatWouldTest(game), HasSubstr("RegistryKey (Registry Search Scan)"));
  EXPECT_THAT(WhatWouldTest(game), testing::Not(HasSubstr("Default Registry Scan")));
}

}  // namespace
}  // namespace tarnwick::host
