// Reader: the Battle.net agent's log. String values follow the strict rule, as Epic's do; unlike there,
// doubled backslashes of paths are collapsed.
#include "launchers/agent_log_reader.h"

#include "foundation/log.h"
#include "foundation/text.h"

#include <cstdint>
#include <utility>

namespace tarnwick {
namespace {

// The product code of a request line; false for any other line.
bool TakeRequest(const std::string& line, std::string& gameId) {
  constexpr std::string_view kRequest = "Request GET /game/";
  const size_t at = line.find(kRequest);
  if (at == std::string::npos) return false;
  const size_t start = at + kRequest.size();
  gameId = line.substr(start, line.find_first_of(" \t", start) - start);
  return true;
}

// Reads up to the next line that holds a brace, and leaves that line in `line` from the brace on. Kept: lines
// before it are passed over, other requests among them, whose products are lost
// (docs/decisions/launcher-texts.md).
bool FindBlock(std::istream& log, std::string& line) {
  while (std::getline(log, line)) {
    const size_t brace = line.find('{');
    if (brace == std::string::npos) continue;
    line.erase(0, brace);
    return true;
  }
  return false;
}

int64_t BraceBalance(const std::string& line) {
  int64_t balance = 0;
  for (const char byte : line) balance += (byte == '{') - (byte == '}');
  return balance;
}

// The lines from `line` on up to the first at whose end the braces are balanced, or to the end of the log.
// Braces inside JSON strings count too.
std::string ReadBlock(std::istream& log, std::string line) {
  std::string block;
  int64_t depth = 0;
  do {
    block.append(line).append("\n");
    depth += BraceBalance(line);
  } while (depth != 0 && std::getline(log, line));
  return block;
}

std::string ExtractPath(const std::string& block, std::string_view key) {
  return HalveBackslashes(ExtractJsonStringValue(block, key));
}

// False if the block is no record of an installed game.
bool TakeBlock(const std::string& block, BattleNetGameEntry& entry) {
  if (block.find("\"binaries\"") == std::string::npos) return false;
  entry.installPath = ExtractPath(block, "installPath");
  if (entry.installPath.empty()) entry.installPath = ExtractPath(block, "install_dir");
  entry.relativePath = ExtractPath(block, "relative_path");
  entry.relativePath64 = ExtractPath(block, "relative_path_64");
  return !entry.installPath.empty();
}

}  // namespace

std::vector<BattleNetGameEntry> ReadAgentLog(std::istream& log, const std::string& path) {
  std::vector<BattleNetGameEntry> entries;
  LogExceptions("[BattleNetSearchV2] Error parsing log file (" + path + "): ", [&] {
    for (std::string line; std::getline(log, line);) {
      BattleNetGameEntry entry;
      if (!TakeRequest(line, entry.gameId)) continue;
      if (!FindBlock(log, line)) break;
      if (TakeBlock(ReadBlock(log, std::move(line)), entry)) entries.push_back(std::move(entry));
    }
  });
  return entries;
}

}  // namespace tarnwick
