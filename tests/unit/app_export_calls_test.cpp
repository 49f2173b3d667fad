#include "inventory/app_export_calls.h"

#include "foundation/windows_api.h"
#include "inventory/app_cache.h"
#include "support/debug_capture.h"
#include "support/guarded_buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>
#include <stdexcept>
#include <thread>

namespace tarnwick {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

constexpr QueryExport kQuery = {"IA_Some", {"CRITICAL ERROR in IA_Some: ", "CRITICAL ERROR: Unknown."}};
constexpr QueryExport kApiQuery = {
    "IA_Some", {"CRITICAL ERROR in IA_Some: ", "CRITICAL ERROR: Unknown."}, true};

QueryAnswer Text(const char* text) { return {AnswerKind::kText, text}; }

// Whether another thread could enter the lock at once.
bool IsFree(CriticalSection& lock) {
  static_assert(sizeof(CriticalSection) == sizeof(CRITICAL_SECTION));
  auto& section = reinterpret_cast<CRITICAL_SECTION&>(lock);
  bool entered = false;
  std::thread([&] {
    entered = TryEnterCriticalSection(&section) != FALSE;
    if (entered) LeaveCriticalSection(&section);
  }).join();
  return entered;
}

class ExportCalls : public testing::Test {
 protected:
  ExportCalls() {
    LeaveComOfEarlierTests();
    g_appCache.assign(2, AppRecord());
    lastFree = {};
  }
  ~ExportCalls() override { g_appCache.clear(); }

  // A structured exception in an earlier test may have left this thread in an apartment, as it is meant to.
  static void LeaveComOfEarlierTests() {
    for (HRESULT answer; (answer = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) != S_OK;) {
      if (answer == S_FALSE) CoUninitialize();
      CoUninitialize();
    }
    CoUninitialize();
  }

  static QueryAnswer SeeLocks() {
    lastFree = {IsFree(g_apiLock), IsFree(g_cacheLock)};
    return Text("text");
  }

  void ExpectAllIsFree() {
    EXPECT_TRUE(IsFree(g_apiLock));
    EXPECT_TRUE(IsFree(g_cacheLock));
    // COM was balanced: this thread has none, so the first entry says so.
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    CoUninitialize();
  }

