// tarnwick.exe: the library on the command line.
#include "host/commands.h"
#include "host/console.h"
#include "host/failure.h"

namespace {

using tarnwick::host::Options;

struct Command {
  const char* name;
  int (*run)(const Options&);
};

constexpr Command kCommands[] = {
    {"scan", tarnwick::host::RunScan},
    {"apps", tarnwick::host::RunApps},
    {"find", tarnwick::host::RunFind},
    {"details", tarnwick::host::RunDetails},
    {"watch", tarnwick::host::RunWatch},
    {"explain", tarnwick::host::RunExplain},
    {"capture", tarnwick::host::RunCapture},
    {"encipher", tarnwick::host::RunEncipher},
    {"decipher", tarnwick::host::RunDecipher},
    {"check", tarnwick::host::RunCatalogueCheck},
    {"fix", tarnwick::host::RunCatalogueFix},
    {"from-csv", tarnwick::host::RunCatalogueFromCsv},
    {"to-csv", tarnwick::host::RunCatalogueToCsv},
    {"merge", tarnwick::host::RunCatalogueMerge},
    {"diff", tarnwick::host::RunCatalogueDiff},
    {"show", tarnwick::host::RunCatalogueShow},
    {"steam", tarnwick::host::RunCatalogueImportSteam},
    {"installed", tarnwick::host::RunCatalogueImportInstalled},
};

int RunCommand(const Options& options) {
  for (const Command& command : kCommands) {
    if (options.command == command.name) return command.run(options);
  }
  return tarnwick::host::kExitUsage;
}

}  // namespace

int main() {
  return tarnwick::host::RunReportingFailures([] {
    Options options;
    int exitCode = tarnwick::host::kExitSuccess;
    const bool parsed = ParseOptions(tarnwick::host::CommandLineArguments(), options, exitCode);
    return parsed ? RunCommand(options) : exitCode;
  });
}
