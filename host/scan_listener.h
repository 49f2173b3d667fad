#pragma once
// What the commands that run a scan have in common: the look at the catalogue before it, and the log and the
// progress line during it.

#include "host/log_output.h"
#include "host/options.h"
#include "host/scan_report.h"

#include <string>

namespace tarnwick::host {

// The same options, with the starter catalogue beside the program as the named one where it is to be used;
// then one line on the standard error says so. The library itself never takes it.
Options WithStarterCatalogue(Options options);

// The catalogue that the library will take, as its path. Throws std::runtime_error for one that the library
// would answer with an empty list, or with another catalogue's games; says on the standard error where not all
// of it can be read.
std::string CheckedCatalogue(const Options& options);

// Shows what the library logs: its lines where they were asked for, or else how far the scan is.
class ScanListener {
 public:
  explicit ScanListener(const Options& options);
  ~ScanListener();
  ScanListener(const ScanListener&) = delete;
  ScanListener& operator=(const ScanListener&) = delete;

  // One call at a time.
  void Hear(const LogEntry& entry);
  void BeginAnew() { reporter_ = ScanReporter(); }
  const ScanReport& Report() const { return reporter_.Report(); }
  const std::string& Began() const { return began_; }  // the first line's time stamp

 private:
  ScanReporter reporter_;
  LogOutput log_;
  std::string began_;
  bool draws_;
};

}  // namespace tarnwick::host
