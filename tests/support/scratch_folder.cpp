#include "support/scratch_folder.h"

#include "support/wide.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace tarnwick::tests {

ScratchFolder::ScratchFolder(const std::string& name) : path_("C:\\TarnwickTest\\" + name) {
  std::filesystem::remove_all(Wide(path_));
  std::filesystem::create_directories(Wide(path_));
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(Wide(path_), ignored);
}

std::string ScratchFolder::File(const std::string& relativePath, std::string_view bytes) const {
  const std::string path = path_ + "\\" + relativePath;
  const std::filesystem::path wide = Wide(path);
  std::filesystem::create_directories(wide.parent_path());
  std::ofstream file(wide, std::ios::binary);
  file << bytes;
  if (!file.flush()) throw std::runtime_error("can't write " + path);
  return path;
}

}  // namespace tarnwick::tests
