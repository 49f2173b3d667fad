#pragma once
// Whole files, for tests that look at what was written.

#include <string>

namespace tarnwick::tests {

// All bytes of the file at this path (UTF-8). Throws std::runtime_error if it can't be opened.
std::string ReadBytes(const std::string& path);

}  // namespace tarnwick::tests
