#pragma once
// Runs strategies: the guards around one of them, and the levels of priority of a whole scan. What a strategy
// does wrong ends in the log and costs its own results only.

#include "core/strategy_table.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace tarnwick {

inline constexpr int32_t kHighestPriority = 6;

// The rows of each level, in the table's order.
using PriorityGroups = std::map<int32_t, std::vector<ScanStrategy>>;
PriorityGroups GroupByPriority(const std::vector<ScanStrategy>& strategies);

// True if any of the results is this game: by name, byte for byte, or, for a Steam game with an id, by the
// app id in the launch URI. The executable plays no part.
bool IsFound(const GameSignature& game, const ScanResults& results);

// Takes the found games out, and keeps the others' order.
void RemoveFoundGames(GameList& pending, const ScanResults& results);

// Runs a strategy into `results`. Null pointers, and a row without a function, are only logged.
void ExecuteStrategyHelper(const ScanStrategy* strategy, const GameList* games, ScanResults* results);

// The same under a guard that takes every exception, language exceptions too (as kLanguageExceptionCode):
// logs it and leaves `results` as they were.
void ExecuteStrategyGuarded(const ScanStrategy* strategy, const GameList* games, ScanResults* results);

// The body of a strategy's thread: the guarded form with COM around it, under one more guard.
void RunStrategyThread(const ScanStrategy* strategy, const GameList* games, ScanResults* results);

// What one strategy's thread found. The thread and the driver own it together.
struct ThreadResult {
  ScanResults results;
  std::string strategyName;
};

// Starts RunStrategyThread on a thread of its own. The row and the games must outlive the thread. Throws
// std::system_error if there is no thread to be had.
using ThreadStarter = std::function<std::thread(const ScanStrategy* strategy, const GameList* games,
                                                std::shared_ptr<ThreadResult> result)>;
std::thread StartStrategyThread(const ScanStrategy* strategy, const GameList* games,
                                std::shared_ptr<ThreadResult> result);

// A whole scan's strategies: level by level from the highest priority, all of a level at once, what a level
// found taken out of the games that the next one gets. Returns everything found, by level, then in the
// table's order. Blocks until the last thread has ended. `start` stands in for the thread start in tests.
using StrategyTable = std::function<std::vector<ScanStrategy>()>;
ScanResults RunStrategies(const GameList& catalogue, const StrategyTable& table,
                          const ThreadStarter& start = StartStrategyThread);

}  // namespace tarnwick
