#include "steam/shortcuts_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

bool IsValue(const std::string& text) {
  return !text.empty() && text.find('\0') == std::string::npos && text.find('\x02') == std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<tarnwick::SteamShortcut> shortcuts;
  tarnwick::ReadShortcuts(std::string_view(reinterpret_cast<const char*>(data), size), shortcuts);
  for (const tarnwick::SteamShortcut& shortcut : shortcuts) {
    if (!IsValue(shortcut.appName) || !IsValue(shortcut.exe) || !IsValue(shortcut.startDir)) std::abort();
  }
  return 0;
}
