#pragma once
// The scan as a readable report in the log. It shares the strategies and their guard with the JSON scan, and
// nothing else: it runs them as tasks, gives each a list of its own, and merges by rules of its own.

#include "core/scan_json.h"
#include "core/strategy_runner.h"

#include <string>

namespace tarnwick {

// What one strategy's task gives back. No results if the strategy failed.
struct StrategyOutcome {
  std::string strategyName;
  ScanResults results;
};

// Drops a Steam result (by kind) whose id was seen, and any result whose path was seen, without regard to the
// case of ASCII letters. Results with neither all stay. Sources play no part: the first one stays.
ScanResults MergeForReport(const ScanResults& all);

// Behind RunMultiPlatformGameScan; see the public header. Lets no language exception out; takes no lock and
// leaves the calling thread's COM alone. The arguments stand in for the library's own strategies and icons in
// tests.
void RunConsoleReport(const StrategyTable& table = ScanStrategies,
                      const IconBuilder& buildIcon = BuildScanResultIcon);

}  // namespace tarnwick
