// Edge: the log lines that most strategies share.
#include "matching/found_report.h"

#include "foundation/log.h"

#include <utility>

namespace tarnwick {

void ReportFound(ScanResults& results, const std::string& prefix, ScanResult result) {
  result.found = true;
  results.push_back(std::move(result));
  LogStream() << prefix << " Found: " << results.back().name << " -> " << results.back().exePath << "\n";
}

void ReportCompletion(const ScanResults& results, const std::string& prefix) {
  LogStream() << prefix << " Scan completed! Found " << results.size() << " games.\n";
}

}  // namespace tarnwick
