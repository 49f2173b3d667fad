#include "foundation/export_guard.h"

#include "foundation/windows_api.h"
#include "support/debug_capture.h"

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
  EXPECT_FALSE(RunExportGuarded("IA_Some", [] { *reinterpret_cast<volatile int*>(8) = 1; }));
  EXPECT_THAT(capture.LinesWith("CRITICAL"),
              ElementsAre("CRITICAL SEH ERROR in IA_Some: Exception Code 0x00000ABC",
                          "CRITICAL SEH ERROR in IA_Some: Exception Code 0xC0000005"));
}

TEST(RunExportGuarded, ALanguageExceptionThatGetsThisFarIsAStructuredOne) {
  const tests::DebugCapture capture;
  EXPECT_FALSE(RunExportGuarded("IA_Some", [] { throw 1; }));
  EXPECT_THAT(capture.LinesWith("CRITICAL"),
              ElementsAre("CRITICAL SEH ERROR in IA_Some: Exception Code 0xE06D7363"));
}

}  // namespace
}  // namespace tarnwick
