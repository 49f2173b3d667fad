#pragma once
// Where the repository stands, for tests that read its documents and samples.

#include <string>

namespace tarnwick::tests {

std::string SourceFolder();  // UTF-8, without a separator at its end

}  // namespace tarnwick::tests
