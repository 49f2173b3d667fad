// Edge: long paths and error texts of Windows.
#include "desktop/windows_calls.h"

#include "common/wide_text.h"
#include "foundation/windows_api.h"

#include <filesystem>

namespace tarnwick::desktop {

std::wstring LongPath(const std::string& path) {
  std::wstring wide = common::Wide(path);
  const std::wstring prefix = L"\\\\?\\";
  if (wide.starts_with(prefix)) return wide;
  const bool network = wide.starts_with(L"\\\\");
  if (network) wide.erase(0, 2);
  if (!network && (wide.size() < 3 || wide[1] != L':' || (wide[2] != L'\\' && wide[2] != L'/')))
    throw std::runtime_error("not an absolute path: " + path);
  std::wstring tidy = std::filesystem::path(wide).lexically_normal().make_preferred().wstring();
  while (tidy.size() > 3 && tidy.back() == L'\\') tidy.pop_back();
  return prefix + (network ? L"UNC\\" : L"") + tidy;
}

std::runtime_error WindowsError(const std::string& what, const std::string& subject, unsigned long code) {
  wchar_t text[512];
  const DWORD units = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                     code, 0, text, static_cast<DWORD>(std::size(text)), nullptr);
  std::string message = common::Narrow(std::wstring(text, units));
  while (!message.empty() && static_cast<unsigned char>(message.back()) <= ' ') message.pop_back();
  return std::runtime_error(what + " '" + subject + "': error " + std::to_string(code) +
                            (message.empty() ? "" : " (" + message + ")"));
}

}  // namespace tarnwick::desktop
