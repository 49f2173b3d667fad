#pragma once
#include <string>
#include <vector>

namespace tarnwick::tests {

// What the readers logged since the list was last cleared, without the prefix that the real log adds.
std::vector<std::string>& NativeLogLines();

}  // namespace tarnwick::tests
