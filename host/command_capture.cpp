// tarnwick capture
#include <stdexcept>

#include "host/capture/capture.h"
#include "host/capture/capture_text.h"
#include "host/catalogue_file.h"
#include "host/command_output.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/failure.h"
#include "host/progress.h"

namespace tarnwick::host {
namespace {

// Throws for a catalogue that the library can't use.
std::string CheckedCatalogue(const Options& options) {
  const std::string path = CatalogueToScan(options.catalogue);
  const CatalogueFile file = InspectCatalogue(path);
  if (!file.fault.empty()) throw std::runtime_error(file.fault);
  const std::string warning = CatalogueWarning(path, file);
  if (!warning.empty()) ReportLine(warning);
  return path;
}

Capture CaptureWithLog(const Options& options, const std::string& catalogue) {
  LogOutput log(options);
  ScanReporter reporter;
  const bool draw = !options.log && StandardErrorIsTerminal();
  Capture capture = TakeCapture(catalogue, options.withApps, [&](const LogEntry& entry) {
    reporter.Add(entry);
    log.Write(entry);
    if (draw) DrawProgress(ProgressText(reporter));
  });
  if (draw) DrawProgress("");
  return capture;
}

}  // namespace

int RunCapture(const Options& options) {
  const Capture capture = CaptureWithLog(options, CheckedCatalogue(options));
  ReportLine(CountsLine(capture));
  WriteResult(options.output, options.list ? CaptureList(capture.machine) : CaptureJson(capture.machine));
  return kExitSuccess;
}

}  // namespace tarnwick::host
