#pragma once
// Where each entry of a scan's answer comes from: the strategy whose result stands, the questions about it,
// and the results that were merged into it.

#include "host/explain/observed_scan.h"
#include "host/explain/scan_evidence.h"

#include <string>
#include <vector>

namespace tarnwick::host {

struct MergedResult {
  const StrategyRun* run;
  const ScanResult* result;
  std::string why;  // "same path, found later"
};

struct GameFinding {
  const StrategyRun* run;
  const ScanResult* result;
  Evidence evidence;
  std::vector<MergedResult> merged;  // in the order in which they were found
};

// One for each entry of `scan.unique`, in its order. What merges with what is asked of the library. All
// pointers lead into `scan`.
std::vector<GameFinding> FindingsOf(const ObservedScan& scan);

}  // namespace tarnwick::host
