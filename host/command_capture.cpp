// tarnwick capture
#include "host/capture/capture.h"
#include "host/capture/capture_text.h"
#include "host/command_output.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/failure.h"
#include "host/scan_listener.h"

namespace tarnwick::host {
namespace {

Capture CaptureWithLog(const Options& options, const std::string& catalogue) {
  ScanListener listener(options);
  return TakeCapture(catalogue, options.withApps, [&](const LogEntry& entry) { listener.Hear(entry); });
}

}  // namespace

int RunCapture(const Options& asked) {
  const Options options = WithStarterCatalogue(asked);
  const Capture capture = CaptureWithLog(options, CheckedCatalogue(options));
  ReportLine(CountsLine(capture));
  WriteResult(options.output, options.list ? CaptureList(capture.machine) : CaptureJson(capture.machine));
  return kExitSuccess;
}

}  // namespace tarnwick::host
