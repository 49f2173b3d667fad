#include "focus/focus_watch.h"

#include "support/debug_capture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <vector>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

struct Seen {
  std::string fileName;
  uint32_t processId;
  std::string fullPath;
  bool operator==(const Seen&) const = default;
};

// The desktop that the watch sees: one foreground process for each poll, the last one for ever.
struct FakeDesktop {
  std::mutex mutex;
  std::vector<uint32_t> polls;
  size_t polled = 0;
  std::vector<Seen> reports;
  std::vector<int32_t> sleeps;
  std::atomic<int> threads = 0;
  std::wstring path = L"C:\\Games\\a.exe";
  void (*inCallback)() = nullptr;
};
FakeDesktop* g_desktop = nullptr;

uint32_t FakeForeground() {
  std::lock_guard lock(g_desktop->mutex);
  if (g_desktop->polls.empty()) return 0;
  return g_desktop->polls[std::min(g_desktop->polled++, g_desktop->polls.size() - 1)];
}

std::wstring FakePath(uint32_t) { return g_desktop->path; }

void FakeSleep(int32_t milliseconds) {
  {
    std::lock_guard lock(g_desktop->mutex);
    g_desktop->sleeps.push_back(milliseconds);
  }
  std::this_thread::yield();
}

std::thread FakeThread(int32_t interval, const FocusCalls& calls) {
  return std::thread([interval, &calls] {
    ++g_desktop->threads;
    PollForeground(interval, calls);
    --g_desktop->threads;
  });
}

std::thread NoThread(int32_t, const FocusCalls&) {
  throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
}

std::thread NoThreadUnknown(int32_t, const FocusCalls&) { throw 1; }

constexpr FocusCalls kFake = {FakeForeground, FakePath, FakeSleep, FakeThread};
constexpr FocusCalls kWithoutThread = {FakeForeground, FakePath, FakeSleep, NoThread};
constexpr FocusCalls kWithoutThreadUnknown = {FakeForeground, FakePath, FakeSleep, NoThreadUnknown};

void Record(const char* fileName, uint32_t processId, const char* fullPath) {
  {
    std::lock_guard lock(g_desktop->mutex);
    g_desktop->reports.push_back({fileName, processId, fullPath});
  }
  if (g_desktop->inCallback != nullptr) g_desktop->inCallback();
}

