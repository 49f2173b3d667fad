// Reader: quoted values on lines of Steam's text files.
#include "steam/vdf_line_reader.h"

namespace tarnwick {

std::optional<std::string> QuotedValueBehind(const std::string& line, size_t from) {
  const size_t open = line.find('"', from);
  if (open == std::string::npos) return std::nullopt;
  const size_t close = line.find('"', open + 1);
  if (close == std::string::npos) return std::nullopt;
  return line.substr(open + 1, close - open - 1);
}

}  // namespace tarnwick
