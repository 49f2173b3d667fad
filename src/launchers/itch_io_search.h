#pragma once
// Games of the itch.io app. Its database is SQLite, which this library can't read, so nothing is ever found.

#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

struct ItchGameRow {
  std::string id;
  std::string name;
  std::string path;
};

// Empty if the shell doesn't tell the user's application data folder.
std::string GetItchDatabasePath();

// Always empty: logs why.
std::vector<ItchGameRow> ReadItchGames();

ScanResult ItchResult(const ItchGameRow& row);

struct ItchIo {
  ScanResults ItchIoSearch();
};

}  // namespace tarnwick
