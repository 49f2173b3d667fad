#include "support/current_directory.h"

#include "common/wide_text.h"
#include "foundation/windows_api.h"

#include <stdexcept>

namespace tarnwick::tests {

CurrentDirectory::CurrentDirectory(const std::string& folder) {
  wchar_t before[MAX_PATH] = {};
  GetCurrentDirectoryW(MAX_PATH, before);
  before_ = before;
  if (!SetCurrentDirectoryW(common::Wide(folder).c_str())) throw std::runtime_error("can't go to " + folder);
}

CurrentDirectory::~CurrentDirectory() { SetCurrentDirectoryW(before_.c_str()); }

}  // namespace tarnwick::tests
