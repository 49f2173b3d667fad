#include "launchers/sqlite_stub.h"

#include "desktop/desktop.h"
#include "launchers/itch_io_search.h"
#include "launchers/twitch_search.h"
#include "support/debug_capture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace tarnwick {
namespace {

// No folder of the shell has this number.
const DatabaseLauncher kNowhere = {"[Nowhere]", "Starting...", static_cast<KnownFolder>(0x7F),
                                   R"(\games.db)"};

TEST(SqliteStub, HasNoPathWhereTheShellTellsNoFolder) { EXPECT_EQ(DatabasePath(kNowhere), ""); }

TEST(SqliteStub, WritesNothingBehindTheColonWithoutAPath) {
  tests::DebugCapture capture;
  LogUnreadDatabase(kNowhere);
  EXPECT_EQ(capture.Raw(), std::vector<std::string>{"[Tarnwick] [Nowhere] DB not found: \n"});
}

TEST(SqliteStub, WritesItsLinesOnceForEachSearch) {
  desktop::Desktop desktop;
  desktop.File(GetItchDatabasePath(), "SQLite format 3");
  desktop.File(GetTwitchDatabasePath(), "SQLite format 3");
  tests::DebugCapture capture;
  ItchIo().ItchIoSearch();
  Twitch().TwitchSearch();
  const std::vector<std::string> expected = {
      "[SQLite Stub] Warning: sqlite3_open called but real SQLite library is missing.",
      "[SQLite Stub] Please install sqlite3 (e.g. 'vcpkg install sqlite3:x64-windows').",
      "[SQLite Stub] Warning: sqlite3_open called but real SQLite library is missing.",
      "[SQLite Stub] Please install sqlite3 (e.g. 'vcpkg install sqlite3:x64-windows')."};
  EXPECT_EQ(capture.LinesWith("[SQLite Stub]"), expected);
}

}  // namespace
}  // namespace tarnwick
