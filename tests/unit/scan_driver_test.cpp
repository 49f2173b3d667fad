// The driver with tables of the test's own. What it does with the library's strategies is tested through the
// export.
#include "core/scan_driver.h"

#include "common/catalogue_text.h"
#include "desktop/desktop.h"
#include "foundation/locks.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/guarded_buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>

#include <atomic>
#include <cstring>
#include <stdexcept>
#include <thread>

namespace tarnwick {
namespace {

using testing::Contains;
using testing::ElementsAre;
using tests::GuardedBuffer;

ScanResults FindFoo(const GameList&, const std::string&) {
  ScanResult result;
  result.name = "Foo";
  result.exePath = "C:\\Games\\foo.exe";
  return {result, result};
}

std::vector<ScanStrategy> OneStrategy() { return {{"Foo", 6, FindFoo}}; }
std::vector<ScanStrategy> NoMemory() { throw std::runtime_error("no memory"); }
std::vector<ScanStrategy> Odd() { throw 7; }
volatile int* g_nowhere = nullptr;
std::vector<ScanStrategy> Faulting() {
  *g_nowhere = 1;
  return {};
}

// True if another thread could enter g_apiLock now.
bool ApiLockIsFree() {
  // The lock's own type has no try; a thread that waits for it shows that it's held.
  auto entered = std::make_shared<std::atomic<bool>>(false);
  std::thread([entered] {
    const CriticalSectionScope lock(g_apiLock);
    *entered = true;
  }).detach();
  for (int i = 0; i < 300 && !*entered; ++i) Sleep(1);
  return *entered;
}

class ScanDriver : public testing::Test {
 protected:
  void SetUp() override {
    GameSignature game;
    game.DisplayName = "Foo";
    desktop_.File(catalogue_, common::CatalogueText({game}));
  }

