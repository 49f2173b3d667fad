#pragma once
// The catalogue's text, turned into records by searching for marker texts. This is no XML parser and must not
// become one: nothing is validated, anything in which the markers occur is accepted, and no input is an
// error. Texts are bytes; what a field holds is taken as UTF-8. No function keeps state, so all may be called
// on any thread.

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

// The raw text between an element's tags; empty if the element is absent, nil, self-closed or not closed. The
// opening tag is found by its beginning alone, so the search for DefaultExe also stops at <DefaultExe32>.
std::string ExtractElementText(std::string_view block, std::string_view name);

// Trims white space at both ends, and writes one blank for each run of it inside.
std::string NormalizeElementText(std::string_view text);

// Replaces the five named references and the numeric ones, once: what a replacement gives is not looked at
// again. Whatever is no such reference stays as it stands.
std::string DecodeEntities(std::string_view text);

// The kind that a normalised text of SourceEx names, in upper or lower case; kSourceNone for any other.
int32_t ParseSourceKind(const std::string& text);

}  // namespace tarnwick
