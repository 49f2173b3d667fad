#pragma once
// Writes a catalogue: the XML document that tells which games can be recognised. Knows nothing of Windows.

#include "catalogue/element_name_reader.h"
#include "catalogue/game_signature.h"

#include <string>
#include <vector>

namespace tarnwick::common {

// The elements of a record in the order of writing: a name stands ahead of every longer name that begins with
// it, since readers search for the beginning of a tag. SourceEx is one of them, and has no string field.
const std::vector<CatalogueElement>& CatalogueElements();

// What a record holds for one of these elements.
std::string ElementText(const GameSignature& game, const CatalogueElement& element);

// The text of the element SourceEx for a source kind, empty for kind 0; and the other way round, for the
// texts that this writes. Throw std::runtime_error for an unknown one.
std::string SourceExText(int32_t kind);
int32_t SourceKindOf(const std::string& sourceEx);

// The whole document, which the library reads back as the same records. Empty fields are left out; white space
// that readers would trim or collapse is written as references. Texts that hold what XML has no character for
// (FindNoXml) go in as they stand: the library reads them, an XML parser does not.
std::string CatalogueText(const GameList& games);

}  // namespace tarnwick::common