  desktop::Desktop desktop_;
  std::string catalogue_ = R"(C:\TarnwickTest\ScanDriver\catalogue.xml)";
};

TEST_F(ScanDriver, StandardExceptionIsLoggedAndAnsweredWithAnEmptyArray) {
  const GuardedBuffer buffer(100);
  const tests::DebugCapture capture;
  EXPECT_EQ(IA_RunMultiPlatformGameScanJson_Impl(catalogue_.c_str(), buffer.Data(), buffer.Size(), NoMemory),
            2);
  EXPECT_EQ(buffer.Text(), "[]");
  EXPECT_EQ(capture.Lines().back(), "CRITICAL ERROR in IA_RunMultiPlatformGameScanJson: no memory");
  EXPECT_TRUE(ApiLockIsFree());
}

TEST_F(ScanDriver, OtherExceptionIsLoggedAndAnsweredWithAnEmptyArray) {
  const GuardedBuffer buffer(100);
  const tests::DebugCapture capture;
  EXPECT_EQ(IA_RunMultiPlatformGameScanJson_Impl(catalogue_.c_str(), buffer.Data(), buffer.Size(), Odd), 2);
  EXPECT_EQ(buffer.Text(), "[]");
  EXPECT_EQ(capture.Lines().back(), "CRITICAL ERROR: Unknown exception in IA_RunMultiPlatformGameScanJson.");
  EXPECT_TRUE(ApiLockIsFree());
}

TEST_F(ScanDriver, ExceptionsWriteNothingWithoutABuffer) {
  const GuardedBuffer buffer(8);
  EXPECT_EQ(IA_RunMultiPlatformGameScanJson_Impl(catalogue_.c_str(), nullptr, 8, NoMemory), 2);
  EXPECT_EQ(IA_RunMultiPlatformGameScanJson_Impl(catalogue_.c_str(), buffer.Data(), 0, NoMemory), 2);
  EXPECT_EQ(IA_RunMultiPlatformGameScanJson_Impl(catalogue_.c_str(), buffer.Data(), -5, NoMemory), 2);
  EXPECT_TRUE(buffer.Untouched());
}

TEST_F(ScanDriver, StructuredExceptionIsLoggedAndAnsweredWithAnEmptyArrayAndKeepsTheLock) {
  const GuardedBuffer buffer(100);
  const tests::DebugCapture capture;
  // On this thread, which then owns the lock for ever, unless it gives back what the fault skipped.
  EXPECT_EQ(RunScanGuarded(catalogue_.c_str(), buffer.Data(), buffer.Size(), Faulting), 2);
  EXPECT_EQ(buffer.Text(), "[]");
  EXPECT_EQ(capture.Lines().back(),
            "CRITICAL SEH ERROR in IA_RunMultiPlatformGameScanJson: Exception Code 0xC0000005");
  EXPECT_FALSE(ApiLockIsFree());
  g_apiLock.Leave();
  EXPECT_TRUE(ApiLockIsFree());
  CoUninitialize();
}

TEST_F(ScanDriver, BufferShorterThanToldHoldsAnEmptyArrayOrWhatHasRoom) {
  const tests::DebugCapture capture;
  const GuardedBuffer ten(10), two(2);
  for (char* buffer : {ten.Data(), two.Data(), reinterpret_cast<char*>(8)}) {
    EXPECT_EQ(RunScanGuarded(catalogue_.c_str(), buffer, 1000, OneStrategy), 2);
    g_apiLock.Leave();  // what the fault skipped
    CoUninitialize();
  }
  EXPECT_EQ(ten.Text(), "[]");
  EXPECT_EQ(two.Text(), "");
  EXPECT_EQ(capture.LinesWith("CRITICAL"),
            std::vector<std::string>(
                3, "CRITICAL SEH ERROR in IA_RunMultiPlatformGameScanJson: Exception Code 0xC0000005"));
}

TEST_F(ScanDriver, EmptyArrayNeverOverrunsTinyBuffers) {
  for (int size = 0; size <= 4; ++size) {
    const GuardedBuffer buffer(size);
    EXPECT_EQ(IA_RunMultiPlatformGameScanJson_Impl(catalogue_.c_str(), buffer.Data(), size, Odd), 2);
    if (size > 0) {
      EXPECT_EQ(buffer.Text(), size > 2 ? "[]" : "") << size;
    }
  }
}

TEST_F(ScanDriver, FailedStrategyLeavesTheOthersGamesInTheAnswer) {
  const auto table = [] {
    return std::vector<ScanStrategy>{
        {"Broken", 6, [](const GameList&, const std::string&) -> ScanResults { throw 7; }},
        {"Foo", 6, FindFoo}};
  };
  const GuardedBuffer buffer(2000);
  const tests::DebugCapture capture;
  const int length = RunScanGuarded(catalogue_.c_str(), buffer.Data(), buffer.Size(), table);
  EXPECT_THAT(buffer.Text(), testing::HasSubstr("\"name\":\"Foo\""));
  EXPECT_GT(length, 2);
  EXPECT_THAT(capture.Lines(), Contains("CRITICAL SEH ERROR in Strategy [Broken]: 0xE06D7363"));
}

TEST_F(ScanDriver, NothingFoundEndsOnTheOrdinaryWay) {
  const auto table = [] {
    return std::vector<ScanStrategy>{
        {"None", 6, [](const GameList&, const std::string&) { return ScanResults(); }}};
  };
  const GuardedBuffer buffer(3);
  const tests::DebugCapture capture;
  EXPECT_EQ(RunScanGuarded(catalogue_.c_str(), buffer.Data(), buffer.Size(), table), 2);
  EXPECT_EQ(buffer.Text(), "[]");
  const std::vector<std::string> lines = capture.Lines();
  const std::vector<std::string> last(lines.end() - 3, lines.end());
  EXPECT_THAT(last, ElementsAre("Total raw results: 0", "Unique results after deduplication: 0",
                                "Successfully finished IA_RunMultiPlatformGameScanJson"));
}

TEST_F(ScanDriver, CutsAtEverySizeAndReturnsTheWholeLength) {
  const int whole = RunScanGuarded(catalogue_.c_str(), nullptr, 0, OneStrategy);
  const GuardedBuffer all(whole + 1);
  EXPECT_EQ(RunScanGuarded(catalogue_.c_str(), all.Data(), all.Size(), OneStrategy), whole);
  const std::string text = all.Text();
  ASSERT_EQ(static_cast<int>(text.size()), whole);
  for (int size = 1; size <= std::min(whole + 2, 120); ++size) {
    const GuardedBuffer buffer(size);
    EXPECT_EQ(RunScanGuarded(catalogue_.c_str(), buffer.Data(), size, OneStrategy), whole);
    EXPECT_EQ(buffer.Text(), text.substr(0, static_cast<size_t>(size) - 1)) << size;
  }
}

TEST_F(ScanDriver, LogsAWholeScanInOrder) {
  const tests::DebugCapture capture;
  RunScanGuarded(catalogue_.c_str(), nullptr, 0, OneStrategy);
  std::vector<std::string> lines = capture.Lines();
  std::erase_if(lines, [](const std::string& line) { return line.rfind("[TarnwickXml]", 0) == 0; });
  EXPECT_THAT(lines, ElementsAre("==================================================",  //
                                 "IA_RunMultiPlatformGameScanJson START",               //
                                 "Input config path (raw UTF-8): " + catalogue_,        //
                                 "Using XML file: " + catalogue_,                       //
                                 "Calling XmlParser::LoadGameListFromXml...",           //
                                 "Loaded 1 games from XML.",                            //
                                 "Defining scan strategies...",                         //
                                 "Strategies defined: 1",                               //
                                 "Grouping strategies by priority...",                  //
                                 "Priority groups created: 1",                          //
                                 "Pending games: 1",                                    //
                                 "Processing priority level: 6",                        //
                                 "Launching thread for strategy: Foo",                  //
                                 "Strategy [Foo] START (in thread)",                    //
                                 "Strategy [Foo] finished. Found: 2",                   //
                                 "Total raw results: 2",                                //
                                 "Unique results after deduplication: 1",               //
                                 "Successfully finished IA_RunMultiPlatformGameScanJson"));
}

TEST_F(ScanDriver, LeavesTheThreadsComAsItWas) {
  std::thread([&] {
    RunScanGuarded(catalogue_.c_str(), nullptr, 0, OneStrategy);
    const HRESULT after = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    EXPECT_EQ(after, S_OK);
    RunScanGuarded(catalogue_.c_str(), nullptr, 0, OneStrategy);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
    CoUninitialize();
    CoUninitialize();
  }).join();
}

}  // namespace
}  // namespace tarnwick
