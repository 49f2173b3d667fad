// tarnwick.exe: the library on the command line.
#include <exception>
#include <iterator>

#include "host/commands.h"
#include "host/console.h"

namespace {

using tarnwick::host::Options;

struct Command {
  const char* name;
  int (*run)(const Options&);
};

constexpr Command kCommands[] = {
    {"scan", tarnwick::host::RunScan},         {"apps", tarnwick::host::RunApps},
    {"find", tarnwick::host::RunFind},         {"details", tarnwick::host::RunDetails},
    {"watch", tarnwick::host::RunWatch},       {"encipher", tarnwick::host::RunEncipher},
    {"decipher", tarnwick::host::RunDecipher},
};

int RunCommand(const Options& options) {
  for (const Command& command : kCommands) {
    if (options.command == command.name) return command.run(options);
  }
  return tarnwick::host::kExitUsage;
}

}  // namespace

int main() {
  const tarnwick::host::ConsoleScope console;
  Options options;
  int exitCode = tarnwick::host::kExitSuccess;
  if (!tarnwick::host::ParseOptions(tarnwick::host::CommandLineArguments(), options, exitCode))
    return exitCode;
  try {
    return RunCommand(options);
  } catch (const std::exception& error) {
    tarnwick::host::WriteStandardError(std::string("tarnwick: ") + error.what() + "\n");
    return tarnwick::host::kExitFailure;
  }
}
