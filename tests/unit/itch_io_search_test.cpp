#include "launchers/itch_io_search.h"

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

const std::string kStart = "[ItchIoSearch] Starting Itch.io Search...";
const std::string kNone = "[ItchIoSearch] Scan completed! Found 0 games.";

TEST(ItchIoSearch, LooksInTheUsersRoamingData) {
  EXPECT_EQ(GetItchDatabasePath(), KnownFolderPath(KnownFolder::kRoamingData) + R"(\itch\db\butler.db)");
}

TEST(ItchIoSearch, SaysThatThereIsNoDatabase) {
  tests::DebugCapture capture;
  EXPECT_THAT(ItchIo().ItchIoSearch(), IsEmpty());
  EXPECT_THAT(capture.Lines(),
              ElementsAre(kStart, "[ItchIoSearch] DB not found: " + GetItchDatabasePath(), kNone));
}

TEST(ItchIoSearch, TakesAFolderForNoDatabase) {
  desktop::Desktop desktop;
  desktop.Folder(GetItchDatabasePath());
  tests::DebugCapture capture;
  EXPECT_THAT(ItchIo().ItchIoSearch(), IsEmpty());
  EXPECT_THAT(capture.Lines(),
              ElementsAre(kStart, "[ItchIoSearch] DB not found: " + GetItchDatabasePath(), kNone));
}

TEST(ItchIoSearch, CanNotOpenADatabaseThatIsThere) {
  desktop::Desktop desktop;
  desktop.File(GetItchDatabasePath(), std::string("SQLite format 3\0", 16));
  tests::DebugCapture capture;
  EXPECT_THAT(ItchIo().ItchIoSearch(), IsEmpty());
  EXPECT_THAT(
      capture.Lines(),
      ElementsAre(kStart, "[SQLite Stub] Warning: sqlite3_open called but real SQLite library is missing.",
                  "[SQLite Stub] Please install sqlite3 (e.g. 'vcpkg install sqlite3:x64-windows').",
                  "[ItchIoSearch] Can't open database: SQLite library not found (Stub implementation)",
                  kNone));
}

TEST(ItchIoSearch, MakesAResultOfARow) {
  EXPECT_EQ(tests::Describe(ItchResult({"77", "Игра 游戏", R"(C:\itch\нет.exe)"})),
            R"(Игра 游戏|C:\itch\нет.exe||Itch.io ID: 77||0|0|)");
}

const DatabaseLauncher kLauncher = {"[ItchIoSearch]", "Starting Itch.io Search...", KnownFolder::kRoamingData,
                                    ""};

TEST(ItchIoSearch, ReportsEachRowWithoutAskingForFiles) {
  tests::DebugCapture capture;
  const auto rows = [] { return std::vector<ItchGameRow>{{"1", "One", R"(Q:\gone)"}, {"", "", ""}}; };
  EXPECT_THAT(tests::Describe(SearchDatabase<ItchGameRow>(kLauncher, rows, ItchResult)),
              ElementsAre(R"(One|Q:\gone||Itch.io ID: 1||1|0|)", "|||Itch.io ID: ||1|0|"));
  EXPECT_THAT(capture.Lines(),
              ElementsAre(kStart, R"([ItchIoSearch] Found: One -> Q:\gone)", "[ItchIoSearch] Found:  -> ",
                          "[ItchIoSearch] Scan completed! Found 2 games."));
}

TEST(ItchIoSearch, KeepsWhatItFoundBeforeAFailure) {
  tests::DebugCapture capture;
  const auto rows = [] {
    return std::vector<ItchGameRow>{{"1", "One", "a"}, {"2", "bad", "b"}, {"3", "Three", "c"}};
  };
  const auto resultOf = [](const ItchGameRow& row) {
    if (row.name == "bad") throw std::runtime_error("the row is broken");
    return ItchResult(row);
  };
  EXPECT_THAT(tests::Describe(SearchDatabase<ItchGameRow>(kLauncher, rows, resultOf)),
              ElementsAre("One|a||Itch.io ID: 1||1|0|"));
  EXPECT_THAT(capture.Lines(), ElementsAre(kStart, "[ItchIoSearch] Found: One -> a",
                                           "[ItchIoSearch] Critical Error: the row is broken"));
}

}  // namespace
}  // namespace tarnwick
