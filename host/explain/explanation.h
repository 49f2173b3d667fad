#pragma once
// Why a game is in a scan's answer or isn't: what each of the strategies made of it.

#include "host/explain/observed_scan.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick::host {

enum class Verdict { kFound, kNotTried, kMissed, kFailed };
enum class Outcome { kFound, kMerged, kEarlier, kMissing, kFailed };

// "found", "not tried", "missed", "failed"; "found", "merged", "earlier", "missing", "failed".
const char* NameOf(Verdict verdict);
const char* NameOf(Outcome outcome);

using Questions = std::shared_ptr<const std::vector<Heard>>;  // never null

// What one strategy made of one game.
struct StrategyVerdict {
  std::string strategy;
  int level = 0;
  Verdict verdict = Verdict::kMissed;
  std::string reason;   // for kFound where it is
  Questions questions;  // what it asked about this game, or where it reads a list, all that it asked
};

struct GameExplanation {
  std::string name;
  bool inCatalogue = true;  // false: a launcher or Windows names it, and no record does
  Outcome outcome = Outcome::kMissing;
  std::string sentence;  // the outcome in words
  std::string path;      // of the entry in the answer; empty where it isn't in it, or has none
  std::string strategy;  // what found it, and the source that it gave; empty where nothing did
  std::string source;
  std::vector<StrategyVerdict> strategies;  // all, in the table's order
  std::vector<std::string> nearMisses;      // "the catalogue says 'Foo 2', GOG says 'Foo II'"
};

struct Explanation {
  std::string subject;
  std::vector<GameExplanation> records;
  size_t further = 0;                // how many more have the name, and aren't explained
  std::vector<std::string> similar;  // names that it could have meant, where nothing has it
};

inline constexpr size_t kMostExplained = 10;

// Explains every game whose name holds `name`, case and accents apart: the catalogue's records first, then
// what only launchers or Windows name. Strategies that ask about each record are run once more for those that
// they missed, with that record alone.
Explanation ExplainName(const ObservedScan& scan, const std::string& name);

}  // namespace tarnwick::host
