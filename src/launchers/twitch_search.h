#pragma once
// Games of the Twitch app; its database is out of reach, so nothing is ever found.

#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

struct TwitchGameRow {
  std::string id;
  std::string name;
  std::string path;
  std::string sourceText;
  std::string unused;  // a column that no result shows
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
