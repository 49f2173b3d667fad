#include "foundation/seh_guard.h"

#include "foundation/windows_api.h"
#include "support/debug_capture.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace tarnwick {
namespace {

volatile int* g_nowhere = nullptr;

volatile int g_depth = 1'000'000'000;

int Recurse(volatile char* above) {
  volatile char frame[4096];
  frame[0] = above[0];
  return g_depth > 0 ? Recurse(frame) + frame[0] : 0;
}

TEST(SehGuard, ReturnsZeroForABodyThatEnds) {
  int ran = 0;
  EXPECT_EQ(RunGuarded([&] { ran = 1; }), 0u);
  EXPECT_EQ(ran, 1);
}

TEST(SehGuard, ReportsAnAccessViolation) {
  EXPECT_EQ(RunGuarded([] { *g_nowhere = 1; }), 0xC0000005u);
}

TEST(SehGuard, ReportsARaisedException) {
  EXPECT_EQ(RunGuarded([] { RaiseException(0xE0001234, 0, 0, nullptr); }), 0xE0001234u);
}

TEST(SehGuard, ReportsALanguageExceptionWithOneCode) {
  EXPECT_EQ(RunGuarded([] { throw std::runtime_error("x"); }), 0xE06D7363u);
  EXPECT_EQ(RunGuarded([] { throw 7; }), 0xE06D7363u);
}

TEST(SehGuard, NestsAndKeepsTheOuterBodyRunning) {
  uint32_t inner = 0;
  EXPECT_EQ(RunGuarded([&] {
              inner = RunGuarded([] { *g_nowhere = 1; });
              RaiseException(0xE0000001, 0, 0, nullptr);
            }),
            0xE0000001u);
  EXPECT_EQ(inner, 0xC0000005u);
}

TEST(SehGuard, SurvivesAStackOverflowOnAThread) {
  uint32_t code = 0;
  bool went_on = false;
  std::thread thread([&] {
    char top[1] = {0};
    code = RunGuarded([&] { Recurse(top); });
    went_on = true;
  });
  thread.join();
  EXPECT_EQ(code, 0xC00000FDu);
  EXPECT_TRUE(went_on);
}

// The debug output raises an exception and takes it itself, in front of any guard around the call.
TEST(SehGuard, NeverHearsOfTheDebugOutput) {
  tests::DebugCapture capture;
  int calls = 0;
  EXPECT_EQ(RunGuarded([&] {
              OutputDebugStringA("narrow");
              ++calls;
              OutputDebugStringW(L"wide");
              ++calls;
            }),
            0u);
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(capture.Raw(), (std::vector<std::string>{"narrow", "wide"}));
}

TEST(SehGuard, ReportsTheDebugOutputsCodesWhereSomebodyElseRaisesThem) {
  const ULONG_PTR odd[] = {5, 8};  // a text where no memory is
  const ULONG_PTR endless[] = {~ULONG_PTR{0}, reinterpret_cast<ULONG_PTR>("text")};
  tests::DebugCapture capture;  // sees these codes first
  for (const DWORD code : {0x40010006u, 0x4001000Au}) {
    EXPECT_EQ(RunGuarded([&] { RaiseException(code, 0, 0, nullptr); }), code);
    EXPECT_EQ(RunGuarded([&] { RaiseException(code, 0, 1, odd); }), code);
    EXPECT_EQ(RunGuarded([&] { RaiseException(code, 0, 2, odd); }), code);
    EXPECT_EQ(RunGuarded([&] { RaiseException(code, 0, 2, endless); }), code);
  }
  EXPECT_TRUE(capture.Raw().empty());
}

}  // namespace
}  // namespace tarnwick
