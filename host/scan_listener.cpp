#include "host/scan_listener.h"

#include "host/catalogue_file.h"
#include "host/console.h"
#include "host/failure.h"
#include "host/progress.h"

#include <stdexcept>

namespace tarnwick::host {

Options WithStarterCatalogue(Options options) {
  const std::string starter = StarterCatalogue(options.catalogue);
  if (starter.empty()) return options;
  ReportLine("no catalogue was named, and none is in the current folder; using the starter catalogue " +
             starter);
  options.catalogue = starter;
  return options;
}

std::string CheckedCatalogue(const Options& options) {
  const std::string path = CatalogueToScan(options.catalogue);
  const CatalogueFile file = InspectCatalogue(path);
  if (!file.fault.empty()) throw std::runtime_error(file.fault);
  const std::string warning = CatalogueWarning(path, file);
  if (!warning.empty()) ReportLine(warning);
  return path;
}

ScanListener::ScanListener(const Options& options)
    : log_(options), draws_(!options.log && StandardErrorIsTerminal()) {}

ScanListener::~ScanListener() {
  if (draws_) DrawProgress("");
}

void ScanListener::Hear(const LogEntry& entry) {
  if (began_.empty()) began_ = entry.stamp;
  reporter_.Add(entry);
  log_.Write(entry);
  if (draws_) DrawProgress(ProgressText(reporter_));
}

}  // namespace tarnwick::host
