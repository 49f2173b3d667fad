#include "host/scan_report.h"

#include "host/progress.h"

#include <gmock/gmock.h>

namespace tarnwick::host {
namespace {

using std::chrono::milliseconds;

struct Line {
  int ms;
  uint32_t thread;
  const char* text;
};

ScanReporter Feed(const std::vector<Line>& lines) {
  ScanReporter reporter;
  for (const Line& line : lines) {
    reporter.Add({std::chrono::steady_clock::time_point(milliseconds(line.ms)), line.thread, line.text});
  }
  return reporter;
}

const std::vector<Line> kScan = {
    {0, 1, "Loaded 12 games from XML."},
    {1, 1, "Processing priority level: 4"},
    {1, 1, "Launching thread for strategy: Arc Registry Search"},
    {1, 1, "Launching thread for strategy: GOG Registry Search"},
    {2, 7, "Strategy [Arc Registry Search] START (in thread)"},
    {3, 8, "Strategy [GOG Registry Search] START (in thread)"},
    {5, 8, "[GogRegistrySearch] Found: \u041c\u0438\u0440 -> C:\\Games\\\\mir.exe"},
    {6, 7, "[ArcRegistrySearch] Found: Alpha -> C:\\Games\\alpha.exe"},
    {12, 7, "[ArcRegistrySearch] Scan completed! Found 1 games."},
    {23, 8, "[GogRegistrySearch] Scan completed! Found 1 games."},
    {24, 1, "Strategy [Arc Registry Search] finished. Found: 1"},
    {24, 1, "Strategy [GOG Registry Search] finished. Found: 1"},
    {25, 1, "Total raw results: 2"},
    {26, 1, "Unique results after deduplication: 2"},
};

TEST(HostScanReport, GathersLevelsTimesAndCounts) {
  const ScanReport report = Feed(kScan).Report();
  ASSERT_EQ(report.strategies.size(), 2u);
  EXPECT_EQ(report.strategies[0].name, "Arc Registry Search");
  EXPECT_EQ(report.strategies[0].level, 4);
  EXPECT_EQ(report.strategies[0].found, 1u);
  EXPECT_DOUBLE_EQ(report.strategies[0].milliseconds, 10.0);
  EXPECT_DOUBLE_EQ(report.strategies[1].milliseconds, 20.0);
  EXPECT_EQ(report.gamesInCatalogue, 12u);
  EXPECT_EQ(report.rawResults, 2u);
  EXPECT_EQ(report.uniqueResults, 2u);
}

TEST(HostScanReport, TellsWhichStrategyFoundAGameByItsThreadsLines) {
  const ScanReport report = Feed(kScan).Report();
  EXPECT_EQ(StrategyThatFound(report, "\u041c\u0438\u0440", "C:\\Games\\mir.exe"), "GOG Registry Search");
  EXPECT_EQ(StrategyThatFound(report, "Alpha", "C:\\Games\\alpha.exe"), "Arc Registry Search");
  EXPECT_EQ(StrategyThatFound(report, "Another name", "C:\\Games\\alpha.exe"), "Arc Registry Search");
  EXPECT_EQ(StrategyThatFound(report, "Alpha", "C:\\Games\\beta.exe"), "");
}

TEST(HostScanReport, DoesNotGiveALaterLevelsLinesToAnEarlierLevelsThread) {
  std::vector<Line> lines = kScan;
  lines.push_back({30, 7, "[Epic] Found: Late -> C:\\late.exe"});
  EXPECT_EQ(StrategyThatFound(Feed(lines).Report(), "Late", "C:\\late.exe"), "");
}

TEST(HostScanReport, ProgressCountsStrategiesThatSaidTheirLastWord) {
  EXPECT_EQ(ProgressText(Feed({})), "");
  EXPECT_EQ(ProgressText(Feed({kScan.begin(), kScan.begin() + 9})),
            "Level 4: 1 of 2 strategies finished, 2 found");
  EXPECT_EQ(ProgressText(Feed(kScan)), "Level 4: 2 of 2 strategies finished, 2 found");
}

TEST(HostScanReport, SkippedGamesDoNotCountAsFound) {
  std::vector<Line> lines(kScan.begin(), kScan.begin() + 6);
  lines.push_back({7, 8, "[Steam] Found (Library-Dynamic): Tool (ID: 5) -> No Exe (Skipping)"});
  EXPECT_EQ(ProgressText(Feed(lines)), "Level 4: 0 of 2 strategies finished, 0 found");
}

TEST(HostScanReport, KnowsWhetherTheLibraryTookAnotherCatalogue) {
  EXPECT_FALSE(Feed({{0, 1, "Using XML file: C:\\a.xml"}}).Report().fellBack);
  EXPECT_TRUE(Feed({{0, 1, "Fallback to MasterGameList.xml"}}).Report().fellBack);
}

TEST(HostScanReport, NotesTheLaunchersWhoseDatabasesAreNotRead) {
  EXPECT_THAT(Feed(kScan).Report().notes, testing::IsEmpty());
  EXPECT_THAT(Feed({{0, 1, "[ItchIoSearch] DB not found: C:\\butler.db"}}).Report().notes,
              testing::IsEmpty());
  std::vector<Line> lines(kScan.begin(), kScan.begin() + 6);
  lines.push_back({7, 8, "[ItchIoSearch] Can't open database: SQLite library not found"});
  lines.push_back({8, 7, "[TwitchSearch] Can't open database: SQLite library not found"});
  const ScanReport report = Feed(lines).Report();
  const auto both =
      testing::ElementsAre("Twitch is here: Tarnwick recognises it, but reads no games from it.",
                           "itch.io is here: Tarnwick recognises it, but reads no games from it.");
  EXPECT_THAT(report.notes, both);
  std::swap(lines[6], lines[7]);
  EXPECT_THAT(Feed(lines).Report().notes, both);
  // They stay among the lines of their threads.
  EXPECT_EQ(report.strategies[1].lines.size(), 1u);
}

TEST(HostScanReport, LineOfDebugTextTakesPrefixTimeAndLineFeedsOff) {
  EXPECT_EQ(LineOfDebugText("[Tarnwick] [2026-01-02 03:04:05.678] Loaded\n"), "Loaded");
  EXPECT_EQ(LineOfDebugText("[Tarnwick] \nScan completed! Found 0 games.\n"),
            "Scan completed! Found 0 games.");
  EXPECT_EQ(LineOfDebugText("[TarnwickXml] Parsed 3 games.\n"), "[TarnwickXml] Parsed 3 games.");
}

}  // namespace
}  // namespace tarnwick::host
