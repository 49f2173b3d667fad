#pragma once
// Whole files, for tests that look at what was written. Paths are UTF-8, absolute and of any length.

#include <string>

namespace tarnwick::tests {

// All bytes of the file. Throws std::runtime_error if it can't be opened.
std::string ReadBytes(const std::string& path);

// Those of a file of the repository, named from its top, such as "docs/outputs.md".
std::string ReadSource(const std::string& name);

// Is there a file or a folder?
bool PathExists(const std::string& path);

}  // namespace tarnwick::tests
