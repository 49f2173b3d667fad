#pragma once
// In what encoding a catalogue's bytes are, by what they say of themselves. No function keeps state.

#include <cstddef>
#include <string_view>

namespace tarnwick::host {

inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// Is the text UTF-16? By its byte order mark or, without one, by the zero bytes that Latin letters leave at
// the odd or at the even places, and only there.
bool IsUtf16(std::string_view bytes);

// The name that the XML declaration gives, as it stands between its quotes; empty where none is given.
std::string_view DeclaredEncoding(std::string_view text);

// The XML declaration, from "<?xml" to behind "?>"; empty where the text has none at its beginning, a
// byte-order mark and white space aside.
std::string_view XmlDeclaration(std::string_view text);

// Is it a name of UTF-8, in any letter case?
bool NamesUtf8(std::string_view encoding);

// The offset of the first byte at or behind `from` that is no UTF-8, or npos: surrogates, overlong forms and
// what lies beyond Unicode count as none.
size_t FirstNoUtf8(std::string_view text, size_t from = 0);

// Are these bytes no text, as far as one can tell: such as cipher text?
bool LooksBinary(std::string_view bytes);

}  // namespace tarnwick::host
