#pragma once
// Files that real launchers wrote. They are no part of this repository: tests that look at them are skipped
// unless TARNWICK_SAMPLES names a folder that has them.

#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

namespace tarnwick::tests {

// The bytes of a sample, or nothing where there are none.
inline std::optional<std::string> Sample(const std::string& name) {
  const char* folder = std::getenv("TARNWICK_SAMPLES");
  if (folder == nullptr) return std::nullopt;
  std::ifstream file(std::string(folder) + "/" + name, std::ios::binary);
  if (!file) return std::nullopt;
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return std::move(bytes).str();
}

}  // namespace tarnwick::tests
