// tarnwick explain
#include <stdexcept>

#include "host/catalogue_file.h"
#include "host/command_output.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/explain/explanation.h"
#include "host/explain/explanation_json.h"
#include "host/explain/explanation_text.h"
#include "host/failure.h"
#include "host/progress.h"

namespace tarnwick::host {
namespace {

// Throws for a catalogue that the library can't use.
void CheckCatalogue(const Options& options) {
  const std::string path = CatalogueToScan(options.catalogue);
  const CatalogueFile file = InspectCatalogue(path);
  if (!file.fault.empty()) throw std::runtime_error(file.fault);
  const std::string warning = CatalogueWarning(path, file);
  if (!warning.empty()) ReportLine(warning);
}

ObservedScan ScanWithLog(const Options& options) {
  LogOutput log(options);
  ScanReporter reporter;
  const bool draw = !options.log && StandardErrorIsTerminal();
  ObservedScan scan = ObserveScan(options.catalogue, [&](const LogEntry& entry) {
    reporter.Add(entry);
    log.Write(entry);
    if (draw) DrawProgress(ProgressText(reporter));
  });
  if (draw) DrawProgress("");
  return scan;
}

int ExplainGame(const Options& options) {
  CheckCatalogue(options);
  const ObservedScan scan = ScanWithLog(options);
  const Explanation explanation = ExplainName(scan, options.input);
  WriteResult(options.output, options.format == Format::kJson
                                  ? ExplanationJson(explanation) + "\n"
                                  : ExplanationText(explanation, {TableWidth(options), options.verbose}));
  const bool found = !explanation.records.empty() && CountMissing(explanation) == 0;
  return found ? kExitSuccess : kExitFailure;
}

}  // namespace

int RunExplain(const Options& options) { return ExplainGame(options); }

}  // namespace tarnwick::host
