#pragma once
// What a scan did, drawn from the library's log lines: its levels, its strategies, what each found and how
// long it ran. The library has no other way of telling.

#include "host/log_capture.h"

#include <map>
#include <string>
#include <vector>

namespace tarnwick::host {

struct StrategyReport {
  std::string name;
  int level = 0;
  bool started = false;
  bool finished = false;  // the level's barrier has passed
  size_t found = 0;       // results before merging
  // From the strategy's start line to the last line of its thread. Strategies log a line at their end, except
  // where they end early (docs/log-lines.md).
  double milliseconds = 0;
  std::vector<std::string> lines;  // all that its thread logged, in order
};

struct ScanReport {
  std::vector<StrategyReport> strategies;  // in the order of launching
  size_t gamesInCatalogue = 0;
  size_t rawResults = 0;
  size_t uniqueResults = 0;
  bool fellBack = false;           // the library took MasterGameList.xml of the current folder instead
  std::vector<std::string> notes;  // for people: what was recognised and not searched
};

// Builds the report line by line. `Add` may be called from one thread at a time.
class ScanReporter {
 public:
  void Add(const LogEntry& entry);
  const ScanReport& Report() const { return report_; }
  int CurrentLevel() const { return level_; }
  bool HasLevel() const { return hasLevel_; }

 private:
  StrategyReport* Find(const std::string& name);
  void AddFact(const std::string& line);
  void AddThreadLine(const LogEntry& entry);

  ScanReport report_;
  std::map<uint32_t, size_t> strategyOfThread_;
  std::map<size_t, std::chrono::steady_clock::time_point> startOfStrategy_;
  int level_ = 0;
  bool hasLevel_ = false;
};

// The first strategy with a log line that holds "Found" and the name and ends in " -> " and the path; where
// no line has the name, the first with such a line for the path. Empty if there is none.
std::string StrategyThatFound(const ScanReport& report, const std::string& name, const std::string& path);

}  // namespace tarnwick::host
