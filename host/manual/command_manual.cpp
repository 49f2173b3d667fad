// "tarnwick completion" and "tarnwick manual".
#include "host/commands.h"
#include "host/console.h"
#include "host/manual/completion.h"
#include "host/manual/manual_page.h"

namespace tarnwick::host {

int RunCompletion(const Options& options) {
  const auto script = options.input == "bash" ? BashCompletion : PowerShellCompletion;
  WriteStandardOutput(script(CommandDefinitions()));
  return kExitSuccess;
}

int RunManual(const Options&) {
  WriteStandardOutput(ManualPage(CommandDefinitions()));
  return kExitSuccess;
}

}  // namespace tarnwick::host
