#include "host/explain/named_games.h"

#include "foundation/text.h"
#include "host/explain/name_folding.h"
#include "host/presentation.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace tarnwick::host {
namespace {

constexpr char kWindowsList[] = "Windows' list of programs";
constexpr size_t kMostSimilar = 5;

const std::pair<const char*, const char*> kOwners[] = {
    {"GameUX Registry Search", "Windows' game explorer"},
    {"GameUX Info Search", "Windows' game explorer"},
    {"Steam Shortcuts Search", "Steam's list of shortcuts"},
    {"Steam AppInfo Scan", kWindowsList},
};

class Collection {
 public:
  void Add(const std::string& who, const std::string& name, const std::string& place) {
    if (!name.empty() && seen_.insert({who, name}).second) names_.push_back({who, name, place});
  }
  std::vector<NamedBy> Take() { return std::move(names_); }

 private:
  std::set<std::pair<std::string, std::string>> seen_;
  std::vector<NamedBy> names_;
};

std::string Sentence(const std::string& catalogues, const std::string& who, const std::string& others) {
  return fmt::format("the catalogue says '{}', {} says '{}'", catalogues, who, others);
}

}  // namespace

std::string NameKey(const std::string& name) {
  std::string plain = name;
  StripTrademarkSigns(plain);
  return FoldedName(TrimCharacters(plain, " "));
}

std::string OwnerOfList(const std::string& strategy) {
  for (const auto& [name, owner] : kOwners) {
    if (strategy == name) return owner;
  }
  return LauncherName("", strategy);
}

std::vector<NamedBy> NamesHeard(const ObservedScan& scan) {
  Collection names;
  for (const StrategyRun& run : scan.runs) {
    for (const ScanResult& result : run.results) names.Add(OwnerOfList(run.strategy.name), result.name, {});
  }
  for (const StrategyRun& run : scan.runs) {
    const std::string& strategy = run.strategy.name;
    for (const ListedGame& game : ListedGames(strategy, run.heard))
      names.Add(OwnerOfList(strategy), game.name, game.place);
  }
  for (const StrategyRun& run : scan.runs) {
    for (const ListedGame& entry : UninstallEntries(run.heard))
      names.Add(kWindowsList, entry.name, entry.place);
  }
  return names.Take();
}

std::vector<std::string> NearMisses(const std::string& name, const std::vector<NamedBy>& heard) {
  const std::string loose = LooseName(name);
  std::vector<std::string> sentences;
  for (const NamedBy& other : heard) {
    if (other.name != name && AreNear(loose, LooseName(other.name)))
      sentences.push_back(Sentence(name, other.who, other.name));
  }
  return sentences;
}

std::vector<std::string> NearRecords(const NamedBy& named, const GameList& catalogue) {
  const std::string loose = LooseName(named.name);
  std::vector<std::string> sentences;
  for (const GameSignature& record : catalogue) {
    if (record.DisplayName != named.name && AreNear(LooseName(record.DisplayName), loose))
      sentences.push_back(Sentence(record.DisplayName, named.who, named.name));
  }
  return sentences;
}

std::vector<std::string> SimilarNames(const std::string& name, const ObservedScan& scan,
                                      const std::vector<NamedBy>& heard) {
  const std::string loose = LooseName(name);
  std::vector<std::string> similar;
  const auto add = [&](const std::string& other) {
    const bool known = std::find(similar.begin(), similar.end(), other) != similar.end();
    if (!known && similar.size() < kMostSimilar && AreNear(loose, LooseName(other))) similar.push_back(other);
  };
  for (const GameSignature& record : scan.catalogue) add(record.DisplayName);
  for (const NamedBy& other : heard) add(other.name);
  return similar;
}

}  // namespace tarnwick::host
