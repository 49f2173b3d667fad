// "catalogue import steam" and "catalogue import installed".
#include "foundation/text.h"
#include "host/catalogue/import.h"
#include "host/catalogue/record_file.h"
#include "host/commands.h"
#include "host/failure.h"
#include "host/log_capture.h"
#include "host/log_output.h"
#include "host/presentation.h"

#include <fmt/format.h>

#include <stdexcept>

namespace tarnwick::host {
namespace {

Format FormatOfOutput(const Options& options) {
  if (options.format != Format::kTable) return options.format;
  const std::string path = ToLowerBytes(options.output);
  if (path.ends_with(".xml")) return Format::kXml;
  if (path.empty() || path.ends_with(".csv")) return Format::kCsv;
  throw std::runtime_error(options.output + " ends neither in .csv nor in .xml; say which with --format");
}

int WriteImport(const Options& options, Import (*run)()) {
  const Format format = FormatOfOutput(options);
  LogOutput log(options);
  const LogCapture capture([&](const LogEntry& entry) { log.Write(entry); });
  const Import import = run();
  const auto write = format == Format::kXml ? WriteCatalogueRecords : WriteCsvRecords;
  write(options.output, import.games);
  ReportLine("taken: " + Counted(import.games.size(), "record", "records"));
  for (const auto& [why, count] : import.left) ReportLine(fmt::format("left: {}  {}", count, why));
  return kExitSuccess;
}

}  // namespace

int RunCatalogueImportSteam(const Options& options) { return WriteImport(options, ImportSteam); }

int RunCatalogueImportInstalled(const Options& options) {
  ReportLine(
      "Battle.net, Riot, miHoYo and Bethesda tell only games that a catalogue names: none is taken here");
  return WriteImport(options, ImportInstalled);
}

}  // namespace tarnwick::host
