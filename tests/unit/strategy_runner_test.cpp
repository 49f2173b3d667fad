#include "core/strategy_runner.h"

#include "foundation/seh_guard.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/failing_allocation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>

#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <system_error>

namespace tarnwick {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

GameSignature Game(const std::string& name, int32_t kind = kSourceNone, const std::string& id = "") {
  GameSignature game;
  game.DisplayName = name;
  game.SourceKind = kind;
  game.SourceExId = id;
  return game;
}

ScanResult Result(const std::string& name, const std::string& url = "") {
  ScanResult result;
  result.name = name;
  result.launchUrl = url;
  return result;
}

std::vector<std::string> Names(const ScanResults& results) {
  std::vector<std::string> names;
  for (const ScanResult& result : results) names.push_back(result.name);
  return names;
}

std::vector<std::string> Names(const GameList& games) {
  std::vector<std::string> names;
  for (const GameSignature& game : games) names.push_back(game.DisplayName);
  return names;
}

// What strategies were given, in the order of their ends.
std::mutex g_mutex;
std::vector<std::vector<std::string>> g_given;

ScanResults Record(const GameList& games, ScanResults results) {
  const std::lock_guard lock(g_mutex);
  g_given.push_back(Names(games));
  return results;
}

ScanResults FindA(const GameList& games, const std::string&) { return Record(games, {Result("A")}); }
ScanResults FindB(const GameList& games, const std::string&) { return Record(games, {Result("B")}); }
ScanResults FindCD(const GameList& games, const std::string&) {
  return Record(games, {Result("C"), Result("D")});
}
ScanResults FindNothing(const GameList& games, const std::string&) { return Record(games, {}); }
ScanResults FindSid(const GameList&, const std::string& sid) { return {Result("sid:" + sid)}; }
ScanResults Throw(const GameList&, const std::string&) { throw std::runtime_error("broken"); }
ScanResults ThrowNumber(const GameList&, const std::string&) { throw 7; }
ScanResults Raise(const GameList&, const std::string&) {
  RaiseException(0xE0001234, 0, 0, nullptr);
  return {Result("never")};
}
ScanResults RaiseDebugPrint(const GameList&, const std::string&) {
  RaiseException(0x40010006, 0, 0, nullptr);
  return {Result("never")};
}
ScanResults RaiseWideDebugPrint(const GameList&, const std::string&) {
  RaiseException(0x4001000A, 0, 0, nullptr);
  return {Result("never")};
}
volatile int* g_nowhere = nullptr;
ScanResults Fault(const GameList&, const std::string&) {
  *g_nowhere = 1;
  return {Result("never")};
}
ScanResults FindLate(const GameList&, const std::string&) {
  Sleep(300);
  return {Result("late")};
}

// The frames are large: the system notices the overflow while it still has most of a frame's room left to
// report it in, which some systems need.
volatile int g_depth = 1'000'000'000;
int Recurse(volatile char* above) {
  volatile char frame[256 * 1024];
  frame[0] = above[0];
  return g_depth > 0 ? Recurse(frame) + frame[0] : 0;
}
ScanResults Overflow(const GameList&, const std::string&) {
  char top[1] = {0};
  return {Result(std::to_string(Recurse(top)))};
}

// Ends when the expected number of strategies run at the same time, or after ten seconds.
std::atomic<int> g_running{0};
std::atomic<int> g_expected{0};
ScanResults MeetTheOthers(const GameList&, const std::string&) {
  ++g_running;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (g_running < g_expected && std::chrono::steady_clock::now() < end) Sleep(1);
  return {Result(g_running >= g_expected ? "met" : "alone")};
}

StrategyTable Table(std::vector<ScanStrategy> rows) {
  return [rows = std::move(rows)] { return rows; };
}

// Threads' own lines come in any order; these are the driver's.
std::vector<std::string> DriverLines(const tests::DebugCapture& capture) {
  std::vector<std::string> lines = capture.Lines();
  std::erase_if(lines,
                [](const std::string& line) { return line.find("START (in thread)") != std::string::npos; });
  return lines;
}

class StrategyRunner : public testing::Test {
 protected:
  void SetUp() override { g_given.clear(); }
};

// --- The pending test

TEST(PendingTest, MatchesByNameByteForByte) {
  EXPECT_TRUE(IsFound(Game("Foo"), {Result("Bar"), Result("Foo")}));
  EXPECT_FALSE(IsFound(Game("Foo"), {Result("foo"), Result("Foo "), Result("Fo")}));
  EXPECT_TRUE(IsFound(Game("Тетрис"), {Result("Тетрис")}));
  EXPECT_FALSE(IsFound(Game("Foo"), {}));
}

TEST(PendingTest, EmptyNamesAreEqual) {
  EXPECT_TRUE(IsFound(Game(""), {Result("", "uplay://launch/1")}));
  EXPECT_FALSE(IsFound(Game(""), {Result("Foo")}));
}

TEST(PendingTest, MatchesASteamGameByItsIdInTheUri) {
  EXPECT_TRUE(
      IsFound(Game("Catalogue name", kSourceSteam, "620"), {Result("Steam's name", "steam://run/620")}));
  EXPECT_FALSE(IsFound(Game("Catalogue name", kSourceSteam, "620"), {Result("x", "steam://run/6200")}));
  EXPECT_FALSE(IsFound(Game("Catalogue name", kSourceSteam, "620"), {Result("x", "steam://run/620/")}));
  EXPECT_FALSE(IsFound(Game("Catalogue name", kSourceSteam, "620"), {Result("x", "x steam://run/620")}));
}

TEST(PendingTest, SteamUriDoesNotMatchAGameOfAnotherKind) {
  EXPECT_FALSE(IsFound(Game("Foo", kSourceNone, "620"), {Result("x", "steam://run/620")}));
  EXPECT_FALSE(IsFound(Game("Foo", kSourceEpic, "620"), {Result("x", "steam://run/620")}));
}

TEST(PendingTest, EmptyIdMatchesNoUri) {
  EXPECT_FALSE(IsFound(Game("Foo", kSourceSteam, ""), {Result("x", "steam://run/"), Result("y", "")}));
}

TEST(PendingTest, RemovalKeepsTheOrderOfTheOthers) {
  GameList pending = {Game("d"), Game("b"), Game("a"), Game("b"), Game("c", kSourceSteam, "1")};
  RemoveFoundGames(pending, {Result("b"), Result("x", "steam://run/1")});
  EXPECT_THAT(Names(pending), ElementsAre("d", "a"));
}

// --- One strategy

TEST_F(StrategyRunner, HelperGivesTheGamesAndAnEmptySid) {
  ScanResults results = {Result("old")};
  const GameList games = {Game("x"), Game("y")};
  const ScanStrategy find{"s", 0, FindCD};
  ExecuteStrategyHelper(&find, &games, &results);
  EXPECT_THAT(Names(results), ElementsAre("C", "D"));
  EXPECT_THAT(g_given, ElementsAre(ElementsAre("x", "y")));
  const ScanStrategy sid{"s", 0, FindSid};
  ExecuteStrategyHelper(&sid, &games, &results);
  EXPECT_THAT(Names(results), ElementsAre("sid:"));
}

TEST_F(StrategyRunner, HelperLogsNullPointers) {
  const ScanStrategy strategy{"s", 0, FindA};
  const GameList games;
  ScanResults results;
  const tests::DebugCapture capture;
  ExecuteStrategyHelper(nullptr, &games, &results);
  ExecuteStrategyHelper(&strategy, nullptr, &results);
  ExecuteStrategyHelper(&strategy, &games, nullptr);
  EXPECT_EQ(capture.Lines(), std::vector<std::string>(3, "ExecuteStrategyHelper: Invalid pointer(s)!"));
  EXPECT_THAT(g_given, IsEmpty());
}

TEST_F(StrategyRunner, HelperLogsARowWithoutFunction) {
  const ScanStrategy strategy{"Empty row", 0, nullptr};
  const GameList games;
  ScanResults results;
  const tests::DebugCapture capture;
  ExecuteStrategyHelper(&strategy, &games, &results);
  EXPECT_THAT(capture.Lines(),
              ElementsAre("ExecuteStrategyHelper: scanFunction is null for strategy: Empty row"));
}

struct Failure {
  ScanFunction* function;
  const char* line;
};

TEST_F(StrategyRunner, GuardReportsEveryKindOfFailureAsItStands) {
  const Failure failures[] = {
      {Throw, "[Tarnwick] CRITICAL SEH ERROR in Strategy [Broken]: 0xE06D7363\n"},
      {ThrowNumber, "[Tarnwick] CRITICAL SEH ERROR in Strategy [Broken]: 0xE06D7363\n"},
      {Raise, "[Tarnwick] CRITICAL SEH ERROR in Strategy [Broken]: 0xE0001234\n"},
      {RaiseDebugPrint, "[Tarnwick] CRITICAL SEH ERROR in Strategy [Broken]: 0x40010006\n"},
      {RaiseWideDebugPrint, "[Tarnwick] CRITICAL SEH ERROR in Strategy [Broken]: 0x4001000A\n"},
      {Fault, "[Tarnwick] CRITICAL SEH ERROR in Strategy [Broken]: 0xC0000005\n"},
  };
  for (const Failure& failure : failures) {
    const ScanStrategy strategy{"Broken", 0, failure.function};
    const GameList games;
    ScanResults results = {Result("before")};
    const tests::DebugCapture capture;
    ExecuteStrategyGuarded(&strategy, &games, &results);
    EXPECT_THAT(capture.Raw(), ElementsAre(failure.line));
    EXPECT_THAT(Names(results), ElementsAre("before"));
  }
}

TEST_F(StrategyRunner, GuardsLineIsCutAt255Characters) {
  const ScanStrategy strategy{std::string(400, 'n'), 0, Throw};
  const GameList games;
  ScanResults results;
  const tests::DebugCapture capture;
  ExecuteStrategyGuarded(&strategy, &games, &results);
  const std::string head = "[Tarnwick] CRITICAL SEH ERROR in Strategy [";
  EXPECT_THAT(capture.Raw(), ElementsAre(head + std::string(255 - head.size(), 'n')));
}

TEST_F(StrategyRunner, ThreadBodyLogsItsStartAndSurvivesAStackOverflow) {
  const ScanStrategy strategy{"Deep", 0, Overflow};
  const GameList games;
  ScanResults results;
  const tests::DebugCapture capture;
  bool went_on = false;
  std::thread([&] {
    RunStrategyThread(&strategy, &games, &results);
    went_on = true;
  }).join();
  EXPECT_TRUE(went_on);
  EXPECT_THAT(capture.Lines(), ElementsAre("Strategy [Deep] START (in thread)",
                                           "CRITICAL SEH ERROR in Strategy [Deep]: 0xC00000FD"));
}

TEST_F(StrategyRunner, ThreadBodysOwnGuardTakesWhatHappensOutsideOfTheInnerOne) {
  const GameList games;
  ScanResults results;
  const tests::DebugCapture capture;
  RunStrategyThread(nullptr, &games, &results);  // the name in the start line can't be read
  EXPECT_THAT(capture.Raw(), ElementsAre("[Tarnwick] Thread CRASH (SEH) in strategy UNKNOWN: 0xC0000005\n"));
}

ULONG g_reserve = 0;
ScanResults AskForReserve(const GameList&, const std::string&) {
  g_reserve = 0;
  SetThreadStackGuarantee(&g_reserve);  // a size of 0 asks
  return {};
}

TEST_F(StrategyRunner, ThreadBodyReservesStackForHandlingAnOverflow) {
  const ScanStrategy strategy{"Reserve", 0, AskForReserve};
  const GameList games;
  ScanResults results;
  std::thread([&] { RunStrategyThread(&strategy, &games, &results); }).join();
  EXPECT_GE(g_reserve, 64u * 1024u);
}

HRESULT g_com = E_FAIL;
ScanResults AskForCom(const GameList&, const std::string&) {
  g_com = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  if (SUCCEEDED(g_com)) CoUninitialize();
  return {};
}

TEST_F(StrategyRunner, ThreadBodySetsUpComAndTakesItDown) {
  const ScanStrategy strategy{"Com", 0, AskForCom};
  const GameList games;
  ScanResults results;
  HRESULT after = E_FAIL;
  std::thread([&] {
    RunStrategyThread(&strategy, &games, &results);
    after = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    if (SUCCEEDED(after)) CoUninitialize();
  }).join();
  EXPECT_EQ(g_com, S_FALSE);  // it was multithreaded already
  EXPECT_EQ(after, S_OK);     // and isn't any more
}

TEST_F(StrategyRunner, ThreadBodyTakesComDownBehindAFailedStrategy) {
  const ScanStrategy strategy{"Broken", 0, Fault};
  const GameList games;
  ScanResults results;
  HRESULT after = E_FAIL;
  std::thread([&] {
    RunStrategyThread(&strategy, &games, &results);
    after = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    if (SUCCEEDED(after)) CoUninitialize();
  }).join();
  EXPECT_EQ(after, S_OK);
}

// --- The levels

TEST_F(StrategyRunner, GroupsKeepTheTablesOrder) {
  const PriorityGroups groups = GroupByPriority({{"a", 3, FindA}, {"b", 6, FindA}, {"c", 3, FindA}});
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups.at(6)[0].name, "b");
  EXPECT_EQ(groups.at(3)[0].name, "a");
  EXPECT_EQ(groups.at(3)[1].name, "c");
  EXPECT_EQ(GroupByPriority(ScanStrategies()).size(), 6u);
}

