// Reader: records of two catalogues, side by side.
#include "host/catalogue/merge.h"

#include "common/catalogue_text.h"

#include <deque>
#include <map>
#include <set>
#include <tuple>

namespace tarnwick::host {
namespace {

// Source, id, and the name where there is no id.
using RecordKey = std::tuple<int32_t, std::string, std::string>;

RecordKey KeyOf(const GameSignature& game) {
  return {game.SourceKind, game.SourceExId, game.SourceExId.empty() ? game.DisplayName : std::string()};
}

void MergeRecord(MergedCatalogue& merged, std::map<RecordKey, size_t>& places, const GameSignature& game) {
  const auto [place, isNew] = places.emplace(KeyOf(game), merged.games.size());
  if (isNew) {
    merged.games.push_back(game);
    return;
  }
  const GameSignature& kept = merged.games[place->second];
  std::vector<FieldChange> fields = ChangedFields(kept, game);
  if (fields.empty()) {
    ++merged.equal;
  } else {
    merged.conflicts.push_back({kept, std::move(fields)});
  }
}

// By key the records that wait for their like, in order.
using Waiting = std::map<RecordKey, std::deque<size_t>>;

// Takes the record's like out of those that wait, if there is one.
const GameSignature* TakeLike(const GameList& games, Waiting& waiting, const GameSignature& game) {
  const auto like = waiting.find(KeyOf(game));
  if (like == waiting.end() || like->second.empty()) return nullptr;
  const GameSignature& found = games[like->second.front()];
  like->second.pop_front();
  return &found;
}

std::set<size_t> StillWaiting(const Waiting& waiting) {
  std::set<size_t> left;
  for (const auto& [key, places] : waiting) left.insert(places.begin(), places.end());
  return left;
}

}  // namespace

std::vector<FieldChange> ChangedFields(const GameSignature& before, const GameSignature& after) {
  std::vector<FieldChange> changes;
  for (const CatalogueElement& element : common::CatalogueElements()) {
    std::string old = common::ElementText(before, element);
    std::string now = common::ElementText(after, element);
    if (old != now) changes.push_back({element.name, std::move(old), std::move(now)});
  }
  return changes;
}

MergedCatalogue MergeCatalogues(const GameList& first, const GameList& second) {
  MergedCatalogue merged;
  std::map<RecordKey, size_t> places;
  for (const GameList* games : {&first, &second})
    for (const GameSignature& game : *games) MergeRecord(merged, places, game);
  return merged;
}

CatalogueDifference CompareCatalogues(const GameList& before, const GameList& after) {
  CatalogueDifference difference;
  Waiting waiting;
  for (size_t i = 0; i < after.size(); ++i) waiting[KeyOf(after[i])].push_back(i);
  for (const GameSignature& game : before) {
    const GameSignature* like = TakeLike(after, waiting, game);
    if (like == nullptr) {
      difference.removed.push_back(game);
    } else if (std::vector<FieldChange> fields = ChangedFields(game, *like); !fields.empty()) {
      difference.changed.push_back({game, std::move(fields)});
    }
  }
  for (const size_t left : StillWaiting(waiting)) difference.added.push_back(after[left]);
  return difference;
}

std::string RecordTitle(const GameSignature& game) {
  std::string title = game.SourceKind == kSourceNone ? "no source" : common::SourceExText(game.SourceKind);
  if (!game.SourceExId.empty()) title += " " + game.SourceExId;
  return title + " " + (game.DisplayName.empty() ? "(no name)" : game.DisplayName);
}

}  // namespace tarnwick::host
