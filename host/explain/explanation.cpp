#include "host/explain/explanation.h"

#include "core/merge.h"
#include "core/steam_url.h"
#include "core/strategy_wants.h"
#include "host/explain/misses.h"
#include "host/explain/name_folding.h"
#include "host/explain/named_games.h"
#include "host/explain/named_path.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace tarnwick::host {
namespace {

// A result with the run that it comes from.
struct OwnResult {
  const StrategyRun* run;
  const ScanResult* result;
};

// A game to be explained. One that no record has is a record of its name alone.
struct Subject {
  GameSignature record;
  bool inCatalogue = true;
  NamedBy named = {};  // who names it, where that isn't the catalogue
};

struct Material {
  const ObservedScan& scan;
  std::map<std::string, Questions> questions;  // of the scan, by strategy
  std::vector<NamedBy> heard;
};

Material MaterialOf(const ObservedScan& scan) {
  Material material{scan, {}, NamesHeard(scan)};
  for (const StrategyRun& run : scan.runs)
    material.questions[run.strategy.name] = std::make_shared<const std::vector<Heard>>(run.heard);
  return material;
}

bool IsSamePath(const std::string& one, const std::string& other) {
  return !one.empty() && ComparablePath(one) == ComparablePath(other);
}

std::vector<OwnResult> OwnResults(const ObservedScan& scan, const GameSignature& record) {
  const std::string key = NameKey(record.DisplayName);
  std::vector<OwnResult> own;
  for (const StrategyRun& run : scan.runs) {
    for (const ScanResult& result : run.results) {
      if (IsFound(record, {result}) || NameKey(result.name) == key) own.push_back({&run, &result});
    }
  }
  return own;
}

// The strategy's first result that is the game by name or id or, under another name, by its path.
const ScanResult* ResultOf(const StrategyRun& run, const std::vector<OwnResult>& own) {
  for (const OwnResult& one : own) {
    if (one.run == &run) return one.result;
  }
  for (const ScanResult& result : run.results) {
    const bool same = std::any_of(own.begin(), own.end(), [&](const OwnResult& one) {
      return IsSamePath(one.result->exePath, result.exePath);
    });
    if (same) return &result;
  }
  return nullptr;
}

bool AsksTheCatalogue(const StrategyWants& wants) {
  return wants.use == CatalogueUse::kEachRecord || wants.use == CatalogueUse::kLookup;
}

bool IsSameRecord(const GameSignature& one, const GameSignature& other) {
  return one.DisplayName == other.DisplayName && one.SourceKind == other.SourceKind &&
         one.SourceExId == other.SourceExId && one.RegistryKey == other.RegistryKey;
}

bool WasGiven(const StrategyRun& run, const GameSignature& record) {
  return std::any_of(run.games.begin(), run.games.end(),
                     [&](const GameSignature& game) { return IsSameRecord(game, record); });
}

// The strategy whose result took the record out of the games to look for.
const StrategyRun* TakenOutBy(const ObservedScan& scan, const GameSignature& record) {
  const auto found = std::find_if(scan.runs.begin(), scan.runs.end(),
                                  [&](const StrategyRun& run) { return IsFound(record, run.results); });
  return found == scan.runs.end() ? nullptr : &*found;
}

std::string FoundWhere(const ScanResult& result, const GameSignature& record) {
  const std::string& where = result.exePath.empty() ? result.launchUrl : result.exePath;
  return result.name == record.DisplayName ? where : fmt::format("{} (as '{}')", where, result.name);
}

std::string WhyNotTried(const ObservedScan& scan, const StrategyRun& run, const StrategyWants& wants,
                        const Subject& subject) {
  if (!AsksTheCatalogue(wants)) return {};
  if (!subject.inCatalogue) return "no catalogue record has this name";
  const std::string why = WhyNotTaken(wants, subject.record);
  if (!why.empty() || WasGiven(run, subject.record)) return why;
  const StrategyRun* earlier = TakenOutBy(scan, subject.record);
  return "found by an earlier level" + (earlier == nullptr ? "" : ": " + earlier->strategy.name);
}

bool IsDatabase(const std::string& strategy) {
  return strategy == "Itch.io Search" || strategy == "Twitch Search";
}

std::string WhyMissed(const StrategyWants& wants, const GameSignature& record,
                      const std::vector<Heard>& heard, const ScanResults& alone) {
  if (IsFound(record, alone)) {
    return fmt::format("finds it only when looked for alone, at {}: another record comes before it",
                       alone.front().exePath);
  }
  if (wants.use == CatalogueUse::kEachRecord) return LastMiss(heard, record.DisplayName);
  if (IsDatabase(wants.strategy) && !heard.empty() && heard.back().answer.given)
    return "database recognised, but not read";
  return ListMiss(wants, record, heard, OwnerOfList(wants.strategy));
}

// Fills in the questions that the strategy asks about this record, or all that it asked of its launcher's
// list.
void Ask(const Material& material, const StrategyRun& run, const StrategyWants& wants, const Subject& subject,
         StrategyVerdict& verdict) {
  verdict.questions = material.questions.at(run.strategy.name);
  ScanResults alone;
  if (AsksTheCatalogue(wants) && subject.inCatalogue) {
    StrategyRun again = ObserveStrategy(run.strategy, {subject.record});
    alone = std::move(again.results);
    verdict.questions = std::make_shared<const std::vector<Heard>>(std::move(again.heard));
  }
  if (verdict.verdict == Verdict::kMissed)
    verdict.reason = WhyMissed(wants, subject.record, *verdict.questions, alone);
}

StrategyVerdict VerdictOf(const Material& material, const StrategyRun& run, const Subject& subject,
                          const std::vector<OwnResult>& own) {
  static const Questions kNone = std::make_shared<const std::vector<Heard>>();
  const StrategyWants& wants = WantsOf(run.strategy.name);
  StrategyVerdict verdict{run.strategy.name, run.strategy.priority, Verdict::kMissed, {}, kNone};
  const ScanResult* result = ResultOf(run, own);
  verdict.reason = result != nullptr ? FoundWhere(*result, subject.record)
                                     : WhyNotTried(material.scan, run, wants, subject);
  if (result == nullptr && !verdict.reason.empty()) {
    verdict.verdict = Verdict::kNotTried;
    return verdict;
  }
  if (result != nullptr) verdict.verdict = Verdict::kFound;
  if (result == nullptr && !run.failure.empty()) {
    verdict.verdict = Verdict::kFailed;
    verdict.reason = run.failure;
    verdict.questions = material.questions.at(run.strategy.name);
    return verdict;
  }
  Ask(material, run, wants, subject, verdict);
  return verdict;
}

bool IsSameResult(const ScanResult& one, const ScanResult& other) {
  return one.name == other.name && one.exePath == other.exePath && one.launchUrl == other.launchUrl &&
         one.source == other.source;
}

bool IsInTheAnswer(const ObservedScan& scan, const OwnResult& one) {
  return std::any_of(scan.unique.begin(), scan.unique.end(),
                     [&](const ScanResult& entry) { return IsSameResult(entry, *one.result); });
}

// The result that stands in the answer as it is, or null.
const OwnResult* InTheAnswer(const ObservedScan& scan, const std::vector<OwnResult>& own) {
  const auto found =
      std::find_if(own.begin(), own.end(), [&](const OwnResult& one) { return IsInTheAnswer(scan, one); });
  return found == own.end() ? nullptr : &*found;
}

// Another result of the file that the merge left beside the kept one, in words; empty if there is none.
std::string TellDouble(const ObservedScan& scan, const std::vector<OwnResult>& own, const OwnResult& kept) {
  const auto found = std::find_if(own.begin(), own.end(), [&](const OwnResult& one) {
    return !IsSameResult(*one.result, *kept.result) &&
           IsSamePath(one.result->exePath, kept.result->exePath) && IsInTheAnswer(scan, one);
  });
  if (found == own.end()) return {};
  return fmt::format("; listed twice, since {} gives it with another launch address, '{}'",
                     found->run->strategy.name, found->result->launchUrl);
}

const ScanResult* MergedInto(const ObservedScan& scan, const ScanResult& result) {
  const auto found = std::find_if(scan.unique.begin(), scan.unique.end(), [&](const ScanResult& entry) {
    return MergeResults({entry, result}).size() == 1;
  });
  return found == scan.unique.end() ? nullptr : &*found;
}

std::string WhyMerged(const ScanResult& entry, const ScanResult& result) {
  const std::string id = SteamAppId(result.launchUrl);
  if (id.empty() || id != SteamAppId(entry.launchUrl)) return "same path";
  return fmt::format("same Steam app id {}, and the source '{}' doesn't outrank '{}'", id, result.source,
                     entry.source);
}

// The strategies of the record's own source that an earlier level left without it.
std::vector<std::string> LeftWithout(const ObservedScan& scan, const GameSignature& record) {
  std::vector<std::string> names;
  for (const StrategyRun& run : scan.runs) {
    const StrategyWants& wants = WantsOf(run.strategy.name);
    const bool isOwn = wants.source != kAnySource && wants.source == record.SourceKind;
    if (isOwn && !WasGiven(run, record)) names.push_back(run.strategy.name);
  }
  return names;
}

bool ComesFromOneOf(const std::vector<OwnResult>& own, const std::vector<std::string>& strategies) {
  return std::any_of(own.begin(), own.end(), [&](const OwnResult& one) {
    return std::find(strategies.begin(), strategies.end(), one.run->strategy.name) != strategies.end();
  });
}

std::string Joined(const std::vector<std::string>& names) {
  std::string joined;
  for (size_t i = 0; i < names.size(); ++i) {
    if (i > 0) joined += i + 1 == names.size() ? " and " : ", ";
    joined += names[i];
  }
  return joined;
}

void TellMerged(const ObservedScan& scan, const OwnResult& one, GameExplanation& game) {
  game.outcome = Outcome::kMerged;
  const ScanResult* entry = MergedInto(scan, *one.result);
  game.path = entry == nullptr ? one.result->exePath : entry->exePath;
  game.sentence =
      fmt::format("found by {} at {}, and merged away", one.run->strategy.name, one.result->exePath);
  if (entry == nullptr) return;
  game.sentence +=
      fmt::format(" into '{}' at {}: {}", entry->name, entry->exePath, WhyMerged(*entry, *one.result));
}

void TellFound(const ObservedScan& scan, const std::vector<OwnResult>& own, const Subject& subject,
               GameExplanation& game) {
  const OwnResult* kept = InTheAnswer(scan, own);
  const OwnResult& one = kept == nullptr ? own.front() : *kept;
  game.strategy = one.run->strategy.name;
  game.source = one.result->source;
  game.path = one.result->exePath;
  if (kept == nullptr) return TellMerged(scan, one, game);
  game.outcome = Outcome::kFound;
  game.sentence = fmt::format("found by {} at {}, with the source '{}'", game.strategy,
                              FoundWhere(*one.result, subject.record), game.source);
  game.sentence += TellDouble(scan, own, one);
  const std::vector<std::string> left = LeftWithout(scan, subject.record);
  if (!subject.inCatalogue || left.empty() || ComesFromOneOf(own, left)) return;
  game.outcome = Outcome::kEarlier;
  game.sentence +=
      fmt::format("; that is level {}, so {} never got the record", one.run->strategy.priority, Joined(left));
}

void TellMissing(const Subject& subject, GameExplanation& game) {
  const auto failed =
      std::find_if(game.strategies.begin(), game.strategies.end(),
                   [](const StrategyVerdict& verdict) { return verdict.verdict == Verdict::kFailed; });
  game.outcome = failed == game.strategies.end() ? Outcome::kMissing : Outcome::kFailed;
  game.sentence = "not found";
  if (game.outcome == Outcome::kFailed) game.sentence += ", and " + failed->strategy + " failed";
  if (!subject.inCatalogue)
    game.sentence += fmt::format(": {} names it, the catalogue doesn't", subject.named.who);
}

GameExplanation Explained(const Material& material, const Subject& subject) {
  GameExplanation game;
  game.name = subject.record.DisplayName;
  game.inCatalogue = subject.inCatalogue;
  const std::vector<OwnResult> own = OwnResults(material.scan, subject.record);
  for (const StrategyRun& run : material.scan.runs)
    game.strategies.push_back(VerdictOf(material, run, subject, own));
  if (own.empty())
    TellMissing(subject, game);
  else
    TellFound(material.scan, own, subject, game);
  game.nearMisses = subject.inCatalogue ? NearMisses(game.name, material.heard)
                                        : NearRecords(subject.named, material.scan.catalogue);
  return game;
}

std::vector<Subject> SubjectsOf(const Material& material, const std::string& name) {
  const std::string wanted = FoldedName(name);
  std::vector<Subject> subjects;
  std::set<std::string> keys;
  const auto has = [&](const std::string& other) {
    return FoldedName(other).find(wanted) != std::string::npos;
  };
  for (const GameSignature& record : material.scan.catalogue) {
    if (!has(record.DisplayName)) continue;
    subjects.push_back({record, true});
    keys.insert(NameKey(record.DisplayName));
  }
  for (const NamedBy& named : material.heard) {
    if (!has(named.name) || !keys.insert(NameKey(named.name)).second) continue;
    subjects.push_back({{}, false, named});
    subjects.back().record.DisplayName = named.name;
  }
  std::stable_partition(subjects.begin(), subjects.end(), [&](const Subject& subject) {
    return FoldedName(subject.record.DisplayName) == wanted;
  });
  return subjects;
}

}  // namespace

const char* NameOf(Verdict verdict) {
  constexpr const char* kNames[] = {"found", "not tried", "missed", "failed"};
  return kNames[static_cast<int>(verdict)];
}

const char* NameOf(Outcome outcome) {
  constexpr const char* kNames[] = {"found", "merged", "earlier", "missing", "failed"};
  return kNames[static_cast<int>(outcome)];
}

Explanation ExplainName(const ObservedScan& scan, const std::string& name) {
  Explanation explanation{name, {}, 0, {}};
  const Material material = MaterialOf(scan);
  std::vector<Subject> subjects = SubjectsOf(material, name);
  if (subjects.size() > kMostExplained) {
    explanation.further = subjects.size() - kMostExplained;
    subjects.resize(kMostExplained);
  }
  for (const Subject& subject : subjects) explanation.records.push_back(Explained(material, subject));
  if (subjects.empty()) explanation.similar = SimilarNames(name, scan, material.heard);
  return explanation;
}

}  // namespace tarnwick::host
