// The focus watch through the built library, with real windows of several processes. The other processes are
// this program itself, started with the filter of one of the FocusHelper tests, which are disabled otherwise.
#include "common/wide_text.h"
#include "desktop/desktop.h"
#include "foundation/owner.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/foreground.h"
#include "support/library.h"
#include "support/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace tarnwick::tests {
namespace {

using common::Narrow;
using common::Wide;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using namespace std::chrono_literals;

const std::string kRoot = "C:\\TarnwickTest\\Focus\\";
constexpr wchar_t kTitleVariable[] = L"TARNWICK_FOCUS_TITLE";

std::wstring ThisProgram() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return path;
}

// --- Other processes. ---

struct Process {
  Handle handle;
  DWORD id = 0;
};

Process StartHelper(const std::wstring& program, const std::string& helper) {
  std::wstring command = L"\"" + program +
                         L"\" --gtest_also_run_disabled_tests --gtest_filter=FocusHelper.DISABLED_" +
                         Wide(helper);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  // Without an output: the helper's own mark of its end must not pass for this program's.
  startup.dwFlags = STARTF_USESTDHANDLES;
  PROCESS_INFORMATION info = {};
  if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &info)) {
    throw std::runtime_error("can't start " + Narrow(program));
  }
  const Handle thread(info.hThread);
  return {Handle(info.hProcess), info.dwProcessId};
}

// A window of another process, whose program is a copy of this one under another name.
class OtherWindow {
 public:
  OtherWindow(desktop::Desktop& d, const std::string& path, const std::wstring& title) : title_(title) {
    d.File(path, "");
    if (!CopyFileW(ThisProgram().c_str(), Wide(path).c_str(), FALSE)) throw std::runtime_error("can't copy");
    SetEnvironmentVariableW(kTitleVariable, title.c_str());
    process_ = StartHelper(Wide(path), "ShowsAWindow");
    SetEnvironmentVariableW(kTitleVariable, nullptr);
    if (!Eventually([&] { return (window_ = FindWindowW(nullptr, title_.c_str())) != nullptr; })) {
      throw std::runtime_error("the window doesn't appear");
    }
  }
  ~OtherWindow() {
    PostMessageW(window_, WM_CLOSE, 0, 0);
    if (WaitForSingleObject(process_.handle.Get(), 30'000) != WAIT_OBJECT_0) {
      TerminateProcess(process_.handle.Get(), 99);
    }
  }
  OtherWindow(const OtherWindow&) = delete;
  OtherWindow& operator=(const OtherWindow&) = delete;

  HWND Window() const { return window_; }
  DWORD ProcessId() const { return process_.id; }

 private:
  std::wstring title_;
  Process process_;
  HWND window_ = nullptr;
};

TEST(FocusHelper, DISABLED_ShowsAWindow) {
  wchar_t title[100] = {};
  GetEnvironmentVariableW(kTitleVariable, title, 100);
  const HWND window = CreateWindowExW(0, L"STATIC", title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 200, 100,
                                      nullptr, nullptr, nullptr, nullptr);
  ASSERT_NE(window, nullptr);
  SetTimer(window, 1, 100, nullptr);
  const auto end = std::chrono::steady_clock::now() + 120s;
  for (MSG message; IsWindow(window) && std::chrono::steady_clock::now() < end &&
                    GetMessageW(&message, nullptr, 0, 0) > 0;) {
    DispatchMessageW(&message);
  }
}

void Ignore(const char*, uint32_t, const char*) {}

TEST(FocusHelper, DISABLED_ExitsWithAWatch) {
  auto* library = new Library(TARNWICK_DLL);
  library->SetFocusCallbackEx(Ignore);
  library->StartFocusWatch(50);
  std::this_thread::sleep_for(200ms);
  std::exit(71);
}

TEST(FocusHelper, DISABLED_EndsByExitProcessWithAWatch) {
  auto* library = new Library(TARNWICK_DLL);
  library->SetFocusCallbackEx(Ignore);
  library->StartFocusWatch(50);
  std::this_thread::sleep_for(200ms);
  ExitProcess(72);
}

TEST(FocusHelper, DISABLED_UnloadsWithAWatch) {
  {
    Library library(TARNWICK_DLL);
    library.SetFocusCallbackEx(Ignore);
    library.StartFocusWatch(50);
    std::this_thread::sleep_for(200ms);
  }
  std::this_thread::sleep_for(500ms);
  {
    // The same module is still there, and its watch can be stopped.
    Library library(TARNWICK_DLL);
    library.StopFocusWatch();
  }
  if (GetModuleHandleW(LibraryPath(TARNWICK_DLL).c_str()) != nullptr) ExitProcess(1);
  std::exit(73);
}

TEST(FocusHelper, DISABLED_UnloadsAndExitsWithAWatch) {
  {
    Library library(TARNWICK_DLL);
    library.SetFocusCallbackEx(Ignore);
    library.StartFocusWatch(50);
  }
  std::this_thread::sleep_for(300ms);
  std::exit(74);
}

// --- The watch. ---

struct Seen {
  std::string fileName;
  uint32_t processId;
  std::string fullPath;
  DWORD thread;
};

std::mutex g_mutex;
std::vector<Seen> g_seen;
Library* g_library = nullptr;
std::atomic<bool> g_inside = false;
std::atomic<bool> g_release = false;

void Record(const char* fileName, uint32_t processId, const char* fullPath) {
  std::lock_guard lock(g_mutex);
  g_seen.push_back({fileName, processId, fullPath, GetCurrentThreadId()});
}

void RecordAndStop(const char* fileName, uint32_t processId, const char* fullPath) {
  Record(fileName, processId, fullPath);
  g_library->StopFocusWatch();
}

void Block(const char* fileName, uint32_t processId, const char* fullPath) {
  Record(fileName, processId, fullPath);
  g_inside = true;
  while (!g_release) std::this_thread::sleep_for(1ms);
}

std::vector<Seen> SeenSoFar() {
  std::lock_guard lock(g_mutex);
  return g_seen;
}

class FocusWatchExports : public testing::Test {
 protected:
  FocusWatchExports() {
    g_seen.clear();
    g_library = &library;
    g_inside = g_release = false;
  }
  ~FocusWatchExports() override {
    g_release = true;
    library.StopFocusWatch();
    library.SetFocusCallbackEx(nullptr);
  }

