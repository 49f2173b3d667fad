// A scan that is listened to gives what the library's own gives, and each strategy its own questions.
#include "host/explain/observed_scan.h"

#include "core/scan_driver.h"
#include "core/scan_json.h"
#include "desktop/description.h"
#include "foundation/com_scope.h"
#include "support/file_bytes.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace tarnwick {
namespace {

using desktop::Desktop;
using host::ObservedScan;
using host::ObserveScan;
using host::ObserveStrategy;
using host::StrategyRun;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr char kCatalogue[] = R"(C:\TarnwickDemo\MasterGameList.xml)";

class HostObservedScan : public testing::Test {
 protected:
  void SetUp() override {
    ApplyDescription(desktop_, tests::ReadSource("desktop/samples/sample-desktop.json"));
  }

  Desktop desktop_;
};

const StrategyRun& RunOf(const ObservedScan& scan, const std::string& name) {
  for (const StrategyRun& run : scan.runs) {
    if (run.strategy.name == name) return run;
  }
  throw std::runtime_error("no run of " + name);
}

TEST_F(HostObservedScan, GivesWhatTheLibrarysOwnScanGives) {
  std::string answer(4u << 20, '\0');
  answer.resize(
      static_cast<size_t>(RunScanGuarded(kCatalogue, answer.data(), static_cast<int>(answer.size()))));
  const ObservedScan scan = ObserveScan(kCatalogue, {});
  const ComScope com;
  EXPECT_EQ(WriteScanJson(scan.unique), answer);
}

TEST_F(HostObservedScan, HasEveryStrategyOnceInTheOrderOfLaunching) {
  const ObservedScan scan = ObserveScan(kCatalogue, {});
  ASSERT_THAT(scan.runs, SizeIs(ScanStrategies().size()));
  for (size_t i = 0; i < scan.runs.size(); ++i) {
    EXPECT_EQ(scan.runs[i].strategy.name, ScanStrategies()[i].name);
  }
}

TEST_F(HostObservedScan, GivesEachStrategyItsOwnQuestions) {
  const ObservedScan scan = ObserveScan(kCatalogue, {});
  for (const StrategyRun& run : scan.runs) {
    EXPECT_FALSE(run.heard.empty()) << run.strategy.name;
    for (const common::Heard& heard : run.heard) EXPECT_EQ(heard.question.asker, run.strategy.name);
  }
}

TEST_F(HostObservedScan, TellsWhichRecordsALevelWasGiven) {
  const ObservedScan scan = ObserveScan(kCatalogue, {});
  EXPECT_THAT(RunOf(scan, "Default Registry Scan").games, SizeIs(scan.catalogue.size()));
  EXPECT_LT(RunOf(scan, "Steam Games Scan").games.size(), scan.catalogue.size());
}

TEST_F(HostObservedScan, PassesTheLibrarysLogOn) {
  std::vector<std::string> lines;
  ObserveScan(kCatalogue, [&](const host::LogEntry& entry) { lines.push_back(entry.text); });
  EXPECT_THAT(lines, testing::Contains(StartsWith("Processing priority level: 6")));
}

ScanResults Throwing(const GameList&, const std::string&) { throw std::runtime_error("on purpose"); }

TEST(HostObservedStrategy, TellsTheGuardsLineOfAFailure) {
  const StrategyRun run = ObserveStrategy({"Broken Search", 3, Throwing}, {});
  EXPECT_EQ(run.failure, "CRITICAL SEH ERROR in Strategy [Broken Search]: 0xE06D7363");
  EXPECT_THAT(run.results, IsEmpty());
}

TEST(HostObservedStrategy, HasNoFailureWhereNothingFailed) {
  EXPECT_EQ(ObserveStrategy(ScanStrategies().front(), {}).failure, "");
}

}  // namespace
}  // namespace tarnwick
