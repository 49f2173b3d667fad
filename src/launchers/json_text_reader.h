#pragma once
// Values in JSON text, found by their quoted key. These are text searches and must stay so: they know nothing
// of nesting, take the first occurrence of the key at any depth, and undo no escapes. What they can't read is
// empty.
//
// Two rules for a string's value are in use, and the launchers differ in which they follow:
// - JsonFindString: the value must follow the colon, but for white space; an escaped quote doesn't end it.
// - JsonFindNextQuoted: what stands between the next two quotes behind the colon, even if that is a later key.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// Where the key's colon stands, npos if the key or a colon behind it is missing.
size_t JsonFindColon(std::string_view text, std::string_view key);

// The first place from `at` on that is no blank, tab, line feed or carriage return; the text's length if none
// is.
size_t JsonSkipBlanks(std::string_view text, size_t at);

// The closing quote of a string whose content starts at `start`, npos if it isn't closed. Kept: only the one
// byte before a quote is looked at, so a value that ends in an escaped backslash runs on to the next quote
// (docs/decisions/json-text.md).
size_t JsonFindClosingQuote(std::string_view text, size_t start);

// The text between the quotes as it stands, doubled backslashes included. Empty for a number, null, array or
// object.
std::string JsonFindString(std::string_view text, std::string_view key);

std::string JsonFindNextQuoted(std::string_view text, std::string_view key);

// True only for a value that begins with the bytes "true".
bool JsonFindBool(std::string_view text, std::string_view key);

// Always empty; docs/decisions/json-text.md tells why.
std::vector<std::string> JsonFindStringArray(std::string_view text, std::string_view key);

// Each object of the array behind the key, as a view into `text`. Braces and brackets inside strings count
// too.
std::vector<std::string_view> JsonFindObjectArray(std::string_view text, std::string_view key);

}  // namespace tarnwick
