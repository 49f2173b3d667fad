// Edge: games of the itch.io app.
#include "launchers/itch_io_search.h"

#include "launchers/sqlite_stub.h"

namespace tarnwick {
namespace {

const DatabaseLauncher kItch = {"[ItchIoSearch]", "Starting Itch.io Search...", KnownFolder::kRoamingData,
                                R"(\itch\db\butler.db)"};

}  // namespace

std::string GetItchDatabasePath() { return DatabasePath(kItch); }

std::vector<ItchGameRow> ReadItchGames() {
  LogUnreadDatabase(kItch);
  return {};
}

ScanResult ItchResult(const ItchGameRow& row) {
  ScanResult result;
  result.name = row.name;
  result.exePath = row.path;
  result.source = "Itch.io ID: " + row.id;
  return result;
}

ScanResults ItchIo::ItchIoSearch() { return SearchDatabase(kItch, ReadItchGames, ItchResult); }

}  // namespace tarnwick
