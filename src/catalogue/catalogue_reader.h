#pragma once
// The catalogue's text, turned into records by searching for marker texts. This is no XML parser and must not
// become one: nothing is validated, anything in which the markers occur is accepted, and no input is an
// error. Texts are bytes; what a field holds is taken as UTF-8. No function keeps state, so all may be called
// on any thread.

#include "catalogue/element_text_reader.h"
#include "catalogue/game_signature.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick {

// The records between "<GameSignature>" and "</GameSignature>", in the order of the text, duplicates
// included. A record without a closing tag ends the list. Each string field is
// DecodeEntities(NormalizeElementText(ExtractElementText(record, name))); the kind comes from SourceEx, which
// is not decoded. Empty means that no record was found. Takes time in proportion to the text's length,
// whatever it holds.
GameList ParseCatalogue(std::string_view text);

// The kind that a normalised text of SourceEx names, in upper or lower case; kSourceNone for any other.
int32_t ParseSourceKind(const std::string& text);

}  // namespace tarnwick