TEST_F(StrategyRunner, LogsTheWholeRunInOrder) {
  const tests::DebugCapture capture;
  RunStrategies({Game("A"), Game("Z")},
                Table({{"low", 0, FindNothing}, {"first", 6, FindA}, {"second", 6, FindCD}}));
  EXPECT_THAT(DriverLines(capture), ElementsAre("Defining scan strategies...",           //
                                                "Strategies defined: 3",                 //
                                                "Grouping strategies by priority...",    //
                                                "Priority groups created: 2",            //
                                                "Pending games: 2",                      //
                                                "Processing priority level: 6",          //
                                                "Launching thread for strategy: first",  //
                                                "Launching thread for strategy: second",
                                                "Strategy [first] finished. Found: 1",   //
                                                "Strategy [second] finished. Found: 2",  //
                                                "Processing priority level: 0",          //
                                                "Launching thread for strategy: low",    //
                                                "Strategy [low] finished. Found: 0"));
  EXPECT_THAT(capture.LinesWith("Strategy [low] START"), ElementsAre("Strategy [low] START (in thread)"));
}

TEST_F(StrategyRunner, LogsNothingForALevelWithoutStrategies) {
  std::vector<ScanStrategy> table = ScanStrategies();
  for (ScanStrategy& strategy : table) strategy.scanFunction = FindNothing;
  const tests::DebugCapture capture;
  RunStrategies({Game("A")}, Table(table));
  EXPECT_THAT(capture.LinesWith("Processing"),
              ElementsAre("Processing priority level: 6", "Processing priority level: 5",
                          "Processing priority level: 4", "Processing priority level: 3",
                          "Processing priority level: 2", "Processing priority level: 0"));
  EXPECT_THAT(capture.LinesWith("Priority groups"), ElementsAre("Priority groups created: 6"));
  EXPECT_THAT(capture.LinesWith("Strategies defined"),
              ElementsAre("Strategies defined: " + std::to_string(table.size())));
}

