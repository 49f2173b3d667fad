#include "host/input_file.h"

#include "foundation/owner.h"

#include <algorithm>
#include <vector>

#include "host/console.h"

namespace tarnwick::host {
namespace {

struct FaultText {
  FileFault fault;
  const char* text;
};

constexpr FaultText kFaultTexts[] = {
    {FileFault::kMissing, " does not exist; check the path"},
    {FileFault::kFolder, " is a folder; name a file in it"},
    {FileFault::kInUse, " is locked by another program; close that program, then try again"},
    {FileFault::kDenied, " may not be read by this user; ask for the right to read it"},
    {FileFault::kUnreadable, " can't be read; check the path and the disk"},
};

struct ErrorFault {
  DWORD error;
  FileFault fault;
};

constexpr ErrorFault kErrorFaults[] = {
    {ERROR_SUCCESS, FileFault::kNone},
    {ERROR_FILE_NOT_FOUND, FileFault::kMissing},
    {ERROR_PATH_NOT_FOUND, FileFault::kMissing},
    {ERROR_INVALID_NAME, FileFault::kMissing},
    {ERROR_BAD_PATHNAME, FileFault::kMissing},
    {ERROR_INVALID_DRIVE, FileFault::kMissing},
    {ERROR_BAD_NETPATH, FileFault::kMissing},
    {ERROR_BAD_NET_NAME, FileFault::kMissing},
    {ERROR_SHARING_VIOLATION, FileFault::kInUse},
    {ERROR_LOCK_VIOLATION, FileFault::kInUse},
    {ERROR_ACCESS_DENIED, FileFault::kDenied},
};

// No handle where the file can't be opened; GetLastError() then tells why.
Handle OpenShared(const std::string& path, DWORD access) {
  const HANDLE opened =
      CreateFileW(Widen(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  return Handle(opened == INVALID_HANDLE_VALUE ? nullptr : opened);
}

bool IsFolder(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION information{};
  return GetFileInformationByHandle(file, &information) != 0 &&
         (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

InputFile ReadOpened(HANDLE file) {
  InputFile read;
  std::vector<char> piece(1 << 20);
  for (;;) {
    DWORD count = 0;
    if (!ReadFile(file, piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr))
      return {FaultOfWindowsError(GetLastError()), {}};
    if (count == 0) return read;
    read.bytes.append(piece.data(), count);
  }
}

// The one path that the system itself has for an opened file.
std::wstring FinalPath(HANDLE file) {
  std::wstring path(32768, L'\0');
  path.resize(GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0));
  return path;
}

bool SameIdentity(HANDLE first, HANDLE second) {
  BY_HANDLE_FILE_INFORMATION a{};
  BY_HANDLE_FILE_INFORMATION b{};
  return GetFileInformationByHandle(first, &a) && GetFileInformationByHandle(second, &b) &&
         a.dwVolumeSerialNumber == b.dwVolumeSerialNumber && a.nFileIndexHigh == b.nFileIndexHigh &&
         a.nFileIndexLow == b.nFileIndexLow;
}

}  // namespace

InputFile ReadInputFile(const std::string& path) {
  const Handle file = OpenShared(path, GENERIC_READ);
  if (!file) return {FaultOfWindowsError(GetLastError()), {}};
  if (IsFolder(file.Get())) return {FileFault::kFolder, {}};
  return ReadOpened(file.Get());
}

FileFault FaultOfWindowsError(uint32_t error) {
  const auto* const row = std::ranges::find(kErrorFaults, error, &ErrorFault::error);
  return row == std::end(kErrorFaults) ? FileFault::kUnreadable : row->fault;
}

std::string ExplainFault(const std::string& path, FileFault fault) {
  const auto* const row = std::ranges::find(kFaultTexts, fault, &FaultText::fault);
  return row == std::end(kFaultTexts) ? std::string() : path + row->text;
}

bool IsSameFile(const std::string& first, const std::string& second) {
  const Handle a = OpenShared(first, 0);
  const Handle b = OpenShared(second, 0);
  if (!a || !b) return false;
  // Two drives may show one disk, each with a serial number of its own.
  return SameIdentity(a.Get(), b.Get()) || FinalPath(a.Get()) == FinalPath(b.Get());
}

}  // namespace tarnwick::host