  bool WaitForReports(size_t count) {
    return Eventually([&] { return SeenSoFar().size() >= count; });
  }

  desktop::Desktop d;
  Library library{TARNWICK_DLL};
  OwnWindow own;
};

TEST_F(FocusWatchExports, EveryChangeOfTheForegroundProcessIsReportedOnTheWatchThread) {
  const std::string first = kRoot + "first.exe";
  const std::string second = kRoot + "\xd0\x98\xd0\xb3\xd1\x80\xd0\xb0 \xe6\xb8\xb8\\\xe6\x88\x8f.exe";
  const OtherWindow one(d, first, L"Tarnwick one");
  const OtherWindow two(d, second, L"Tarnwick two");
  ASSERT_TRUE(BringForward(own.Window()));
  library.SetFocusCallbackEx(Record);
  library.StartFocusWatch(50);
  ASSERT_TRUE(WaitForReports(1));
  ASSERT_TRUE(BringForward(one.Window()));
  ASSERT_TRUE(WaitForReports(2));
  ASSERT_TRUE(BringForward(two.Window()));
  ASSERT_TRUE(WaitForReports(3));
  ASSERT_TRUE(BringForward(one.Window()));
  ASSERT_TRUE(WaitForReports(4));
  library.StopFocusWatch();
  const std::vector<Seen> seen = SeenSoFar();
  ASSERT_EQ(seen.size(), 4u);
  EXPECT_EQ(seen[0].processId, GetCurrentProcessId());
  EXPECT_EQ(seen[0].fullPath, Narrow(ThisProgram()));
  EXPECT_EQ(seen[1].processId, one.ProcessId());
  EXPECT_EQ(seen[1].fileName, "first.exe");
  EXPECT_EQ(seen[1].fullPath, first);
  EXPECT_EQ(seen[2].processId, two.ProcessId());
  EXPECT_EQ(seen[2].fileName, "\xe6\x88\x8f.exe");
  EXPECT_EQ(seen[2].fullPath, second);
  EXPECT_EQ(seen[3].processId, one.ProcessId());
  for (const Seen& report : seen) {
    EXPECT_NE(report.thread, GetCurrentThreadId());
    EXPECT_EQ(report.thread, seen[0].thread);
  }
}

TEST_F(FocusWatchExports, AnotherWindowOfTheSameProcessIsNoChange) {
  const OwnWindow another;
  ASSERT_TRUE(BringForward(own.Window()));
  library.SetFocusCallbackEx(Record);
  library.StartFocusWatch(50);
  ASSERT_TRUE(WaitForReports(1));
  ASSERT_TRUE(BringForward(another.Window()));
  std::this_thread::sleep_for(300ms);
  EXPECT_EQ(SeenSoFar().size(), 1u);
}

TEST_F(FocusWatchExports, ACallbackSetLateHearsOfTheNextChange) {
  const OtherWindow one(d, kRoot + "first.exe", L"Tarnwick one");
  ASSERT_TRUE(BringForward(own.Window()));
  library.StartFocusWatch(50);
  std::this_thread::sleep_for(300ms);
  library.SetFocusCallbackEx(Record);
  std::this_thread::sleep_for(300ms);
  EXPECT_EQ(SeenSoFar().size(), 0u);
  ASSERT_TRUE(BringForward(one.Window()));
  ASSERT_TRUE(WaitForReports(1));
  EXPECT_EQ(SeenSoFar()[0].processId, one.ProcessId());
}

TEST_F(FocusWatchExports, ARestartReportsTheCurrentProcessAtOnce) {
  ASSERT_TRUE(BringForward(own.Window()));
  library.SetFocusCallbackEx(Record);
  for (size_t round = 1; round <= 3; ++round) {
    library.StartFocusWatch(50);
    ASSERT_TRUE(WaitForReports(round));
    library.StopFocusWatch();
  }
  EXPECT_EQ(SeenSoFar().size(), 3u);
}

TEST_F(FocusWatchExports, AStopFromWithinTheCallbackLogsAndTheHostGoesOn) {
  ASSERT_TRUE(BringForward(own.Window()));
  const DebugCapture capture;
  library.SetFocusCallbackEx(RecordAndStop);
  library.StartFocusWatch(50);
  ASSERT_TRUE(WaitForReports(1));
  ASSERT_TRUE(Eventually([&] { return !capture.LinesWith("CRITICAL").empty(); }));
  EXPECT_THAT(capture.LinesWith("CRITICAL"), ElementsAre(StartsWith("CRITICAL ERROR in StopFocusWatch: ")));
  library.StopFocusWatch();
  library.SetFocusCallbackEx(Record);
  library.StartFocusWatch(50);
  EXPECT_TRUE(WaitForReports(2));
}

TEST_F(FocusWatchExports, AStartRightAfterAStopFromWithinTheCallbackIsNoEnd) {
  ASSERT_TRUE(BringForward(own.Window()));
  library.SetFocusCallbackEx(RecordAndStop);
  library.StartFocusWatch(50);
  ASSERT_TRUE(WaitForReports(1));
  // Until the flag is taken back a start does nothing, so try until the second watch reports.
  EXPECT_TRUE(Eventually([&] {
    library.StartFocusWatch(50);
    return SeenSoFar().size() >= 2;
  }));
}

TEST_F(FocusWatchExports, AStopWaitsForACallbackThatBlocks) {
  ASSERT_TRUE(BringForward(own.Window()));
  library.SetFocusCallbackEx(Block);
  library.StartFocusWatch(50);
  ASSERT_TRUE(Eventually([] { return g_inside.load(); }));
  std::atomic<bool> stopped = false;
  std::thread stopper([&] {
    library.StopFocusWatch();
    stopped = true;
  });
  std::this_thread::sleep_for(300ms);
  EXPECT_FALSE(stopped);
  g_release = true;
  stopper.join();
}

TEST_F(FocusWatchExports, ThePollsKeepTheirInterval) {
  // A stop takes up to one interval: it shows which one is in use.
  const std::pair<int32_t, std::chrono::milliseconds> intervals[] = {
      {0, 200ms}, {49, 200ms}, {50, 50ms}, {1500, 1500ms}};
  for (const auto& [given, used] : intervals) {
    library.StartFocusWatch(given);
    std::this_thread::sleep_for(20ms);
    library.StartFocusWatch(3000);  // ignored
    const auto begin = std::chrono::steady_clock::now();
    library.StopFocusWatch();
    const auto taken = std::chrono::steady_clock::now() - begin;
    EXPECT_LT(taken, used + 400ms) << given;
    EXPECT_GT(taken, used - 100ms) << given;
  }
}

TEST_F(FocusWatchExports, AStopWithoutAStartReturnsAtOnceAndSaysNothing) {
  const DebugCapture capture;
  library.StopFocusWatch();
  EXPECT_THAT(capture.Lines(), IsEmpty());
}

// A stop that comes before the thread's first poll ends it at once, so these rounds are quick; the unit tests
// play as many with polls in them.
TEST_F(FocusWatchExports, WorksBehindTenThousandQuickRoundsOfStartAndStop) {
  ASSERT_TRUE(BringForward(own.Window()));
  for (int i = 0; i < 10'000; ++i) {
    library.StartFocusWatch(50);
    library.StopFocusWatch();
  }
  library.SetFocusCallbackEx(Record);
  library.StartFocusWatch(50);
  EXPECT_TRUE(WaitForReports(1));
  library.StopFocusWatch();
}

TEST_F(FocusWatchExports, FiftyRoundsWithPollsReportOnceEach) {
  ASSERT_TRUE(BringForward(own.Window()));
  library.SetFocusCallbackEx(Record);
  for (size_t round = 1; round <= 50; ++round) {
    library.StartFocusWatch(50);
    ASSERT_TRUE(WaitForReports(round));
    library.StopFocusWatch();
  }
  EXPECT_EQ(SeenSoFar().size(), 50u);
}

// The exit code of this program when it runs one helper.
uint32_t ExitCodeOfHelper(const std::string& helper) {
  const std::string program = Narrow(ThisProgram());
  return RunProgram(program.substr(program.rfind('\\') + 1),
                    {"--gtest_also_run_disabled_tests", "--gtest_filter=FocusHelper.DISABLED_" + helper})
      .exitCode;
}

TEST(FocusWatchLife, AProcessMayExitWithAWatchRunning) {
  EXPECT_EQ(ExitCodeOfHelper("ExitsWithAWatch"), 71u);
  EXPECT_EQ(ExitCodeOfHelper("EndsByExitProcessWithAWatch"), 72u);
}

TEST(FocusWatchLife, TheLibraryMayBeUnloadedWithAWatchRunning) {
  EXPECT_EQ(ExitCodeOfHelper("UnloadsWithAWatch"), 73u);
  EXPECT_EQ(ExitCodeOfHelper("UnloadsAndExitsWithAWatch"), 74u);
}

TEST(FocusWatchLife, AfterAStopTheLibraryUnloads) {
  {
    Library library(TARNWICK_DLL);
    library.StartFocusWatch(50);
    library.StopFocusWatch();
  }
  EXPECT_EQ(GetModuleHandleA(TARNWICK_DLL), nullptr);
}

}  // namespace
}  // namespace tarnwick::tests
