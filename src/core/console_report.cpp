// Edge: the console report's driver: tasks, COM and the log.
#include "core/console_report.h"

#include "catalogue/xml_parser.h"
#include "foundation/com_scope.h"
#include "foundation/log.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"

#include <exception>
#include <future>
#include <set>
#include <vector>

namespace tarnwick {
namespace {

constexpr char kCatalogue[] = "MasterGameList.xml";

// The body of a task. Its arguments are its own copies.
StrategyOutcome RunTask(const ScanStrategy& strategy, const GameList& games) {
  const ComScope com;
  LogLine("Strategy [" + strategy.name + "] START");
  StrategyOutcome outcome;
  ExecuteStrategyGuarded(&strategy, &games, &outcome.results);
  outcome.strategyName = strategy.name;
  return outcome;
}

ScanResults RunLevel(const std::vector<ScanStrategy>& group, const GameList& pending) {
  std::vector<std::future<StrategyOutcome>> futures;
  for (const ScanStrategy& strategy : group) {
    futures.push_back(std::async(std::launch::async, RunTask, strategy, pending));
  }
  ScanResults found;
  for (std::future<StrategyOutcome>& future : futures) {
    const StrategyOutcome outcome = future.get();
    found.insert(found.end(), outcome.results.begin(), outcome.results.end());
  }
  return found;
}

ScanResults RunLevels(const GameList& games, const StrategyTable& table) {
  const PriorityGroups groups = GroupByPriority(table());
  GameList pending = games;
  ScanResults all;
  for (int32_t level = kHighestPriority; level >= 0; --level) {
    const auto group = groups.find(level);
    if (group == groups.end()) continue;
    const ScanResults found = RunLevel(group->second, pending);
    all.insert(all.end(), found.begin(), found.end());
    RemoveFoundGames(pending, found);
  }
  return all;
}

void ReportResult(size_t number, const ScanResult& result, const IconBuilder& buildIcon) {
  LogStream() << "\n[" << number << "] " << result.name << "\n";
  LogStream() << "    Source: " << result.source << "\n";
  LogStream() << "    Executable: " << result.exePath << "\n";
  if (!result.displayIcon.empty()) LogStream() << "    DisplayIcon (Reg): " << result.displayIcon << "\n";
  const std::string icon = buildIcon(result);
  LogStream() << "    Icon: " << (icon.empty() ? "(None)" : icon) << "\n";
}

void Report(const StrategyTable& table, const IconBuilder& buildIcon) {
  LogStream() << "Starting Multi-Platform Game Scan...\n";
  if (!NarrowShellPathExists(kCatalogue)) {
    LogStream() << "Error: MasterGameList.xml not found!\n";
    return;
  }
  const GameList games = LoadGameList(kCatalogue);
  if (games.empty()) {
    LogStream() << "Error: Failed to parse any games from XML file!\n";
    return;
  }
  LogStream() << "Loaded " << games.size() << " game configurations.\n";
  const ScanResults unique = MergeForReport(RunLevels(games, table));
  LogStream() << "Found " << unique.size() << " unique games.\n";
  size_t number = 0;
  for (const ScanResult& result : unique) ReportResult(++number, result, buildIcon);
}

// Logged twice: as a line of the report, and as a line with a time.
void ReportFailure(const std::string& text) {
  LogStream() << text << "\n";
  LogLine(text);
}

}  // namespace

ScanResults MergeForReport(const ScanResults& all) {
  std::set<std::string> seen_ids;
  std::set<std::string> seen_paths;
  ScanResults unique;
  for (const ScanResult& result : all) {
    const bool has_id = result.sourceKind == kSourceSteam && !result.sourceExId.empty();
    if (has_id && !seen_ids.insert(result.sourceExId).second) continue;
    if (!result.exePath.empty() && !seen_paths.insert(ToLowerBytes(result.exePath)).second) continue;
    unique.push_back(result);
  }
  return unique;
}

void RunConsoleReport(const StrategyTable& table, const IconBuilder& buildIcon) {
  try {
    Report(table, buildIcon);
  } catch (const std::exception& error) {
    ReportFailure(std::string("CRITICAL ERROR in RunMultiPlatformGameScan: ") + error.what());
  } catch (...) {
    ReportFailure("CRITICAL ERROR: Unknown exception in RunMultiPlatformGameScan.");
  }
}

}  // namespace tarnwick
