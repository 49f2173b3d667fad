// Edge: text conversions by the system's own code page tables.
#include "foundation/conversions.h"

#include "foundation/windows_api.h"

#include <stdexcept>

namespace tarnwick {
namespace {

std::wstring ToWide(UINT codePage, const std::string& text) {
  if (text.empty()) return {};
  const int size = MultiByteToWideChar(codePage, 0, text.c_str(), -1, nullptr, 0);
  if (size <= 1) return {};
  std::wstring wide(static_cast<size_t>(size) - 1, L'\0');
  // The terminator lands on the string's own.
  MultiByteToWideChar(codePage, 0, text.c_str(), -1, wide.data(), size);
  return wide;
}

}  // namespace

std::wstring Utf8ToWide(const std::string& text) { return ToWide(CP_UTF8, text); }

std::string WideToUtf8(const std::wstring& text) {
  if (text.empty()) return {};
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
  if (size == 0) throw std::length_error("WideToUtf8: the text can't be converted");
  std::string narrow(static_cast<size_t>(size) - 1, '\0');
  if (size > 1) WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, narrow.data(), size, nullptr, nullptr);
  return narrow;
}

std::wstring AnsiToWide(const std::string& text) { return ToWide(CP_ACP, text); }

std::string AnsiToUtf8(const std::string& text) { return WideToUtf8(AnsiToWide(text)); }

}  // namespace tarnwick
