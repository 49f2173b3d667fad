#include "matching/found_report.h"

#include "support/debug_capture.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

TEST(FoundReport, AppendsAndSaysSo) {
  tests::DebugCapture log;
  ScanResults results;
  ScanResult result;
  result.name = "Игра";
  result.exePath = "C:\\g.exe";
  ReportFound(results, "[X]", result);
  ReportCompletion(results, "[X]");
  ASSERT_EQ(results.size(), 1u);
  EXPECT_EQ(results[0].name, "Игра");
  EXPECT_TRUE(results[0].found);
  EXPECT_THAT(log.Raw(), testing::ElementsAre("[Tarnwick] [X] Found: Игра -> C:\\g.exe\n",
                                              "[Tarnwick] [X] Scan completed! Found 1 games.\n"));
}

}  // namespace
}  // namespace tarnwick
