#pragma once
// The Battle.net agent's log, in which it writes each product's install data as JSON.

#include "launchers/json_text_reader.h"

#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// One product. Paths have single backslashes.
struct BattleNetGameEntry {
  std::string gameId;          // the product code as the log spells it
  std::string installPath;     // never empty
  std::string relativePath;    // executable below installPath; may be empty
  std::string relativePath64;  // likewise
};

// The log's products in file order, duplicates included. Reads the stream once and holds one block of JSON at
// a time. A standard exception ends it with a log line that names `path`, and what was read so far counts.
std::vector<BattleNetGameEntry> ReadAgentLog(std::istream& log, const std::string& path);

// A string's value by the strict rule, exactly as Epic's files are searched.
inline std::string ExtractJsonStringValue(std::string_view text, std::string_view key) {
  return JsonFindString(text, key);
}

}  // namespace tarnwick
