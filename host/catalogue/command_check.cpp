// tarnwick catalogue check, for those who keep catalogues.
#include <string>

#include "host/catalogue/check_file.h"
#include "host/catalogue/check_report.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/failure.h"

namespace tarnwick::host {

int RunCatalogueCheck(const Options& options) {
  const Findings findings = CheckFile(options.input);
  const bool json = options.format == Format::kJson;
  WriteStandardOutput(json ? FindingsAsJson(options.input, findings, options.strict)
                           : FindingsAsText(options.input, findings, options.strict));
  ReportLine(options.input + ": " + FindingCounts(findings, options.strict));
  const bool clean = findings.errors == 0 && (!options.strict || findings.warnings == 0);
  return clean ? kExitSuccess : kExitFailure;
}

}  // namespace tarnwick::host
