#include "steam/library_folders_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::istringstream text(std::string(reinterpret_cast<const char*>(data), size));
  for (const std::string& folder : tarnwick::ReadLibraryFolders(text)) {
    if (folder.find_first_of("\"\n") != std::string::npos) std::abort();
  }
  return 0;
}
