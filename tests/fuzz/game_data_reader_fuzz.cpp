#include "launchers/game_data_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::istringstream file(std::string(reinterpret_cast<const char*>(data), size));
  std::set<std::string> known;
  for (const tarnwick::MihoyoGameEntry& entry : tarnwick::ReadGameData(file, "file")) {
    if (entry.gameBiz.empty() || !known.insert(entry.gameBiz).second) std::abort();
    if (entry.installPath.find_first_of("\"{") != std::string::npos) std::abort();
  }
  return 0;
}
