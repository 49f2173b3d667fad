#include "launchers/uplay_configurations_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto records = tarnwick::ReadUplayConfigurations(text);
  for (const tarnwick::UplayConfigRecord& record : records) {
    if (record.installId.find_first_not_of("0123456789") != std::string::npos) std::abort();
    if (record.name.find('\n') != std::string::npos || !record.unused.empty()) std::abort();
  }
  // A file with a bare record behind it has exactly one record more.
  if (tarnwick::ReadUplayConfigurations(std::string(text) + "\nroot:\n").size() < records.size() + 1)
    std::abort();
  return 0;
}
