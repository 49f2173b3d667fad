#pragma once
// Games of the Twitch app. Its database is SQLite, which this library can't read, so nothing is ever found.

#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

struct TwitchGameRow {
  std::string id;
  std::string name;
  std::string path;
  std::string sourceText;
  std::string unused;  // a column of the database that no result uses
};

// Empty if the shell doesn't tell the machine's application data folder.
std::string GetTwitchDatabasePath();

// Always empty: logs why.
std::vector<TwitchGameRow> ReadTwitchGames();

ScanResult TwitchResult(const TwitchGameRow& row);

struct Twitch {
  ScanResults TwitchSearch();
};

}  // namespace tarnwick
