#include "host/explain/record_search.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace tarnwick::host {
namespace {

using Asks = std::function<bool(const Heard&)>;

std::optional<Heard> LastAsked(const ScanStrategy& strategy, const GameList& games, const Asks& asks) {
  const StrategyRun run = ObserveStrategy(strategy, games);
  const auto found = std::find_if(run.heard.rbegin(), run.heard.rend(), asks);
  return found == run.heard.rend() ? std::nullopt : std::optional<Heard>(*found);
}

constexpr std::string GameSignature::* kTexts[] = {
    &GameSignature::DisplayName,      &GameSignature::RegistryKey,        &GameSignature::RegistryPathKeyName,
    &GameSignature::DefaultExe,       &GameSignature::DefaultExe32,       &GameSignature::DefaultExe64,
    &GameSignature::DefaultFolderExe, &GameSignature::DefaultFolderExe32, &GameSignature::DefaultFolderExe64,
    &GameSignature::DefaultFolder,    &GameSignature::DefaultFolder32,    &GameSignature::DefaultFolder64,
    &GameSignature::GameGUID,         &GameSignature::GameInfo,           &GameSignature::SourceExId,
    &GameSignature::LaunchUrl,        &GameSignature::RunningExe,
};

// Of the same kind, with texts where the record has texts, but such as lead nowhere.
GameList Strangers(GameList games) {
  for (GameSignature& game : games) {
    for (const auto text : kTexts) {
      if (!(game.*text).empty()) game.*text = "nobody-has-this";
    }
  }
  return games;
}

void Search(const ScanStrategy& strategy, const GameList& games, const Asks& asks, size_t most,
            std::vector<AskingRecord>& found) {
  if (games.empty() || found.size() >= most) return;
  const std::optional<Heard> heard = LastAsked(strategy, games, asks);
  if (!heard) return;
  if (games.size() == 1) {
    found.push_back({games.front().DisplayName, *heard});
    return;
  }
  const auto middle = games.begin() + static_cast<std::ptrdiff_t>(games.size() / 2);
  Search(strategy, GameList(games.begin(), middle), asks, most, found);
  Search(strategy, GameList(middle, games.end()), asks, most, found);
}

}  // namespace

std::vector<AskingRecord> RecordsThatAsk(const StrategyRun& run, const Asks& asks, size_t most) {
  std::vector<AskingRecord> found;
  if (LastAsked(run.strategy, {}, asks)) return found;
  if (LastAsked(run.strategy, Strangers(run.games), asks)) return found;
  Search(run.strategy, run.games, asks, most, found);
  return found;
}

}  // namespace tarnwick::host
