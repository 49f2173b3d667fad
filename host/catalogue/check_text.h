#pragma once
// What is wrong with a catalogue, as the library reads it. An XML parser's own word is added by
// check_file.h.

#include "host/catalogue/check_findings.h"

#include <cstddef>
#include <string_view>

namespace tarnwick::host {

// A check holds the file, its text and its findings at once; larger files are refused.
inline constexpr size_t kMostBytes = 64u << 20;

// `text` as the library searches it: deciphered where it deciphers. The findings are not placed yet. Takes
// time in proportion to the text's length, whatever it holds.
Findings CheckText(std::string_view text);

// The finding about a file of so many bytes, which is not read.
Findings TooLarge(size_t bytes);

}  // namespace tarnwick::host
