#pragma once
// How far two texts are from each other.

#include <cstddef>
#include <string_view>

namespace tarnwick::host {

// How many characters must be put in, taken out, changed or swapped with their neighbour to make one text of
// the other.
size_t EditDistance(std::u32string_view from, std::u32string_view to);

// The same by bytes, for texts that are ASCII.
size_t EditDistance(std::string_view from, std::string_view to);

}  // namespace tarnwick::host