TEST_F(StrategyRunner, ConcatenatesByLevelThenTableOrderWhateverEndsFirst) {
  const ScanResults all =
      RunStrategies({}, Table({{"b", 2, FindB}, {"late", 6, FindLate}, {"cd", 6, FindCD}, {"a", 2, FindA}}));
  EXPECT_THAT(Names(all), ElementsAre("late", "C", "D", "B", "A"));
}

TEST_F(StrategyRunner, TakesFoundGamesOutBetweenLevelsOnly) {
  RunStrategies({Game("A"), Game("B"), Game("Z")},
                Table({{"1", 6, FindA}, {"2", 6, FindNothing}, {"3", 4, FindB}, {"4", 0, FindNothing}}));
  ASSERT_EQ(g_given.size(), 4u);
  EXPECT_THAT(g_given[0], ElementsAre("A", "B", "Z"));
  EXPECT_THAT(g_given[1], ElementsAre("A", "B", "Z"));
  EXPECT_THAT(g_given[2], ElementsAre("B", "Z"));
  EXPECT_THAT(g_given[3], ElementsAre("Z"));
}

TEST_F(StrategyRunner, RunsTheRemainingLevelsWithAnEmptyList) {
  const ScanResults all =
      RunStrategies({Game("A")}, Table({{"1", 6, FindA}, {"2", 5, FindB}, {"3", 0, FindCD}}));
  EXPECT_THAT(Names(all), ElementsAre("A", "B", "C", "D"));
  EXPECT_THAT(g_given, ElementsAre(ElementsAre("A"), IsEmpty(), IsEmpty()));
}

