#include "support/file_bytes.h"

#include "desktop/windows_calls.h"
#include "foundation/windows_api.h"
#include "support/source_folder.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace tarnwick::tests {

std::string ReadBytes(const std::string& path) {
  std::ifstream file(std::filesystem::path(desktop::LongPath(path)), std::ios::binary);
  if (!file) throw std::runtime_error("can't open " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string ReadSource(const std::string& name) { return ReadBytes(SourceFolder() + "/" + name); }

bool PathExists(const std::string& path) {
  return GetFileAttributesW(desktop::LongPath(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace tarnwick::tests
