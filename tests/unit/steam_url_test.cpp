#include "core/steam_url.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(SteamUrl, GivesWhatStandsBehindThePrefix) {
  EXPECT_EQ(SteamAppId("steam://run/620"), "620");
  EXPECT_EQ(SteamAppId("steam://run/620/"), "620/");
  EXPECT_EQ(SteamAppId("steam://run/"), "");
}

TEST(SteamUrl, IsEmptyForAnyOtherText) {
  for (const char* text :
       {"", "steam://run", "steam:", "Steam://run/620", " steam://run/620", "steam://rungameid/620"}) {
    EXPECT_EQ(SteamAppId(text), "") << text;
  }
}

}  // namespace
}  // namespace tarnwick