TEST_F(StrategyRunner, RunsAllStrategiesOfALevelAtOnce) {
  g_running = 0;
  g_expected = 9;
  const ScanResults all = RunStrategies({}, Table(std::vector<ScanStrategy>(9, {"meet", 3, MeetTheOthers})));
  EXPECT_THAT(Names(all), ElementsAreArray(std::vector<std::string>(9, "met")));
}

TEST_F(StrategyRunner, NextLevelWaitsForTheSlowest) {
  const tests::DebugCapture capture;
  RunStrategies({}, Table({{"slow", 6, FindLate}, {"quick", 6, FindA}, {"next", 5, FindB}}));
  const std::vector<std::string> lines = capture.Lines();
  const auto at = [&](const std::string& line) { return std::find(lines.begin(), lines.end(), line); };
  EXPECT_LT(at("Strategy [slow] finished. Found: 1"), at("Strategy [next] START (in thread)"));
  EXPECT_THAT(g_given, testing::SizeIs(2));
}

TEST_F(StrategyRunner, FailingStrategiesCostTheirOwnResultsOnly) {
  const tests::DebugCapture capture;
  const ScanResults all = RunStrategies({Game("A"), Game("B")}, Table({{"Throws", 6, Throw},
                                                                       {"A", 6, FindA},
                                                                       {"Faults", 6, Fault},
                                                                       {"Deep", 6, Overflow},
                                                                       {"B", 0, FindB}}));
  EXPECT_THAT(Names(all), ElementsAre("A", "B"));
  EXPECT_THAT(capture.LinesWith("CRITICAL"),
              UnorderedElementsAre("CRITICAL SEH ERROR in Strategy [Throws]: 0xE06D7363",
                                   "CRITICAL SEH ERROR in Strategy [Faults]: 0xC0000005",
                                   "CRITICAL SEH ERROR in Strategy [Deep]: 0xC00000FD"));
  EXPECT_THAT(capture.Lines(), Contains("Strategy [Throws] finished. Found: 0"));
  EXPECT_THAT(capture.Lines(), Contains("Strategy [Faults] finished. Found: 0"));
  EXPECT_THAT(capture.Lines(), Contains("Strategy [A] finished. Found: 1"));
}

