// Edge: threads, COM and the structured-exception guards of the strategies.
#include "core/strategy_runner.h"

#include "core/steam_url.h"
#include "foundation/com_scope.h"
#include "foundation/log.h"
#include "foundation/machine/observer.h"
#include "foundation/seh_guard.h"
#include "foundation/windows_api.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <utility>

namespace tarnwick {
namespace {

constexpr char kStrategyFailed[] = "[Tarnwick] CRITICAL SEH ERROR in Strategy [%s]: 0x%08X\n";
constexpr char kThreadFailed[] = "[Tarnwick] Thread CRASH (SEH) in strategy %s: 0x%08X\n";

// Straight to the debug output, without an allocation: after a fault the heap can't be relied on.
void ReportFailure(const char* format, const ScanStrategy* strategy, uint32_t code) {
  char line[256];
  std::snprintf(line, sizeof line, format, strategy != nullptr ? strategy->name.c_str() : "UNKNOWN", code);
  SendRawDebugText(line);
}

// Handling a stack overflow takes stack itself, more than the page or two that are left by default: without
// this reserve the thread, or the process, would end without a log line (docs/decisions/stack-reserve.md).
void ReserveStackForTheGuard() {
  ULONG bytes = 64 * 1024;
  SetThreadStackGuarantee(&bytes);
}

template <class Body>
void GuardStrategy(const char* format, const ScanStrategy* strategy, Body&& body) {
  ReserveStackForTheGuard();
  const uint32_t code = RunGuarded(body);
  if (code != 0) ReportFailure(format, strategy, code);
}

// What one level has running, and what came of it. The results stand in the order of launching.
struct Level {
  std::vector<std::shared_ptr<ThreadResult>> results;
  std::vector<std::thread> threads;
};

void Launch(Level& level, const ScanStrategy& strategy, const GameList& pending, const ThreadStarter& start) {
  LogLine("Launching thread for strategy: " + strategy.name);
  try {
    const auto result = std::make_shared<ThreadResult>();
    result->strategyName = strategy.name;
    // The entry is made before the thread: a strategy that can't be started has its finish line too.
    level.results.push_back(result);
    level.threads.push_back(start(&strategy, &pending, result));
  } catch (const std::exception& error) {
    LogLine("STD EXCEPTION launching thread for " + strategy.name + ": " + error.what());
  } catch (...) {
    LogLine("UNKNOWN EXCEPTION launching thread for " + strategy.name);
  }
}

void Join(std::thread& thread) {
  try {
    if (thread.joinable()) thread.join();
  } catch (...) {
    LogLine("Error joining thread");
    // This thread object is leaked on purpose: destroying a joinable one would terminate the process
    // (docs/decisions/failed-join.md).
    static_cast<void>(std::make_unique<std::thread>(std::move(thread)).release());
  }
}

// Runs one level to its end and returns what it found.
ScanResults RunLevel(const std::vector<ScanStrategy>& group, const GameList& pending,
                     const ThreadStarter& start) {
  Level level;
  level.results.reserve(group.size());
  level.threads.reserve(group.size());
  for (const ScanStrategy& strategy : group) Launch(level, strategy, pending, start);
  for (std::thread& thread : level.threads) Join(thread);
  ScanResults found;
  for (const auto& result : level.results) {
    LogLine("Strategy [" + result->strategyName +
            "] finished. Found: " + std::to_string(result->results.size()));
    found.insert(found.end(), result->results.begin(), result->results.end());
  }
  return found;
}

}  // namespace

PriorityGroups GroupByPriority(const std::vector<ScanStrategy>& strategies) {
  PriorityGroups groups;
  for (const ScanStrategy& strategy : strategies) groups[strategy.priority].push_back(strategy);
  return groups;
}

bool IsFound(const GameSignature& game, const ScanResults& results) {
  const bool by_id = game.SourceKind == kSourceSteam && !game.SourceExId.empty();
  return std::any_of(results.begin(), results.end(), [&](const ScanResult& result) {
    return result.name == game.DisplayName || (by_id && SteamAppId(result.launchUrl) == game.SourceExId);
  });
}

void RemoveFoundGames(GameList& pending, const ScanResults& results) {
  std::erase_if(pending, [&](const GameSignature& game) { return IsFound(game, results); });
}

void ExecuteStrategyHelper(const ScanStrategy* strategy, const GameList* games, ScanResults* results) {
  if (strategy == nullptr || games == nullptr || results == nullptr) {
    LogLine("ExecuteStrategyHelper: Invalid pointer(s)!");
    return;
  }
  if (strategy->scanFunction == nullptr) {
    LogLine("ExecuteStrategyHelper: scanFunction is null for strategy: " + strategy->name);
    return;
  }
  *results = strategy->scanFunction(*games, {});
}

void ExecuteStrategyGuarded(const ScanStrategy* strategy, const GameList* games, ScanResults* results) {
  const AskingAs asking(strategy != nullptr ? strategy->name.c_str() : nullptr);
  GuardStrategy(kStrategyFailed, strategy, [&] { ExecuteStrategyHelper(strategy, games, results); });
}

void RunStrategyThread(const ScanStrategy* strategy, const GameList* games, ScanResults* results) {
  GuardStrategy(kThreadFailed, strategy, [&] {
    const ComScope com;
    LogLine("Strategy [" + strategy->name + "] START (in thread)");
    ExecuteStrategyGuarded(strategy, games, results);
  });
}

std::thread StartStrategyThread(const ScanStrategy* strategy, const GameList* games,
                                std::shared_ptr<ThreadResult> result) {
  return std::thread([strategy, games, result = std::move(result)] {
    RunStrategyThread(strategy, games, &result->results);
  });
}

ScanResults RunStrategies(const GameList& catalogue, const StrategyTable& table, const ThreadStarter& start) {
  LogLine("Defining scan strategies...");
  const std::vector<ScanStrategy> strategies = table();
  LogLine("Strategies defined: " + std::to_string(strategies.size()));
  LogLine("Grouping strategies by priority...");
  const PriorityGroups groups = GroupByPriority(strategies);
  LogLine("Priority groups created: " + std::to_string(groups.size()));
  GameList pending = catalogue;
  LogLine("Pending games: " + std::to_string(pending.size()));

  ScanResults all;
  for (int32_t level = kHighestPriority; level >= 0; --level) {
    const auto group = groups.find(level);
    if (group == groups.end()) continue;
    LogLine("Processing priority level: " + std::to_string(level));
    const ScanResults found = RunLevel(group->second, pending, start);
    all.insert(all.end(), found.begin(), found.end());
    RemoveFoundGames(pending, found);
  }
  return all;
}

}  // namespace tarnwick
