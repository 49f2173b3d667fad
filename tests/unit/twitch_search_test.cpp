#include "launchers/twitch_search.h"

#include "desktop/desktop.h"
#include "foundation/machine/known_folders.h"
#include "launchers/sqlite_stub.h"
#include "support/debug_capture.h"
#include "support/describe.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kStart = "[TwitchSearch] Starting Twitch Search...";
const std::string kNone = "[TwitchSearch] Scan completed! Found 0 games.";

TEST(TwitchSearch, LooksInTheMachinesData) {
  EXPECT_EQ(GetTwitchDatabasePath(),
            KnownFolderPath(KnownFolder::kCommonData) + R"(\Twitch\Games\Sql\GameInstallInfo.sqlite)");
}

TEST(TwitchSearch, SaysThatThereIsNoDatabase) {
  tests::DebugCapture capture;
  EXPECT_THAT(Twitch().TwitchSearch(), IsEmpty());
  EXPECT_THAT(capture.Lines(),
              ElementsAre(kStart, "[TwitchSearch] DB not found: " + GetTwitchDatabasePath(), kNone));
}

TEST(TwitchSearch, TakesAFolderForNoDatabase) {
  desktop::Desktop desktop;
  desktop.Folder(GetTwitchDatabasePath());
  tests::DebugCapture capture;
  EXPECT_THAT(Twitch().TwitchSearch(), IsEmpty());
  EXPECT_THAT(capture.Lines(),
              ElementsAre(kStart, "[TwitchSearch] DB not found: " + GetTwitchDatabasePath(), kNone));
}

TEST(TwitchSearch, CanNotOpenADatabaseThatIsThere) {
  desktop::Desktop desktop;
  desktop.File(GetTwitchDatabasePath(), std::string("SQLite format 3\0", 16));
  tests::DebugCapture capture;
  EXPECT_THAT(Twitch().TwitchSearch(), IsEmpty());
  EXPECT_THAT(
      capture.Lines(),
      ElementsAre(kStart, "[SQLite Stub] Warning: sqlite3_open called but real SQLite library is missing.",
                  "[SQLite Stub] Please install sqlite3 (e.g. 'vcpkg install sqlite3:x64-windows').",
                  "[TwitchSearch] Can't open database: SQLite library not found (Stub implementation)",
                  kNone));
}

TEST(TwitchSearch, MakesAResultOfARow) {
  EXPECT_EQ(tests::Describe(TwitchResult({"id-7", "Игра 游戏", R"(C:\Twitch\нет)", "Twitch DB", "unused"})),
            R"(Игра 游戏|C:\Twitch\нет|twitch://fuel-launch/id-7|Twitch DB||0|0|)");
}

const DatabaseLauncher kLauncher = {"[TwitchSearch]", "Starting Twitch Search...", KnownFolder::kCommonData,
                                    ""};

TEST(TwitchSearch, ReportsEachRowWithoutAskingForFiles) {
  tests::DebugCapture capture;
  const auto rows = [] { return std::vector<TwitchGameRow>{{"1", "One", R"(Q:\gone)", "S", ""}, {}}; };
  EXPECT_THAT(tests::Describe(SearchDatabase<TwitchGameRow>(kLauncher, rows, TwitchResult)),
              ElementsAre(R"(One|Q:\gone|twitch://fuel-launch/1|S||1|0|)", "||twitch://fuel-launch/|||1|0|"));
  EXPECT_THAT(capture.Lines(),
              ElementsAre(kStart, R"([TwitchSearch] Found: One -> Q:\gone)", "[TwitchSearch] Found:  -> ",
                          "[TwitchSearch] Scan completed! Found 2 games."));
}

TEST(TwitchSearch, LogsAFailureOfTheReadStep) {
  tests::DebugCapture capture;
  const auto rows = []() -> std::vector<TwitchGameRow> { throw std::runtime_error("no memory for rows"); };
  EXPECT_THAT(SearchDatabase<TwitchGameRow>(kLauncher, rows, TwitchResult), IsEmpty());
  EXPECT_THAT(capture.Lines(), ElementsAre(kStart, "[TwitchSearch] Critical Error: no memory for rows"));
}

}  // namespace
}  // namespace tarnwick