template <class Condition>
bool Eventually(Condition condition) {
  for (int i = 0; i < 5000; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return false;
}

class FocusWatch : public testing::Test {
 protected:
  FocusWatch() {
    g_desktop = &desktop;
    SetFocusCallback(Record);
  }
  ~FocusWatch() override {
    StopWatch();
    SetFocusCallback(nullptr);
    g_desktop = nullptr;
  }

  // Waits until the loop has gone round so many more times.
  bool GoesRound(size_t times) {
    const size_t before = Sleeps();
    return Eventually([&] { return Sleeps() >= before + times; });
  }
  size_t Sleeps() {
    std::lock_guard lock(desktop.mutex);
    return desktop.sleeps.size();
  }
  std::vector<Seen> Reports() {
    std::lock_guard lock(desktop.mutex);
    return desktop.reports;
  }
  std::vector<uint32_t> ReportedIds() {
    std::vector<uint32_t> ids;
    for (const Seen& seen : Reports()) ids.push_back(seen.processId);
    return ids;
  }
  void ShowNow(uint32_t processId) {
    std::lock_guard lock(desktop.mutex);
    desktop.polls = {processId};
  }

  FakeDesktop desktop;
};

TEST_F(FocusWatch, TheCallbackGetsTheNameTheIdAndTheWholePath) {
  desktop.polls = {7};
  StartWatch(50, kFake);
  ASSERT_TRUE(GoesRound(3));
  EXPECT_THAT(Reports(), ElementsAre(Seen{"a.exe", 7, "C:\\Games\\a.exe"}));
}

TEST_F(FocusWatch, TheNameStandsBehindTheLastSeparatorOfEitherKind) {
  const std::pair<const wchar_t*, const char*> paths[] = {{L"C:/Games/a.exe", "a.exe"},
                                                          {L"a.exe", "a.exe"},
                                                          {L"C:\\Games/x\\b.exe", "b.exe"},
                                                          {L"C:\\Games\\", ""}};
  for (const auto& [path, name] : paths) {
    desktop.path = path;
    desktop.polls = {7};
    desktop.reports.clear();
    StartWatch(50, kFake);
    ASSERT_TRUE(GoesRound(2));
    StopWatch();
    ASSERT_EQ(Reports().size(), 1u);
    EXPECT_EQ(Reports()[0].fileName, name);
  }
}

TEST_F(FocusWatch, OtherLanguagesArriveInUtf8) {
  desktop.path = L"C:\\\u0418\u0433\u0440\u044b\\\u6e38\u620f.exe";
  desktop.polls = {7};
  StartWatch(50, kFake);
  ASSERT_TRUE(GoesRound(2));
  EXPECT_THAT(Reports(),
              ElementsAre(Seen{"\xe6\xb8\xb8\xe6\x88\x8f.exe", 7,
                               "C:\\\xd0\x98\xd0\xb3\xd1\x80\xd1\x8b\\\xe6\xb8\xb8\xe6\x88\x8f.exe"}));
}

TEST_F(FocusWatch, AProcessThatCantBeReadIsReportedWithEmptyTexts) {
  desktop.path.clear();
  desktop.polls = {7};
  StartWatch(50, kFake);
  ASSERT_TRUE(GoesRound(2));
  EXPECT_THAT(Reports(), ElementsAre(Seen{"", 7, ""}));
}

TEST_F(FocusWatch, OnlyChangesOfTheProcessAreReported) {
  desktop.polls = {1, 1, 2, 2, 1, 3, 3};
  StartWatch(50, kFake);
  ASSERT_TRUE(GoesRound(10));
  EXPECT_THAT(ReportedIds(), ElementsAre(1, 2, 1, 3));
}

TEST_F(FocusWatch, WithoutAForegroundWindowNothingIsReportedAndTheLastProcessStays) {
  desktop.polls = {0, 1, 0, 0, 1, 0, 2};
  StartWatch(50, kFake);
  ASSERT_TRUE(GoesRound(10));
  EXPECT_THAT(ReportedIds(), ElementsAre(1, 2));
}

TEST_F(FocusWatch, WithoutACallbackTheLoopRunsAndALateOneHearsOfTheNextChange) {
  SetFocusCallback(nullptr);
  desktop.polls = {1};
  StartWatch(50, kFake);
  ASSERT_TRUE(GoesRound(3));
  SetFocusCallback(Record);
  ASSERT_TRUE(GoesRound(3));
  EXPECT_THAT(Reports(), IsEmpty());
  ShowNow(2);
  ASSERT_TRUE(GoesRound(3));
  EXPECT_THAT(ReportedIds(), ElementsAre(2));
}

TEST_F(FocusWatch, ANullCallbackSilencesARunningWatch) {
  desktop.polls = {1};
  StartWatch(50, kFake);
  ASSERT_TRUE(GoesRound(3));
  SetFocusCallback(nullptr);
  ShowNow(2);
  ASSERT_TRUE(GoesRound(3));
  EXPECT_THAT(ReportedIds(), ElementsAre(1));
}

TEST_F(FocusWatch, IntervalsBelowFiftyBecomeTwoHundred) {
  const std::pair<int32_t, int32_t> intervals[] = {
      {0, 200},  {1, 200},         {49, 200},    {50, 50},   {51, 51},
      {-1, 200}, {INT32_MIN, 200}, {1000, 1000}, {200, 200}, {INT32_MAX, INT32_MAX}};
  for (const auto& [given, used] : intervals) {
    desktop.sleeps.clear();
    StartWatch(given, kFake);
    ASSERT_TRUE(GoesRound(2));
    StopWatch();
    EXPECT_THAT(desktop.sleeps, testing::Each(used)) << given;
  }
}

TEST_F(FocusWatch, ASecondStartChangesNothingAndItsIntervalIsIgnored) {
  StartWatch(60, kFake);
  ASSERT_TRUE(GoesRound(2));
  StartWatch(70, kFake);
  ASSERT_TRUE(GoesRound(5));
  EXPECT_EQ(desktop.threads, 1);
  StopWatch();
  EXPECT_THAT(desktop.sleeps, testing::Each(60));
}

TEST_F(FocusWatch, AStopWithoutAStartReturnsAtOnceAndSaysNothing) {
  const tests::DebugCapture capture;
  StopWatch();
  StopWatch();
  EXPECT_THAT(capture.Lines(), IsEmpty());
}

TEST_F(FocusWatch, ARestartReportsTheCurrentProcessAtOnce) {
  desktop.polls = {5};
  for (int i = 0; i < 2; ++i) {
    StartWatch(50, kFake);
    ASSERT_TRUE(GoesRound(2));
    StopWatch();
  }
  EXPECT_THAT(ReportedIds(), ElementsAre(5, 5));
}

TEST_F(FocusWatch, NothingIsReportedBehindAStop) {
  desktop.polls = {1};
  StartWatch(50, kFake);
  ASSERT_TRUE(GoesRound(2));
  StopWatch();
  EXPECT_EQ(desktop.threads, 0);
  const size_t sleeps = Sleeps();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_EQ(Sleeps(), sleeps);
}

TEST_F(FocusWatch, AStopFromWithinTheCallbackLogsAndReturnsAndTheThreadEndsByItself) {
  const tests::DebugCapture capture;
  desktop.polls = {1};
  desktop.inCallback = StopWatch;
  StartWatch(50, kFake);
  ASSERT_TRUE(Eventually([&] { return desktop.threads == 0 && !Reports().empty(); }));
  EXPECT_THAT(capture.LinesWith("CRITICAL"), ElementsAre(StartsWith("CRITICAL ERROR in StopFocusWatch: ")));
  StopWatch();  // joins what is left
  EXPECT_EQ(capture.LinesWith("CRITICAL").size(), 1u);
}

TEST_F(FocusWatch, AfterAStopFromWithinTheCallbackAStartWaitsForTheOldThread) {
  desktop.polls = {1};
  desktop.inCallback = StopWatch;
  StartWatch(50, kFake);
  ASSERT_TRUE(Eventually([&] { return desktop.threads == 0 && !Reports().empty(); }));
  desktop.inCallback = nullptr;
  StartWatch(60, kFake);
  ASSERT_TRUE(GoesRound(3));
  EXPECT_EQ(desktop.threads, 1);
  EXPECT_THAT(ReportedIds(), ElementsAre(1, 1));
}

void StopAndStart() {
  g_desktop->inCallback = nullptr;
  StopWatch();
  StartWatch(70, kFake);
}

TEST_F(FocusWatch, AStopAndAStartWithinTheCallbackLetTheWatchGoOn) {
  desktop.polls = {1, 2};
  desktop.inCallback = StopAndStart;
  StartWatch(60, kFake);
  ASSERT_TRUE(GoesRound(5));
  EXPECT_EQ(desktop.threads, 1);
  StopWatch();
  EXPECT_EQ(desktop.threads, 0);
  EXPECT_THAT(ReportedIds(), ElementsAre(1, 2));
}

TEST_F(FocusWatch, AStopWaitsForTheRunningCallback) {
  static std::atomic<bool> inside;
  static std::atomic<bool> release;
  inside = release = false;
  desktop.polls = {1};
  desktop.inCallback = [] {
    inside = true;
    while (!release) std::this_thread::yield();
  };
  StartWatch(50, kFake);
  ASSERT_TRUE(Eventually([] { return inside.load(); }));
  std::atomic<bool> stopped = false;
  std::thread stopper([&] {
    StopWatch();
    stopped = true;
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(stopped);
  release = true;
  stopper.join();
  EXPECT_EQ(desktop.threads, 0);
}

TEST_F(FocusWatch, WhereNoThreadCanBeMadeTheFailureIsLoggedAndTheWatchCountsAsRunning) {
  const tests::DebugCapture capture;
  StartWatch(50, kWithoutThread);
  EXPECT_THAT(capture.Lines(), ElementsAre(StartsWith("CRITICAL ERROR in StartFocusWatch: ")));
  EXPECT_NE(capture.Lines()[0], "CRITICAL ERROR in StartFocusWatch: ");
  StartWatch(50, kFake);
  EXPECT_EQ(desktop.threads, 0);
  StopWatch();
  StartWatch(50, kFake);
  EXPECT_TRUE(GoesRound(1));
  EXPECT_EQ(capture.Lines().size(), 1u);
}

TEST_F(FocusWatch, AnUnknownFailureIsLoggedAsSuch) {
  const tests::DebugCapture capture;
  StartWatch(50, kWithoutThreadUnknown);
  EXPECT_THAT(capture.Lines(), ElementsAre("CRITICAL ERROR: Unknown exception in StartFocusWatch."));
}

TEST_F(FocusWatch, TenThousandRoundsOfStartAndStopLeaveNoThread) {
  desktop.polls = {1};
  for (int i = 0; i < 10'000; ++i) {
    StartWatch(50, kFake);
    StopWatch();
  }
  EXPECT_EQ(desktop.threads, 0);
  EXPECT_LE(Reports().size(), 10'000u);
}

TEST_F(FocusWatch, ALoopWhoseOrderIsTakenBackBeforeItBeginsEndsAtOnce) {
  desktop.polls = {1};
  PollForeground(50, kFake);
  EXPECT_THAT(Reports(), IsEmpty());
  EXPECT_THAT(desktop.sleeps, IsEmpty());
}

TEST(FocusWatchOnWindows, AProcessThatIsNotThereHasAnEmptyPath) {
  EXPECT_EQ(kWindowsFocusCalls.imagePath(0xFFFFFFF0), L"");
}

TEST(FocusWatchOnWindows, ThisProcessHasItsPath) {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  EXPECT_EQ(kWindowsFocusCalls.imagePath(GetCurrentProcessId()), path);
}

}  // namespace
}  // namespace tarnwick
