// Reader: library folders, line by line. Kept: no general parser stands behind it, so braces, depth and a
// second key on the same line are not seen (docs/decisions/text-vdf.md).
#include "steam/library_folders_reader.h"

#include "foundation/text.h"
#include "steam/vdf_line_reader.h"

#include <optional>

namespace tarnwick {
std::vector<std::string> ReadLibraryFolders(std::istream& text) {
  const std::string key = "\"path\"";
  std::vector<std::string> folders;
  for (std::string line; std::getline(text, line);) {
    const size_t at = line.find(key);
    if (at == std::string::npos) continue;
    if (const std::optional<std::string> raw = QuotedValueBehind(line, at + key.size())) {
      folders.push_back(HalveBackslashes(*raw));
    }
  }
  return folders;
}

}  // namespace tarnwick
