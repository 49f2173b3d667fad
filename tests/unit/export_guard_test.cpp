#include "foundation/export_guard.h"

#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/guarded_buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr ExportMessages kMessages = {"Known: ", "Unknown."};

TEST(RunCatching, SaysNothingWhereAllIsWell) {
  const tests::DebugCapture capture;
  EXPECT_TRUE(RunCatching(kMessages, [] {}));
  EXPECT_THAT(capture.Lines(), IsEmpty());
}

TEST(RunCatching, LogsExceptionsWithTheirTextAndOthersWithout) {
  const tests::DebugCapture capture;
  EXPECT_FALSE(RunCatching(kMessages, [] { throw std::runtime_error("why"); }));
  EXPECT_FALSE(RunCatching(kMessages, [] { throw 1; }));
  EXPECT_THAT(capture.Lines(), ElementsAre("Known: why", "Unknown."));
}

TEST(RunExportGuarded, LogsTheCodeInEightUpperCaseDigits) {
  const tests::DebugCapture capture;
  EXPECT_TRUE(RunExportGuarded("IA_Some", [] {}));
  EXPECT_FALSE(RunExportGuarded("IA_Some", [] { RaiseException(0xABC, 0, 0, nullptr); }));
  EXPECT_FALSE(RunExportGuarded("IA_Some", [] { RaiseException(0x40010006, 0, 0, nullptr); }));
  EXPECT_FALSE(RunExportGuarded("IA_Some", [] { *reinterpret_cast<volatile int*>(8) = 1; }));
  EXPECT_THAT(capture.LinesWith("CRITICAL"),
              ElementsAre("CRITICAL SEH ERROR in IA_Some: Exception Code 0x00000ABC",
                          "CRITICAL SEH ERROR in IA_Some: Exception Code 0x40010006",
                          "CRITICAL SEH ERROR in IA_Some: Exception Code 0xC0000005"));
}

TEST(RunExportGuarded, ALanguageExceptionThatGetsThisFarIsAStructuredOne) {
  const tests::DebugCapture capture;
  EXPECT_FALSE(RunExportGuarded("IA_Some", [] { throw 1; }));
  EXPECT_THAT(capture.LinesWith("CRITICAL"),
              ElementsAre("CRITICAL SEH ERROR in IA_Some: Exception Code 0xE06D7363"));
}

// --- The empty answer of a call that has failed.

TEST(WriteEmptyResultGuarded, WritesAsTheUnguardedOneWhereTheBufferIsAsTold) {
  const tests::GuardedBuffer two(2), three(3);
  EXPECT_EQ(WriteEmptyResultGuarded("[]", nullptr, 100), 2);
  EXPECT_EQ(WriteEmptyResultGuarded("[]", two.Data(), 0), 2);
  EXPECT_TRUE(two.Untouched());
  EXPECT_EQ(WriteEmptyResultGuarded("[]", two.Data(), 2), 2);
  EXPECT_EQ(two.Text(), "");
  EXPECT_EQ(WriteEmptyResultGuarded("[]", three.Data(), 3), 2);
  EXPECT_EQ(three.Text(), "[]");
}

TEST(WriteEmptyResultGuarded, LeavesAnEmptyTextWhereTheBufferHasNoRoomForMore) {
  const tests::DebugCapture capture;
  for (const int size : {1, 2}) {
    const tests::GuardedBuffer buffer(size);
    EXPECT_EQ(WriteEmptyResultGuarded("[]", buffer.Data(), 100), 2);
    EXPECT_EQ(buffer.Text(), "") << size;
  }
  EXPECT_EQ(WriteEmptyResultGuarded("[]", reinterpret_cast<char*>(8), 100), 2);
  EXPECT_THAT(capture.Lines(), IsEmpty());
}

}  // namespace
}  // namespace tarnwick
