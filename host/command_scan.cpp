// tarnwick scan
#include <stdexcept>

#include "host/commands.h"
#include "host/console.h"
#include "host/html_page.h"
#include "host/library_call.h"
#include "host/log_capture.h"
#include "host/log_output.h"
#include "host/presentation.h"
#include "host/progress.h"
#include "host/tables.h"
#include "tarnwick/tarnwick.h"

namespace tarnwick::host {
namespace {

struct Scan {
  std::string json;
  ScanReport report;
};

Scan RunTheScan(const Options& options) {
  ScanReporter reporter;
  const bool draw = !options.log && StandardErrorIsTerminal();
  Scan scan;
  LogOutput log(options);
  {
    const LogCapture capture([&](const LogEntry& entry) {
      reporter.Add(entry);
      log.Write(entry);
      if (draw) DrawProgress(ProgressText(reporter));
    });
    const char* catalogue = options.catalogue.empty() ? nullptr : options.catalogue.c_str();
    scan.json = CallWithGrowingBuffer([&](char* buffer, int size) {
      reporter = ScanReporter();
      return IA_RunMultiPlatformGameScanJson(catalogue, buffer, size);
    });
  }
  if (draw) DrawProgress("");
  scan.report = reporter.Report();
  return scan;
}

}  // namespace

int RunScan(const Options& options) {
  const Scan scan = RunTheScan(options);
  // The library's quiet answer to a missing or empty catalogue is an empty list; a person wants to know.
  if (scan.report.gamesInCatalogue == 0) {
    throw std::runtime_error(
        "no games in the catalogue " +
        (options.catalogue.empty() ? "MasterGameList.xml of the current folder" : options.catalogue) +
        "; is it there? --log tells what the library looked at");
  }
  if (options.format == Format::kJson) {
    WriteResult(options.output, scan.json + "\n");
    return kExitSuccess;
  }
  const std::vector<Game> games = GamesFromJson(scan.json, scan.report);
  WriteResult(options.output,
              options.format == Format::kHtml
                  ? GamesPage(games, scan.report)
                  : GamesTable(games, scan.report, options.output.empty() ? TerminalWidth() : 0));
  return kExitSuccess;
}

}  // namespace tarnwick::host
