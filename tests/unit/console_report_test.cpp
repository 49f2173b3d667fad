// The report with strategies and icons of the test's own.
#include "core/console_report.h"

#include "common/catalogue_text.h"
#include "desktop/desktop.h"
#include "foundation/locks.h"
#include "foundation/windows_api.h"
#include "support/current_directory.h"
#include "support/debug_capture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>

namespace tarnwick {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

ScanResult Result(const std::string& name, const std::string& path = "",
                  const std::string& displayIcon = "") {
  ScanResult result;
  result.name = name;
  result.exePath = path;
  result.source = "source of " + name;
  result.displayIcon = displayIcon;
  return result;
}

ScanResult SteamResult(const std::string& name, const std::string& path, const std::string& id) {
  ScanResult result = Result(name, path);
  result.sourceKind = kSourceSteam;
  result.sourceExId = id;
  return result;
}

std::vector<std::string> MergedNames(const ScanResults& all) {
  std::vector<std::string> names;
  for (const ScanResult& result : MergeForReport(all)) names.push_back(result.name);
  return names;
}

// --- The merge

TEST(ReportMerge, PathsThatDifferInCaseAreOneGame) {
  EXPECT_THAT(MergedNames({Result("a", "C:\\Games\\X.exe"), Result("b", "c:\\games\\x.EXE")}),
              ElementsAre("a"));
}

TEST(ReportMerge, LowersAsciiLettersOnly) {
  EXPECT_THAT(MergedNames({Result("a", "C:\\ИГРА.exe"), Result("b", "C:\\игра.exe")}), ElementsAre("a", "b"));
}

TEST(ReportMerge, SteamResultAndRegistryResultOfDifferentPathsAreTwoGames) {
  ScanResult steam = Result("steam", "C:\\1.exe");
  steam.launchUrl = "steam://run/10";
  ScanResult registry = Result("registry", "C:\\2.exe");
  registry.launchUrl = "steam://run/10";
  EXPECT_THAT(MergedNames({steam, registry}), ElementsAre("steam", "registry"));
}

TEST(ReportMerge, ResultsOfOneSteamIdAreOneGame) {
  EXPECT_THAT(MergedNames({SteamResult("a", "C:\\1.exe", "10"), SteamResult("b", "C:\\2.exe", "10"),
                           SteamResult("c", "C:\\3.exe", "11")}),
              ElementsAre("a", "c"));
}

TEST(ReportMerge, IdsOfOtherKindsDoNotCount) {
  ScanResult other = SteamResult("b", "C:\\2.exe", "10");
  other.sourceKind = kSourceEpic;
  EXPECT_THAT(MergedNames({SteamResult("a", "C:\\1.exe", "10"), other, SteamResult("c", "C:\\3.exe", "")}),
              ElementsAre("a", "b", "c"));
}

TEST(ReportMerge, ResultWithANewIdIsDroppedForItsPathAndItsIdIsSeenAllTheSame) {
  EXPECT_THAT(MergedNames({Result("a", "C:\\1.exe"), SteamResult("b", "C:\\1.exe", "10"),
                           SteamResult("c", "C:\\2.exe", "10")}),
              ElementsAre("a"));
}

TEST(ReportMerge, DroppedIdLeavesItsPathFree) {
  EXPECT_THAT(MergedNames({SteamResult("a", "C:\\1.exe", "10"), SteamResult("b", "C:\\2.exe", "10"),
                           Result("c", "C:\\2.exe")}),
              ElementsAre("a", "c"));
}

TEST(ReportMerge, SourcesPlayNoPartAndTheFirstStays) {
  ScanResult worse = Result("first", "C:\\1.exe");
  worse.source = "Steam AppInfo";
  ScanResult better = Result("second", "C:\\1.exe");
  better.source = "Steam App";
  EXPECT_THAT(MergedNames({worse, better}), ElementsAre("first"));
}

TEST(ReportMerge, ResultsWithNeitherPathNorIdAllStay) {
  EXPECT_THAT(MergedNames({Result("a"), Result("a"), Result("b")}), ElementsAre("a", "a", "b"));
}

// --- The report

std::mutex g_mutex;
std::vector<std::pair<const GameList*, std::vector<std::string>>> g_given;
std::atomic<int> g_running{0};

void RecordGames(const GameList& games) {
  std::vector<std::string> names;
  for (const GameSignature& game : games) names.push_back(game.DisplayName);
  const std::lock_guard lock(g_mutex);
  g_given.emplace_back(&games, names);
}

ScanResults FindA(const GameList& games, const std::string&) {
  RecordGames(games);
  return {Result("A", "C:\\a.exe", "C:\\a.ico")};
}
ScanResults FindB(const GameList& games, const std::string&) {
  RecordGames(games);
  return {Result("B", "C:\\b.exe"), Result("A again", "c:\\A.EXE")};
}
ScanResults FindLate(const GameList& games, const std::string&) {
  Sleep(200);
  RecordGames(games);
  return {Result("Late")};
}
ScanResults Throw(const GameList&, const std::string&) { throw std::runtime_error("broken"); }
volatile int* g_nowhere = nullptr;
ScanResults Fault(const GameList&, const std::string&) {
  *g_nowhere = 1;
  return {};
}
// Ends when three run at the same time, or after ten seconds.
ScanResults Meet(const GameList& games, const std::string&) {
  RecordGames(games);
  ++g_running;
  for (int i = 0; i < 10000 && g_running < 3; ++i) Sleep(1);
  return {Result(g_running >= 3 ? "met" : "alone")};
}

std::string NoIcon(const ScanResult&) { return {}; }

class ConsoleReport : public testing::Test {
 protected:
  void SetUp() override {
    g_given.clear();
    desktop_.Folder(kFolder);
    there_.emplace(kFolder);
  }
  void TearDown() override { there_.reset(); }

