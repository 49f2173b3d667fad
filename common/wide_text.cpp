// Edge: text conversion of Windows.
#include "common/wide_text.h"

#include <windows.h>

#include <stdexcept>

namespace tarnwick::common {

std::wstring Wide(const std::string& text, Malformed malformed) {
  if (text.empty()) return {};
  const int length = static_cast<int>(text.size());
  const DWORD flags = malformed == Malformed::kRefused ? MB_ERR_INVALID_CHARS : 0;
  const int units = MultiByteToWideChar(CP_UTF8, flags, text.data(), length, nullptr, 0);
  if (units == 0) throw std::runtime_error("not valid UTF-8: " + text);
  std::wstring wide(static_cast<size_t>(units), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), units);
  return wide;
}

std::string Narrow(const std::wstring& text) {
  if (text.empty()) return {};
  const int units = static_cast<int>(text.size());
  const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
  if (length == 0) throw std::runtime_error("not valid UTF-16");
  std::string narrow(static_cast<size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), units, narrow.data(), length, nullptr, nullptr);
  return narrow;
}

}  // namespace tarnwick::common
