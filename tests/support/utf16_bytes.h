#pragma once

#include <string>

namespace tarnwick::tests {

// The bytes of UTF-16 text as a file or the registry holds them.
inline std::string Utf16Bytes(const std::wstring& text, bool bigEndian = false) {
  std::string bytes;
  for (const wchar_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

}  // namespace tarnwick::tests
