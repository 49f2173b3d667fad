// The public header compiles in both languages: this file is C++, and the program it runs is plain C.
#include "support/library.h"
#include "support/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnwick::tests {
namespace {

TEST(PublicHeader, AHostInPlainCCallsEveryExport) {
  const ProgramResult result = RunProgram("tarnwick_public_header_test.exe", {}, "C:\\windows");
  EXPECT_EQ(result.exitCode, 0u) << result.errors;
  EXPECT_THAT(result.output, testing::HasSubstr("TARNWICK-TESTS-ENDED"));
}

TEST(PublicHeader, EveryExportIsThereForAHostThatLoadsTheLibraryAtRunTime) {
  const Library library(TARNWICK_DLL);
  EXPECT_NE(library.IA_RunMultiPlatformGameScanJson, nullptr);
  EXPECT_NE(library.StopFocusWatch, nullptr);
}

}  // namespace
}  // namespace tarnwick::tests
