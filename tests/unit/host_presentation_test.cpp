#include "host/presentation.h"
#include "host/tables.h"
#include "support/strategy_rows.h"

#include <gmock/gmock.h>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;

TEST(HostPresentation, ReadsTheLibrarysGames) {
  const std::vector<Game> games = GamesFromJson(
      R"([{"name":"A","loc":"C:\\a.exe","icon":"","launchUrl":"steam://run/7","exeName":"a.exe"}])", {});
  ASSERT_EQ(games.size(), 1u);
  EXPECT_EQ(games[0].name, "A");
  EXPECT_EQ(games[0].path, "C:\\a.exe");
  EXPECT_EQ(games[0].launcher, "Steam");
}

TEST(HostPresentation, RefusesWhatIsNoArray) {
  EXPECT_THROW(GamesFromJson("{}", {}), std::runtime_error);
  EXPECT_THROW(GamesFromJson("[{\"na", {}), std::runtime_error);
}

TEST(HostPresentation, TheLauncherComesFromTheUriAndElseFromTheStrategy) {
  EXPECT_EQ(LauncherName("uplay://launch/1/0", "Default Registry Scan"), "Ubisoft");
  EXPECT_EQ(LauncherName("shell:AppsFolder\\x!App", ""), "Microsoft Store");
  EXPECT_EQ(LauncherName("", "Epic Games Scan"), "Epic Games");
  EXPECT_EQ(LauncherName("", "Default Registry Scan"), "Installed");
}

TEST(HostPresentation, EveryStrategyHasItsLauncherOrIsSaidToHaveNone) {
  for (const tests::StrategyRow& row : tests::kStrategyRows)
    EXPECT_EQ(LauncherName("", row.name), row.launcher) << row.name;
}

TEST(HostPresentation, RowsKeepTheLibrarysOrderOfMembersAndTakeBytesThatAreNoUtf8) {
  EXPECT_EQ(RowsFromJson(R"([{"name":"b","loc":"a"}])").dump(), R"([{"name":"b","loc":"a"}])");
  EXPECT_EQ(RowsFromJson("[{\"name\":\"a\xFF\"}]")[0]["name"], "a\xEF\xBF\xBD");
  EXPECT_THROW(RowsFromJson("{}"), std::runtime_error);
  EXPECT_THROW(RowsFromJson("[{\"na"), std::runtime_error);
}

TEST(HostPresentation, AGameTellsItsLauncherAndItsStrategyAtTheEnd) {
  ScanReport report;
  report.strategies.push_back({"Epic Games Scan", 2, true, true, 1, 0, {"[Epic] Found: A -> C:\\a.exe"}});
  Rows rows = RowsFromJson(
      R"([{"name":"A","loc":"C:\\a.exe","exeName":"a.exe"},{"name":"B","loc":"","exeName":""}])");
  AddLaunchers(rows, report);
  EXPECT_EQ(
      rows.dump(),
      R"([{"name":"A","loc":"C:\\a.exe","exeName":"a.exe","launcher":"Epic Games","foundBy":"Epic Games Scan"},)"
      R"({"name":"B","loc":"","exeName":"","launcher":"Installed","foundBy":""}])");
}

TEST(HostPresentation, IconsThatAreLeftOutLeaveTheirMember) {
  Rows rows = RowsFromJson(R"([{"name":"A","icon":"data:","date":""}])");
  DropIcons(rows);
  EXPECT_EQ(rows.dump(), R"([{"name":"A","icon":"","date":""}])");
}

TEST(HostPresentation, ASizeThatTheLibraryWritesAsNegativeIsUnknown) {
  EXPECT_EQ(ApplicationsFromJson(R"([{"name":"A","sizeKB":-7}])")[0].sizeKb, 0u);
  EXPECT_EQ(ApplicationsFromJson(R"([{"name":"A","sizeKB":7}])")[0].sizeKb, 7u);
}

TEST(HostPresentation, OneIsSingular) {
  EXPECT_EQ(Counted(1, "entry", "entries"), "1 entry");
  EXPECT_EQ(Counted(0, "entry", "entries"), "0 entries");
  EXPECT_EQ(Counted(2, "entry", "entries"), "2 entries");
}

TEST(HostPresentation, AnEmptyListSaysSo) {
  EXPECT_EQ(GamesTable({}, {}), "No games found.\n");
  EXPECT_EQ(ApplicationsTable({}), "No applications found.\n");
}

}  // namespace
}  // namespace tarnwick::host
