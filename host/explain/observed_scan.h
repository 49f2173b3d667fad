#pragma once
// A scan with the machine room's observer on: the library's own steps, with what each of them asked, got and
// gave. The objects that are linked into the program run it, since the dynamic library lets nobody listen.

#include "common/heard_questions.h"
#include "core/strategy_runner.h"
#include "host/log_capture.h"
#include "host/scan_report.h"

#include <functional>
#include <string>
#include <vector>

namespace tarnwick::host {

using common::Heard;

// One strategy, run once.
struct StrategyRun {
  ScanStrategy strategy;
  GameList games;            // the records it was given: those that no earlier level had found
  ScanResults results;       // before merging
  std::vector<Heard> heard;  // its questions, in the order of the answers
  std::string failure;       // the guard's log line, if the strategy ended in a fault or an exception
};

struct ObservedScan {
  GameList catalogue;
  std::vector<StrategyRun> runs;  // in the order of launching
  ScanResults all;                // by level, then in the table's order
  ScanResults unique;             // after merging: what the library's answer lists
  ScanReport report;              // times and log lines
};

using LogSink = std::function<void(const LogEntry&)>;

// Loads the catalogue as the library does and runs a whole scan of it, icons apart. `sink` hears the
// library's log, and may be empty.
ObservedScan ObserveScan(const std::string& cataloguePath, const LogSink& sink);

// Runs one strategy on a thread of its own, as a scan does, with these games alone.
StrategyRun ObserveStrategy(const ScanStrategy& strategy, const GameList& games);

}  // namespace tarnwick::host
