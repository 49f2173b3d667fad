// tarnwick scan
#include <stdexcept>
#include <utility>

#include "host/catalogue_file.h"
#include "host/command_output.h"
#include "host/commands.h"
#include "host/console.h"
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
  ScanReporter reporter;
  LogOutput log(options);
  const bool draw = !options.log && StandardErrorIsTerminal();
  Scan scan;
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

// The catalogue can have changed since it was looked at.
void CheckScan(const Options& options, const Scan& scan, const std::string& catalogue) {
  if (!options.catalogue.empty() && scan.report.fellBack)
    throw std::runtime_error(catalogue + " went away before it was read; try again");
  if (scan.report.gamesInCatalogue == 0)
    throw std::runtime_error("the library read no games from " + catalogue + "; --log tells what it did");
}

void WriteTable(const Options& options, const Scan& scan) {
  std::string text = GamesTable(GamesFromJson(scan.json, scan.report), scan.report, TableWidth(options));
  for (const std::string& note : scan.report.notes) text += note + "\n";
  WriteResult(options.output, text);
}

void WritePage(const Options& options, const Scan& scan) {
  const std::vector<Game> games = GamesFromJson(scan.json, scan.report);
  WriteResult(options.output, GamesPage(games, scan.report, {options.iconSize, !options.noIcons}));
}

}  // namespace

int RunScan(const Options& options) {
  const std::string catalogue = CheckedCatalogue(options);
  const Scan scan = RunTheScan(options);
  CheckScan(options, scan, catalogue);
  if (IsListFormat(options.format)) {
    Rows rows = RowsFromJson(scan.json);
    AddLaunchers(rows, scan.report);
    WriteRows(options, std::move(rows), kGameMembers);
  } else if (options.format == Format::kTable) {
    WriteTable(options, scan);
  } else {
    WritePage(options, scan);
  }
  return kExitSuccess;
}

}  // namespace tarnwick::host
