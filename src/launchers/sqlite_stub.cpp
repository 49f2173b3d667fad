// Edge: database files that are looked for and never opened.
#include "launchers/sqlite_stub.h"

#include "foundation/machine/paths.h"

namespace tarnwick {

std::string DatabasePath(const DatabaseLauncher& launcher) {
  const std::string folder = KnownFolderPath(launcher.baseFolder);
  return folder.empty() ? folder : folder + launcher.pathBelow;
}

void LogUnreadDatabase(const DatabaseLauncher& launcher) {
  const std::string path = DatabasePath(launcher);
  if (!FileExists(path)) {
    LogStream() << launcher.prefix << " DB not found: " << path << "\n";
    return;
  }
  LogStream() << "[SQLite Stub] Warning: sqlite3_open called but real SQLite library is missing.\n";
  LogStream() << "[SQLite Stub] Please install sqlite3 (e.g. 'vcpkg install sqlite3:x64-windows').\n";
  LogStream() << launcher.prefix << " Can't open database: SQLite library not found (Stub implementation)\n";
}

}  // namespace tarnwick
