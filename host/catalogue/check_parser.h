#pragma once
// A catalogue as an XML parser sees it: Windows' own, which reads no document types and fetches nothing.

#include "host/catalogue/check_findings.h"

#include <optional>
#include <string_view>

namespace tarnwick::host {

// The elements of a catalogue are nested three deep; a parser that goes along with any depth would take as
// much memory as the file says.
inline constexpr size_t kMostDepth = 64;

// The first place at which the text is no well-formed XML, has a document type or is nested too deeply.
// Nothing if there is none. The text is parsed as UTF-8, whatever it declares; bytes that are none count as
// characters. Throws std::runtime_error where the system has no parser.
std::optional<Finding> FindParserFault(std::string_view text);

}  // namespace tarnwick::host
