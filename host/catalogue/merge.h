#pragma once
// Two catalogues brought together, or compared. Knows nothing of Windows.
//
// Two records are of one game at one source if their source and its id are equal, or, where a record has no
// id, source and name; letter case counts. The order of a catalogue's records makes no difference.

#include "catalogue/game_signature.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::host {

struct FieldChange {
  std::string_view element;
  std::string before;
  std::string after;
};

struct RecordChange {
  GameSignature before;
  std::vector<FieldChange> fields;
};

// The elements that differ, in the order of writing.
std::vector<FieldChange> ChangedFields(const GameSignature& before, const GameSignature& after);

struct MergedCatalogue {
  GameList games;
  std::vector<RecordChange> conflicts;  // what was kept, and what the record that was left says instead
  size_t equal = 0;                     // left records that say the same
};

// The records of both in their order, of each game at each source the first; so also where one catalogue
// has two such records itself.
MergedCatalogue MergeCatalogues(const GameList& first, const GameList& second);

struct CatalogueDifference {
  GameList added;
  GameList removed;
  std::vector<RecordChange> changed;
};

// Where a catalogue has several records of one game at one source, the first is compared with the first, and
// so on.
CatalogueDifference CompareCatalogues(const GameList& before, const GameList& after);

// "STEAM 70 Wren": what a record is of, in one line.
std::string RecordTitle(const GameSignature& game);

}  // namespace tarnwick::host
