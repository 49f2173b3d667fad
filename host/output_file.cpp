#include "host/output_file.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>

#include "host/console.h"

namespace tarnwick::host {
namespace {

static_assert(sizeof(SystemError) == sizeof(DWORD));

constexpr size_t kMostBytesOfACall = size_t{1} << 30;

std::runtime_error CanNotWrite(const std::string& path, SystemError error) {
  return std::runtime_error("can't write " + path + ": " + SystemErrorText(error));
}

}  // namespace

SystemError WriteBytes(void* handle, std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto count = static_cast<DWORD>(std::min(bytes.size(), kMostBytesOfACall));
    if (!WriteFile(handle, bytes.data(), count, &written, nullptr)) return GetLastError();
    if (written == 0) return ERROR_WRITE_FAULT;
    bytes.remove_prefix(written);
  }
  return ERROR_SUCCESS;
}

std::string SystemErrorText(SystemError error) {
  wchar_t text[512] = {};
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
      error, 0, text, 512, nullptr);
  std::string narrow = Narrow(std::wstring(text, length));
  narrow.erase(narrow.find_last_not_of(" .\r\n") + 1);
  return narrow.empty() ? "error " + std::to_string(error) : narrow;
}

void HandleCloser::operator()(void* handle) const noexcept {
  if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
}

OutputFile::OutputFile(const std::string& path)
    : path_(path),
      handle_(CreateFileW(Widen(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                          FILE_ATTRIBUTE_NORMAL, nullptr)) {
  if (handle_.get() == INVALID_HANDLE_VALUE) throw CanNotWrite(path, GetLastError());
}

void OutputFile::Write(std::string_view bytes) {
  const SystemError error = WriteBytes(handle_.get(), bytes);
  if (error != ERROR_SUCCESS) throw CanNotWrite(path_, error);
}

}  // namespace tarnwick::host
