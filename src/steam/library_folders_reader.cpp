// Reader: library folders, line by line. Kept: no general parser stands behind it, so braces, depth and a
// second key on the same line are not seen.
#include "steam/library_folders_reader.h"

#include "steam/vdf_line_reader.h"

#include <optional>

namespace tarnwick {
namespace {

// A lone backslash stays, and no other escape is known.
std::string HalveBackslashes(const std::string& raw) {
  std::string path;
  path.reserve(raw.size());
  for (size_t i = 0; i < raw.size(); ++i) {
    path += raw[i];
    if (raw[i] == '\\' && i + 1 < raw.size() && raw[i + 1] == '\\') ++i;
  }
  return path;
}

}  // namespace

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