  void Catalogue(const std::vector<std::string>& names, const std::string& fileName = "MasterGameList.xml") {
    GameList games;
    for (const std::string& name : names) games.emplace_back().DisplayName = name;
    desktop_.File(std::string(kFolder) + "\\" + fileName, common::CatalogueText(games));
  }

  static void Run(std::vector<ScanStrategy> table, const IconBuilder& icon = NoIcon) {
    RunConsoleReport([&] { return table; }, icon);
  }

  static constexpr char kFolder[] = R"(C:\TarnwickTest\ConsoleReport)";
  desktop::Desktop desktop_;
  std::optional<tests::CurrentDirectory> there_;
};

std::vector<std::string> WithoutCatalogueLines(const tests::DebugCapture& capture) {
  std::vector<std::string> raw = capture.Raw();
  std::erase_if(raw, [](const std::string& line) { return line.rfind("[TarnwickXml]", 0) == 0; });
  return raw;
}

TEST_F(ConsoleReport, WritesTheWholeReportInOrder) {
  Catalogue({"A", "Z"});
  const tests::DebugCapture capture;
  Run({{"b", 2, FindB}, {"a", 6, FindA}},
      [](const ScanResult& result) { return result.name == "A" ? std::string("data:icon") : std::string(); });
  std::vector<std::string> lines = WithoutCatalogueLines(capture);
  // The two start lines carry a time.
  ASSERT_EQ(lines.size(), 14u);
  EXPECT_THAT(lines[2], testing::EndsWith("] Strategy [a] START\n"));
  EXPECT_THAT(lines[3], testing::EndsWith("] Strategy [b] START\n"));
  lines.erase(lines.begin() + 2, lines.begin() + 4);
  EXPECT_THAT(lines, ElementsAre("[Tarnwick] Starting Multi-Platform Game Scan...\n",  //
                                 "[Tarnwick] Loaded 2 game configurations.\n",         //
                                 "[Tarnwick] Found 2 unique games.\n",                 //
                                 "[Tarnwick] \n[1] A\n",                               //
                                 "[Tarnwick]     Source: source of A\n",               //
                                 "[Tarnwick]     Executable: C:\\a.exe\n",             //
                                 "[Tarnwick]     DisplayIcon (Reg): C:\\a.ico\n",      //
                                 "[Tarnwick]     Icon: data:icon\n",                   //
                                 "[Tarnwick] \n[2] B\n",                               //
                                 "[Tarnwick]     Source: source of B\n",               //
                                 "[Tarnwick]     Executable: C:\\b.exe\n",             //
                                 "[Tarnwick]     Icon: (None)\n"));
}

TEST_F(ConsoleReport, SaysSoWithoutACatalogue) {
  Catalogue({"A"}, "MasterGameList_decrypted.xml");  // never looked at here
  const tests::DebugCapture capture;
  Run({{"a", 6, FindA}});
  EXPECT_THAT(capture.Raw(), ElementsAre("[Tarnwick] Starting Multi-Platform Game Scan...\n",
                                         "[Tarnwick] Error: MasterGameList.xml not found!\n"));
  EXPECT_THAT(g_given, IsEmpty());
}

TEST_F(ConsoleReport, SaysSoWithoutRecords) {
  Catalogue({});
  const tests::DebugCapture capture;
  Run({{"a", 6, FindA}});
  EXPECT_THAT(WithoutCatalogueLines(capture),
              ElementsAre("[Tarnwick] Starting Multi-Platform Game Scan...\n",
                          "[Tarnwick] Error: Failed to parse any games from XML file!\n"));
  EXPECT_THAT(g_given, IsEmpty());
}

TEST_F(ConsoleReport, ReportsNothingFound) {
  Catalogue({"A"});
  const tests::DebugCapture capture;
  Run({});
  EXPECT_EQ(capture.Lines().back(), "Found 0 unique games.");
}

TEST_F(ConsoleReport, KeepsTheOrderOfLaunchingWhateverEndsFirst) {
  Catalogue({"A"});
  const tests::DebugCapture capture;
  Run({{"late", 3, FindLate}, {"a", 3, FindA}});
  const std::vector<std::string> lines = capture.Lines();
  const auto late = std::find(lines.begin(), lines.end(), "\n[1] Late");
  const auto a = std::find(lines.begin(), lines.end(), "\n[2] A");
  EXPECT_NE(late, lines.end());
  EXPECT_NE(a, lines.end());
}

TEST_F(ConsoleReport, TakesFoundGamesOutBetweenLevels) {
  Catalogue({"A", "B", "Z"});
  Run({{"late", 6, FindLate}, {"a", 6, FindA}, {"b", 5, FindB}, {"last", 0, FindLate}});
  ASSERT_EQ(g_given.size(), 4u);
  EXPECT_THAT(g_given[0].second, ElementsAre("A", "B", "Z"));
  EXPECT_THAT(g_given[1].second, ElementsAre("A", "B", "Z"));
  EXPECT_THAT(g_given[2].second, ElementsAre("B", "Z"));
  EXPECT_THAT(g_given[3].second, ElementsAre("Z"));
}

TEST_F(ConsoleReport, RunsALevelAtOnceAndGivesEachTaskAListOfItsOwn) {
  Catalogue({"A"});
  g_running = 0;
  const tests::DebugCapture capture;
  Run({{"1", 3, Meet}, {"2", 3, Meet}, {"3", 3, Meet}});
  EXPECT_THAT(capture.Lines(), testing::IsSupersetOf({"\n[1] met", "\n[2] met", "\n[3] met"}));
  ASSERT_EQ(g_given.size(), 3u);
  EXPECT_NE(g_given[0].first, g_given[1].first);
  EXPECT_NE(g_given[1].first, g_given[2].first);
  EXPECT_NE(g_given[0].first, g_given[2].first);
}

TEST_F(ConsoleReport, FailingStrategiesCostTheirOwnResultsOnly) {
  Catalogue({"A"});
  const tests::DebugCapture capture;
  Run({{"Throws", 6, Throw}, {"Faults", 6, Fault}, {"Hole", 6, nullptr}, {"a", 6, FindA}});
  const std::vector<std::string> lines = capture.Lines();
  EXPECT_THAT(lines, Contains("CRITICAL SEH ERROR in Strategy [Throws]: 0xE06D7363"));
  EXPECT_THAT(lines, Contains("CRITICAL SEH ERROR in Strategy [Faults]: 0xC0000005"));
  EXPECT_THAT(lines, Contains("ExecuteStrategyHelper: scanFunction is null for strategy: Hole"));
  EXPECT_THAT(lines, Contains("Found 1 unique games."));
}

TEST_F(ConsoleReport, LogsAnExceptionBothWays) {
  Catalogue({"A"});
  const tests::DebugCapture capture;
  RunConsoleReport([]() -> std::vector<ScanStrategy> { throw std::runtime_error("no memory"); }, NoIcon);
  const std::vector<std::string> raw = capture.Raw();
  EXPECT_EQ(raw[raw.size() - 2], "[Tarnwick] CRITICAL ERROR in RunMultiPlatformGameScan: no memory\n");
  EXPECT_THAT(raw.back(),
              testing::MatchesRegex("\\[Tarnwick\\] \\[.*\\] CRITICAL ERROR in RunMultiPlatformGameScan: "
                                    "no memory\n"));
}

TEST_F(ConsoleReport, LogsAnUnknownExceptionBothWays) {
  Catalogue({"A"});
  const tests::DebugCapture capture;
  Run({{"a", 6, FindA}}, [](const ScanResult&) -> std::string { throw 7; });
  const std::vector<std::string> raw = capture.Raw();
  EXPECT_EQ(raw[raw.size() - 2],
            "[Tarnwick] CRITICAL ERROR: Unknown exception in RunMultiPlatformGameScan.\n");
  EXPECT_THAT(raw.back(),
              testing::EndsWith("] CRITICAL ERROR: Unknown exception in RunMultiPlatformGameScan.\n"));
}

TEST_F(ConsoleReport, TakesNoLock) {
  Catalogue({"A"});
  const CriticalSectionScope api(g_apiLock);
  const CriticalSectionScope cache(g_cacheLock);
  const tests::DebugCapture capture;
  std::thread([] { Run({{"a", 6, FindA}}); }).join();
  EXPECT_THAT(capture.Lines(), Contains("Found 1 unique games."));
}

TEST_F(ConsoleReport, SetsComUpForTheTasksOnly) {
  static HRESULT in_task;
  Catalogue({"A"});
  HRESULT in_caller = E_FAIL;
  const auto ask = [](const GameList&, const std::string&) -> ScanResults {
    in_task = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    CoUninitialize();
    return {};
  };
  std::thread([&] {
    RunConsoleReport(
        [&] {
          in_caller = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
          CoUninitialize();
          return std::vector<ScanStrategy>{{"com", 6, ask}};
        },
        NoIcon);
  }).join();
  EXPECT_EQ(in_caller, S_OK);   // the report has set nothing up
  EXPECT_EQ(in_task, S_FALSE);  // the task has
}

}  // namespace
}  // namespace tarnwick
