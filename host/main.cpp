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
    {"diff", tarnwick::host::RunDiff},
    {"watch", tarnwick::host::RunWatch},
    {"explain", tarnwick::host::RunExplain},
    {"capture", tarnwick::host::RunCapture},
    {"completion", tarnwick::host::RunCompletion},
    {"manual", tarnwick::host::RunManual},
    {"catalogue encipher", tarnwick::host::RunEncipher},
    {"catalogue decipher", tarnwick::host::RunDecipher},
    {"catalogue check", tarnwick::host::RunCatalogueCheck},
    {"catalogue fix", tarnwick::host::RunCatalogueFix},
    {"catalogue from-csv", tarnwick::host::RunCatalogueFromCsv},
    {"catalogue to-csv", tarnwick::host::RunCatalogueToCsv},
    {"catalogue merge", tarnwick::host::RunCatalogueMerge},
    {"catalogue diff", tarnwick::host::RunCatalogueDiff},
    {"catalogue show", tarnwick::host::RunCatalogueShow},
    {"catalogue import steam", tarnwick::host::RunCatalogueImportSteam},
    {"catalogue import installed", tarnwick::host::RunCatalogueImportInstalled},
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
