#include "launchers/riot_files_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::istringstream json(text);
  if (tarnwick::ReadRiotLaunchHelper(json).find('"') != std::string::npos) std::abort();
  std::istringstream yaml(text);
  const std::string folder = tarnwick::ReadYamlInstallPath(yaml, "yaml");
  const auto trimmed = [](char byte) { return byte == ' ' || byte == '\t' || byte == '"'; };
  if (!folder.empty() && (trimmed(folder.front()) || trimmed(folder.back()))) std::abort();
  if (folder.find('\n') != std::string::npos) std::abort();
  return 0;
}
