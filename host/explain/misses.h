#pragma once
// Why a strategy that looked for a game didn't find it: the question that decided, in words.

#include "common/heard_questions.h"
#include "core/strategy_wants.h"

#include <string>
#include <vector>

namespace tarnwick::host {

// The last question that got nothing. Of a run of places that were tried one after the other it is the first,
// with the count of the others: that is where the game should be. Where names were compared, how many. Says
// so where every question was answered.
std::string LastMiss(const std::vector<common::Heard>& heard, const std::string& recordName);

// For a strategy that reads a launcher's list: what became of the record's game in it, or that it isn't in
// it, or where the strategy had to stop. `launcher` is its name for people.
std::string ListMiss(const StrategyWants& wants, const GameSignature& record,
                     const std::vector<common::Heard>& heard, const std::string& launcher);

}  // namespace tarnwick::host
