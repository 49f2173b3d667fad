#include "support/file_bytes.h"

#include "common/wide_text.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace tarnwick::tests {

std::string ReadBytes(const std::string& path) {
  std::ifstream file(std::filesystem::path(common::Wide(path)), std::ios::binary);
  if (!file) throw std::runtime_error("can't open " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace tarnwick::tests
