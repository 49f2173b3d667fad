// tarnwick scan
#include <stdexcept>
#include <utility>

#include "core/scan_json.h"
#include "foundation/com_scope.h"
#include "host/command_output.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/explain/observed_scan.h"
#include "host/fleet/game_sizes.h"
#include "host/fleet/lines.h"
#include "host/html_page.h"
#include "host/presentation.h"
#include "host/scan_listener.h"
#include "host/tables.h"

namespace tarnwick::host {
namespace {

struct Scan {
  std::string json;
  ScanReport report;
};

Scan RunTheScan(const Options& options) {
  const Functions& exports = TheLibrary().Exports();
  ScanListener listener(options);
  Scan scan;
  {
    const LogCapture capture([&](const LogEntry& entry) { listener.Hear(entry); });
    const char* catalogue = options.catalogue.empty() ? nullptr : options.catalogue.c_str();
    scan.json = WholeAnswer([&](char* buffer, int size) {
      listener.BeginAnew();
      return exports.IA_RunMultiPlatformGameScanJson(catalogue, buffer, size);
    });
  }
  scan.report = listener.Report();
  return scan;
}

// The catalogue can have changed since it was looked at.
void CheckScan(const Options& options, const std::string& catalogue, bool fellBack, size_t games) {
  if (!options.catalogue.empty() && fellBack)
    throw std::runtime_error(catalogue + " went away before it was read; try again");
  if (games == 0)
    throw std::runtime_error("the library read no games from " + catalogue + "; --log tells what it did");
}

void WriteTable(const Options& options, const Scan& scan) {
  std::string text = GamesTable(GamesFromJson(scan.json, scan.report), scan.report, TableWidth(options));
  for (const std::string& note : scan.report.notes) text += note + "\n";
  WriteResult(options.output, text);
}

void WriteList(const Options& options, const Scan& scan, const LineOrigin& origin) {
  Rows rows = RowsFromJson(scan.json);
  AddLaunchers(rows, scan.report);
  if (options.format != Format::kNdjson) return WriteRows(options, std::move(rows), kGameMembers);
  AddSizes(rows);
  WriteLines(options, std::move(rows), kGameLines, origin);
}

int WriteGames(const Options& options, const std::string& catalogue) {
  const LineOrigin origin = OriginOfRun(options);
  const Scan scan = RunTheScan(options);
  CheckScan(options, catalogue, scan.report.fellBack, scan.report.gamesInCatalogue);
  if (options.format == Format::kTable)
    WriteTable(options, scan);
  else
    WriteList(options, scan, origin);
  return kExitSuccess;
}

// The page tells what was asked, so the scan is one that can be listened to; what it finds is the same.
int WritePage(const Options& options, const std::string& catalogue) {
  ScanListener listener(options);
  const LogSink sink = [&](const LogEntry& entry) { listener.Hear(entry); };
  const ObservedScan scan = ObserveScan(options.catalogue, sink);
  CheckScan(options, catalogue, scan.report.fellBack, scan.catalogue.size());
  std::string answer;
  {
    const LogCapture capture(sink);
    const ComScope com;
    answer = WriteScanJson(scan.unique);
  }
  const PageOptions page = {options.iconSize, !options.noIcons, catalogue, listener.Began()};
  WriteResult(options.output, GamesPage(GamesFromJson(answer, scan.report), scan, page));
  return kExitSuccess;
}

}  // namespace

int RunScan(const Options& asked) {
  const Options options = WithStarterCatalogue(asked);
  const std::string catalogue = CheckedCatalogue(options);
  return options.format == Format::kHtml ? WritePage(options, catalogue) : WriteGames(options, catalogue);
}

}  // namespace tarnwick::host
