#pragma once
// UTF-8 to UTF-16 for test programs that link nothing of the library.

#include <filesystem>
#include <string>

namespace tarnwick::tests {

inline std::wstring Wide(const std::string& text) {
  return std::filesystem::path(std::u8string(text.begin(), text.end())).wstring();
}

}  // namespace tarnwick::tests
