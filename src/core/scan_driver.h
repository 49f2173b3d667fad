#pragma once
// The driver of a scan: everything between the exported call and the last byte in the caller's buffer.

#include "core/strategy_runner.h"

namespace tarnwick {

// A whole scan; see the public header for the contract. Lets no language exception out, and holds g_apiLock
// for the whole call. `table` stands in for the library's own strategies in tests.
int IA_RunMultiPlatformGameScanJson_Impl(const char* path, char* buffer, int size,
                                         const StrategyTable& table = ScanStrategies);

// The driver inside the structured-exception guard of the export. What such an exception skips stays skipped:
// g_apiLock may stay held.
int RunScanGuarded(const char* path, char* buffer, int size, const StrategyTable& table = ScanStrategies);

}  // namespace tarnwick
