#pragma once
// What stands in for a private text: as long as it, in bytes of UTF-8 and in units of UTF-16, so that no byte
// of a file moves; of the same kinds of letters, so that a name outside of ASCII stays outside of it.

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick::host {

// The number-th stand-in for the text. Letters and digits are replaced, everything else stays. Numbers stay
// numbers, hexadecimal ids such ids; other Latin texts become `word` and the number ("user1", "user00001").
std::u32string StandIn(std::u32string_view original, std::u32string_view word, size_t number);

// The stand-in with an upper-case letter wherever this spelling of the original has one.
std::u32string InCaseOf(std::u32string_view spelling, std::u32string_view standIn);

}  // namespace tarnwick::host
