// tarnwick scan
#include <stdexcept>
#include <utility>

#include "core/scan_json.h"
#include "foundation/com_scope.h"
#include "host/catalogue_file.h"
#include "host/command_output.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/explain/observed_scan.h"
#include "host/failure.h"
#include "host/html_page.h"
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

// Shows what the library logs: its lines where they were asked for, or else how far the scan is.
class ScanListener {
 public:
  explicit ScanListener(const Options& options)
      : log_(options), draws_(!options.log && StandardErrorIsTerminal()) {}
  ~ScanListener() {
    if (draws_) DrawProgress("");
  }
  ScanListener(const ScanListener&) = delete;
  ScanListener& operator=(const ScanListener&) = delete;

  void Hear(const LogEntry& entry) {
    if (began_.empty()) began_ = entry.stamp;
    reporter_.Add(entry);
    log_.Write(entry);
    if (draws_) DrawProgress(ProgressText(reporter_));
  }
  void BeginAnew() { reporter_ = ScanReporter(); }
  const ScanReport& Report() const { return reporter_.Report(); }
  const std::string& Began() const { return began_; }

 private:
  ScanReporter reporter_;
  LogOutput log_;
  std::string began_;
  bool draws_;
};

// Throws for a catalogue that the library would answer with an empty list, or with another catalogue's games.
std::string CheckedCatalogue(const Options& options) {
  const std::string path = CatalogueToScan(options.catalogue);
  const CatalogueFile file = InspectCatalogue(path);
  if (!file.fault.empty()) throw std::runtime_error(file.fault);
  const std::string warning = CatalogueWarning(path, file);
  if (!warning.empty()) ReportLine(warning);
  return path;
}

Scan RunTheScan(const Options& options) {
  ScanListener listener(options);
  Scan scan;
  {
    const LogCapture capture([&](const LogEntry& entry) { listener.Hear(entry); });
    const char* catalogue = options.catalogue.empty() ? nullptr : options.catalogue.c_str();
    scan.json = CallWithGrowingBuffer([&](char* buffer, int size) {
      listener.BeginAnew();
      return IA_RunMultiPlatformGameScanJson(catalogue, buffer, size);
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

int WriteGames(const Options& options, const std::string& catalogue) {
  const Scan scan = RunTheScan(options);
  CheckScan(options, catalogue, scan.report.fellBack, scan.report.gamesInCatalogue);
  if (options.format == Format::kTable) {
    WriteTable(options, scan);
  } else {
    Rows rows = RowsFromJson(scan.json);
    AddLaunchers(rows, scan.report);
    WriteRows(options, std::move(rows), kGameMembers);
  }
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

int RunScan(const Options& options) {
  const std::string catalogue = CheckedCatalogue(options);
  return options.format == Format::kHtml ? WritePage(options, catalogue) : WriteGames(options, catalogue);
}

}  // namespace tarnwick::host
