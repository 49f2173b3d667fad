#pragma once
// The launchers that keep their games in a SQLite database. This library carries no SQLite: a search finds
// the database file, logs that it can't be opened, and has no rows. What a row would become is defined and
// tested all the same.

#include "foundation/log.h"
#include "foundation/machine/known_folders.h"
#include "matching/found_report.h"
#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

struct DatabaseLauncher {
  std::string prefix;     // bracketed, at the start of each line
  std::string startText;  // the line that a search begins with, behind the prefix
  KnownFolder baseFolder;
  std::string pathBelow;  // of the database file, from the base folder on
};

// Empty if the shell doesn't tell the base folder.
std::string DatabasePath(const DatabaseLauncher& launcher);

// The read step: logs that there is no database, or that it can't be opened. The file itself is never
// touched.
void LogUnreadDatabase(const DatabaseLauncher& launcher);

// A whole search over the rows that `readRows` returns. Rows are taken as they come, without any test for
// files. A standard exception is logged, and what was found before it is returned.
template <class Row>
ScanResults SearchDatabase(const DatabaseLauncher& launcher, std::vector<Row> (*readRows)(),
                           ScanResult (*resultOf)(const Row&)) {
  ScanResults results;
  LogExceptions(launcher.prefix + " Critical Error: ", [&] {
    LogStream() << launcher.prefix << " " << launcher.startText << "\n";
    for (const Row& row : readRows()) ReportFound(results, launcher.prefix, resultOf(row));
    ReportCompletion(results, launcher.prefix);
  });
  return results;
}

}  // namespace tarnwick