TEST_F(StrategyRunner, TheDebugOutputsOwnCodesAreFailuresLikeAnyOther) {
  const tests::DebugCapture capture;
  const ScanResults all = RunStrategies(
      {}, Table({{"Narrow", 6, RaiseDebugPrint}, {"Wide", 6, RaiseWideDebugPrint}, {"A", 6, FindA}}));
  EXPECT_THAT(Names(all), ElementsAre("A"));
  EXPECT_THAT(capture.LinesWith("CRITICAL"),
              UnorderedElementsAre("CRITICAL SEH ERROR in Strategy [Narrow]: 0x40010006",
                                   "CRITICAL SEH ERROR in Strategy [Wide]: 0x4001000A"));
  EXPECT_THAT(capture.LinesWith("Strategy [Narrow] f"), ElementsAre("Strategy [Narrow] finished. Found: 0"));
  EXPECT_THAT(capture.LinesWith("Strategy [Wide] f"), ElementsAre("Strategy [Wide] finished. Found: 0"));
}

TEST_F(StrategyRunner, RowWithoutFunctionIsLoggedAndPassedOver) {
  const tests::DebugCapture capture;
  const ScanResults all = RunStrategies({}, Table({{"Hole", 6, nullptr}, {"A", 6, FindA}}));
  EXPECT_THAT(Names(all), ElementsAre("A"));
  EXPECT_THAT(capture.Lines(), Contains("ExecuteStrategyHelper: scanFunction is null for strategy: Hole"));
  EXPECT_THAT(capture.Lines(), Contains("Strategy [Hole] finished. Found: 0"));
}

