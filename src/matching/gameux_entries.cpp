// Edge: the executables of the game explorer's entries.
#include "matching/gameux_entries.h"

#include "foundation/machine/paths.h"
#include "matching/path_text.h"

namespace tarnwick {

bool IsGameUxExecutable(const std::string& path) {
  return ContainsIgnoreCase(path, ".EXE") && FileExists(path);
}

std::string FindGameUxExecutable(const GameUxEntry& entry) {
  if (IsGameUxExecutable(entry.appExePath)) return entry.appExePath;
  if (IsGameUxExecutable(entry.configGdfBinaryPath)) return entry.configGdfBinaryPath;
  return {};
}

}  // namespace tarnwick