  static inline std::pair<bool, bool> lastFree;
  char buffer[16] = "~~~~~~~~~~~~~~~";
};

TEST_F(ExportCalls, AQueryHoldsTheCacheLockToItsEnd) {
  EXPECT_EQ(RunQuery(kQuery, buffer, 16, SeeLocks), 4);
  EXPECT_STREQ(buffer, "text");
  EXPECT_EQ(lastFree, std::make_pair(true, false));
  ExpectAllIsFree();
}

TEST_F(ExportCalls, AQueryThatSaysSoHoldsTheApiLockToo) {
  EXPECT_EQ(RunQuery(kApiQuery, buffer, 16, SeeLocks), 4);
  EXPECT_EQ(lastFree, std::make_pair(false, false));
  ExpectAllIsFree();
}

TEST_F(ExportCalls, AFilledCacheIsNotReadAgainAndAnEmptyOneIs) {
  const tests::DebugCapture capture;
  RunQuery(kQuery, nullptr, 0, [] { return Text(""); });
  EXPECT_THAT(capture.Lines(), ElementsAre("IA_Some START"));
  g_appCache.clear();
  RunQuery(kQuery, nullptr, 0, [] { return Text(""); });
  EXPECT_THAT(capture.Lines(), Contains("RefreshCacheNoLock START"));
}

TEST_F(ExportCalls, ExceptionsAreLoggedAndAnsweredWithAnEmptyList) {
  const tests::DebugCapture capture;
  EXPECT_EQ(RunQuery(kApiQuery, buffer, 16, []() -> QueryAnswer { throw std::runtime_error("why"); }), 2);
  EXPECT_STREQ(buffer, "[]");
  buffer[0] = '~';
  EXPECT_EQ(RunQuery(kApiQuery, buffer, 16, []() -> QueryAnswer { throw 1; }), 2);
  EXPECT_STREQ(buffer, "[]");
  EXPECT_THAT(capture.LinesWith("CRITICAL"),
              ElementsAre("CRITICAL ERROR in IA_Some: why", "CRITICAL ERROR: Unknown."));
  ExpectAllIsFree();
}

TEST_F(ExportCalls, StructuredExceptionsToo) {
  const tests::DebugCapture capture;
  for (const DWORD code : {0xE1234567u, 0x40010006u, 0x4001000Au}) {
    buffer[0] = '~';
    const int32_t result = RunQuery(kApiQuery, buffer, 16, [code]() -> QueryAnswer {
      RaiseException(code, 0, 0, nullptr);
      return {};
    });
    EXPECT_EQ(result, 2);
    EXPECT_STREQ(buffer, "[]");
    ExpectAllIsFree();
  }
  EXPECT_THAT(capture.LinesWith("CRITICAL"),
              ElementsAre("CRITICAL SEH ERROR in IA_Some: Exception Code 0xE1234567",
                          "CRITICAL SEH ERROR in IA_Some: Exception Code 0x40010006",
                          "CRITICAL SEH ERROR in IA_Some: Exception Code 0x4001000A"));
}

TEST_F(ExportCalls, ABufferThatCantBeWrittenIsAStructuredException) {
  const tests::DebugCapture capture;
  EXPECT_EQ(RunQuery(kApiQuery, reinterpret_cast<char*>(8), 100, [] { return Text("text"); }), 2);
  EXPECT_THAT(capture.LinesWith("CRITICAL"),
              ElementsAre("CRITICAL SEH ERROR in IA_Some: Exception Code 0xC0000005"));
  ExpectAllIsFree();
}

TEST_F(ExportCalls, ABufferShorterThanToldHoldsAnEmptyListAndNoTornText) {
  const tests::DebugCapture capture;
  const tests::GuardedBuffer three(3), ten(10);
  for (const tests::GuardedBuffer* shorter : {&three, &ten}) {
    EXPECT_EQ(RunQuery(kApiQuery, shorter->Data(), 100, [] { return Text("[{\"name\":\"Foo\"}]"); }), 2);
    EXPECT_EQ(shorter->Text(), "[]");
    ExpectAllIsFree();
  }
  EXPECT_EQ(capture.LinesWith("CRITICAL"),
            std::vector<std::string>(2, "CRITICAL SEH ERROR in IA_Some: Exception Code 0xC0000005"));
}

TEST_F(ExportCalls, ABufferWithoutRoomForTheEmptyListHurtsNobody) {
  const tests::GuardedBuffer two(2);
  EXPECT_EQ(RunQuery(kApiQuery, two.Data(), 100, [] { return Text("[{}]"); }), 2);
  EXPECT_EQ(two.Text(), "");
  EXPECT_EQ(RunQuery(kApiQuery, two.Data(), 100, []() -> QueryAnswer { throw 1; }), 2);
  EXPECT_EQ(two.Text(), "");
  ExpectAllIsFree();
}

TEST_F(ExportCalls, FailuresWriteWhatHasRoomAndNothingToNoBuffer) {
  const auto fail = []() -> QueryAnswer { throw 1; };
  EXPECT_EQ(RunQuery(kQuery, nullptr, 100, fail), 2);
  EXPECT_EQ(RunQuery(kQuery, buffer, 0, fail), 2);
  EXPECT_EQ(buffer[0], '~');
  for (const int32_t size : {1, 2}) {
    std::fill(std::begin(buffer), std::end(buffer), '~');
    EXPECT_EQ(RunQuery(kQuery, buffer, size, fail), 2);
    EXPECT_EQ(buffer[0], '\0');
    EXPECT_EQ(buffer[1], '~');
  }
}

TEST_F(ExportCalls, APageBehindTheEndIsWrittenWholeOrNotAtAll) {
  const QueryAnswer answer = {AnswerKind::kPageBehindEnd, {}};
  EXPECT_EQ(DeliverAnswer(answer, nullptr, 100), 2);
  EXPECT_EQ(DeliverAnswer(answer, buffer, 2), 2);
  EXPECT_EQ(buffer[0], '~');
  EXPECT_EQ(DeliverAnswer(answer, buffer, 3), 2);
  EXPECT_STREQ(buffer, "[]");
}

TEST_F(ExportCalls, ARequestThatCantBeReadIsZeroWhereItsAnswerHasNoRoom) {
  const QueryAnswer answer = {AnswerKind::kNoRequest, {}};
  EXPECT_EQ(DeliverAnswer(answer, nullptr, 100), 0);
  EXPECT_EQ(DeliverAnswer(answer, buffer, 2), 0);
  EXPECT_EQ(buffer[0], '~');
  EXPECT_EQ(DeliverAnswer(answer, buffer, 3), 2);
  EXPECT_STREQ(buffer, "[]");
}

// --- IA_RefreshCache. ---

TEST_F(ExportCalls, ARefreshHoldsBothLocksAndCountsTheRecords) {
  const tests::DebugCapture capture;
  EXPECT_EQ(RunRefresh([] {
              SeeLocks();
              g_appCache.assign(3, AppRecord());
            }),
            3);
  EXPECT_EQ(lastFree, std::make_pair(false, false));
  EXPECT_THAT(capture.Lines(), ElementsAre("IA_RefreshCache START", "IA_RefreshCache SUCCESS"));
  ExpectAllIsFree();
}

TEST_F(ExportCalls, AFailedRefreshIsLoggedAndCountsNothing) {
  const tests::DebugCapture capture;
  EXPECT_EQ(RunRefresh([] { throw std::runtime_error("why"); }), 0);
  EXPECT_EQ(RunRefresh([] { throw 1; }), 0);
  EXPECT_EQ(RunRefresh([] { RaiseException(0xE0000001, 0, 0, nullptr); }), 0);
  EXPECT_THAT(capture.LinesWith("CRITICAL"),
              ElementsAre("CRITICAL ERROR in IA_RefreshCache: why",
                          "CRITICAL ERROR: Unknown exception in IA_RefreshCache.",
                          "CRITICAL SEH ERROR in IA_RefreshCache: Exception Code 0xE0000001"));
  ExpectAllIsFree();
}

TEST_F(ExportCalls, AThreadInASingleThreadedApartmentKeepsIt) {
  ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
  RunQuery(kApiQuery, nullptr, 0, [] { return Text(""); });
  RunRefresh([] {});
  EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
  CoUninitialize();
  CoUninitialize();
}

}  // namespace
}  // namespace tarnwick
