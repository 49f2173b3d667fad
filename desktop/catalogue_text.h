#pragma once
// Writes a catalogue: the XML document that tells which games can be recognised.

#include "catalogue/game_signature.h"

#include <string>
#include <vector>

namespace tarnwick::desktop {

// One string element of a record.
struct CatalogueElement {
  const char* name;
  std::string GameSignature::* field;
};

// The string elements in the order of writing: a name stands ahead of every longer name that begins with it,
// since readers search for the beginning of a tag.
const std::vector<CatalogueElement>& CatalogueElements();

// The text of the element SourceEx for a source kind, empty for kind 0; and the other way round, for the
// texts that this writes. Throw std::runtime_error for an unknown one.
std::string SourceExText(int32_t kind);
int32_t SourceKindOf(const std::string& sourceEx);

// The whole document. Empty fields are left out. Readers trim texts and join runs of blanks in them.
std::string CatalogueText(const GameList& games);

}  // namespace tarnwick::desktop
