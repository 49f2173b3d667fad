#pragma once
// Battle.net games, from the agent's logs.

#include "launchers/agent_log_reader.h"
#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

// Every product of the logs whose executable exists; the catalogue only helps to find that. Throws
// std::filesystem::filesystem_error if an install folder can't be asked for.
ScanResults BattleNetSearchV2(const GameList& games, const std::string& userSid);

// At most 20 products of the three newest logs, newest log first, each code (in any case) once. Empty without
// a log line if the agent's folder isn't there, or `commonAppData` is empty because the shell has no such
// folder. A standard exception is logged, and what was read before counts.
std::vector<BattleNetGameEntry> GetBattleNetGamesFromLogs(const std::string& commonAppData);

// One log's products, none if it can't be opened.
std::vector<BattleNetGameEntry> ParseAgentLog(const std::string& path);

// The file description of an executable, or its product name where the description is that of a setup
// program. Empty if it has no version resource, or its path isn't the same text in the ANSI code page. Never
// throws.
std::string GetExeProductName(const std::string& path);

}  // namespace tarnwick