TEST_F(StrategyRunner, ThreadThatCanNotBeStartedIsLoggedAndHasItsFinishLine) {
  const auto start = [](const ScanStrategy* strategy, const GameList* games,
                        std::shared_ptr<ThreadResult> result) {
    if (strategy->name == "Refused") throw std::runtime_error("no more threads");
    if (strategy->name == "Odd") throw 7;
    return StartStrategyThread(strategy, games, std::move(result));
  };
  const tests::DebugCapture capture;
  const ScanResults all =
      RunStrategies({}, Table({{"Refused", 6, FindB}, {"Odd", 6, FindB}, {"A", 6, FindA}}), start);
  EXPECT_THAT(Names(all), ElementsAre("A"));
  const std::vector<std::string> lines = DriverLines(capture);
  const std::vector<std::string> level(lines.begin() + 5, lines.end());
  EXPECT_THAT(level, ElementsAre("Processing priority level: 6",                                 //
                                 "Launching thread for strategy: Refused",                       //
                                 "STD EXCEPTION launching thread for Refused: no more threads",  //
                                 "Launching thread for strategy: Odd",                           //
                                 "UNKNOWN EXCEPTION launching thread for Odd",                   //
                                 "Launching thread for strategy: A",                             //
                                 "Strategy [Refused] finished. Found: 0",                        //
                                 "Strategy [Odd] finished. Found: 0",                            //
                                 "Strategy [A] finished. Found: 1"));
}

TEST_F(StrategyRunner, WithoutMemoryForItsNameAStrategyHasNoFinishLine) {
  // Long, so that its copy is an allocation, of a size that nothing else asks for.
  const std::string name(1000, 'n');
  std::optional<tests::FailingAllocation> failing;
  const auto start = [&](const ScanStrategy* strategy, const GameList* games,
                         std::shared_ptr<ThreadResult> result) {
    failing.reset();
    if (strategy->name == "A") failing.emplace(name.size() + 1, name.size() + 1);
    return StartStrategyThread(strategy, games, std::move(result));
  };
  const StrategyTable table = Table({{"A", 6, FindA}, {name, 6, FindB}, {"CD", 6, FindCD}});
  const tests::DebugCapture capture;
  EXPECT_THAT(Names(RunStrategies({}, table, start)), ElementsAre("A", "C", "D"));
  const std::vector<std::string> lines = DriverLines(capture);
  const std::vector<std::string> level(lines.begin() + 6, lines.end());
  EXPECT_THAT(level, ElementsAre("Launching thread for strategy: A",                                 //
                                 "Launching thread for strategy: " + name,                           //
                                 "STD EXCEPTION launching thread for " + name + ": std::bad_alloc",  //
                                 "Launching thread for strategy: CD",                                //
                                 "Strategy [A] finished. Found: 1",                                  //
                                 "Strategy [CD] finished. Found: 2"));
}

TEST_F(StrategyRunner, ThreadThatIsNotJoinableIsPassedOver) {
  const auto start = [](const ScanStrategy*, const GameList*, const std::shared_ptr<ThreadResult>& result) {
    result->results = {Result("without a thread")};
    return std::thread();
  };
  const tests::DebugCapture capture;
  EXPECT_THAT(Names(RunStrategies({}, Table({{"A", 6, FindA}}), start)), ElementsAre("without a thread"));
  EXPECT_THAT(capture.LinesWith("Error"), IsEmpty());
}

TEST_F(StrategyRunner, ThreadThatCanNotBeJoinedIsLoggedAndTheOthersAreJoined) {
  // A scan that is handed its own thread among those to join: join() throws, and the object may not be
  // destroyed.
  std::thread scan;
  const auto start = [&scan](const ScanStrategy* strategy, const GameList* games,
                             std::shared_ptr<ThreadResult> result) {
    return strategy->name == "Lost" ? std::move(scan)
                                    : StartStrategyThread(strategy, games, std::move(result));
  };
  const tests::DebugCapture capture;
  std::promise<void> known;
  std::promise<ScanResults> found;
  scan = std::thread([&] {
    known.get_future().wait();
    found.set_value(RunStrategies({}, Table({{"Lost", 6, FindB}, {"A", 6, FindA}}), start));
  });
  known.set_value();
  const ScanResults all = found.get_future().get();
  EXPECT_THAT(Names(all), ElementsAre("A"));
  EXPECT_THAT(capture.LinesWith("Error"), ElementsAre("Error joining thread"));
  EXPECT_THAT(capture.Lines(), Contains("Strategy [Lost] finished. Found: 0"));
}

TEST_F(StrategyRunner, LeavesTheCatalogueAlone) {
  const GameList catalogue = {Game("A"), Game("B")};
  RunStrategies(catalogue, Table({{"A", 6, FindA}}));
  EXPECT_THAT(Names(catalogue), ElementsAre("A", "B"));
}

}  // namespace
}  // namespace tarnwick
