// Edge: files and folders.
#include "foundation/files.h"

#include "foundation/conversions.h"
#include "foundation/owner.h"
#include "foundation/windows_api.h"

#include <shlobj.h>
#include <algorithm>
#include <iterator>
#include <system_error>

namespace tarnwick {
namespace {

DWORD Attributes(const std::string& path) {
  return path.empty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(Utf8ToWide(path).c_str());
}

// The errors that mean no more than that nothing of this name is there.
bool MeansNotFound(DWORD error) {
  constexpr DWORD kNotFound[] = {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_INVALID_DRIVE,
                                 ERROR_BAD_NETPATH,    ERROR_BAD_NET_NAME,   ERROR_INVALID_NAME,
                                 ERROR_BAD_PATHNAME,   ERROR_DIRECTORY};
  return std::find(std::begin(kNotFound), std::end(kNotFound), error) != std::end(kNotFound);
}

[[noreturn]] void ThrowFilesystemError(const char* what, const std::filesystem::path& path, DWORD error) {
  throw std::filesystem::filesystem_error(what, path,
                                          std::error_code(static_cast<int>(error), std::system_category()));
}

// The attributes of what a link leads to, or INVALID_FILE_ATTRIBUTES with the last error set.
DWORD AttributesBehindLink(const std::wstring& path) {
  HANDLE opened =
      CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return INVALID_FILE_ATTRIBUTES;
  const Handle file(opened);
  BY_HANDLE_FILE_INFORMATION information = {};
  return GetFileInformationByHandle(file.Get(), &information) ? information.dwFileAttributes
                                                              : INVALID_FILE_ATTRIBUTES;
}

// The standard library's own status knows one error on this platform, "not found", whatever went wrong; hence
// this.
DWORD StatusOrThrow(const std::string& path) {
  if (path.empty()) return INVALID_FILE_ATTRIBUTES;
  const std::wstring wide = Utf8ToWide(path);
  DWORD attributes = GetFileAttributesW(wide.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    attributes = AttributesBehindLink(wide);
  }
  if (attributes != INVALID_FILE_ATTRIBUTES) return attributes;
  const DWORD error = GetLastError();
  if (!MeansNotFound(error)) ThrowFilesystemError("status", wide, error);
  return INVALID_FILE_ATTRIBUTES;
}

}  // namespace

std::filesystem::path PathFromUtf8(const std::string& path) { return {Utf8ToWide(path)}; }

std::string PathToUtf8(const std::filesystem::path& path) { return WideToUtf8(path.native()); }

bool FileExists(const std::string& path) {
  const DWORD attributes = Attributes(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool DirectoryExists(const std::string& path) {
  const DWORD attributes = Attributes(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool PathExists(const std::string& path) { return Attributes(path) != INVALID_FILE_ATTRIBUTES; }

std::string FirstExistingFile(const std::vector<std::string>& paths) {
  const auto found = std::find_if(paths.begin(), paths.end(), FileExists);
  return found == paths.end() ? std::string() : *found;
}

bool ExistsOrThrow(const std::string& path) { return StatusOrThrow(path) != INVALID_FILE_ATTRIBUTES; }

bool IsDirectoryOrThrow(const std::string& path) {
  const DWORD attributes = StatusOrThrow(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::ifstream OpenTextFile(const std::string& path) { return std::ifstream(PathFromUtf8(path)); }

std::ifstream OpenBinaryFile(const std::string& path) {
  return std::ifstream(PathFromUtf8(path), std::ios::in | std::ios::binary);
}

uint64_t LastWriteTime(const std::filesystem::path& path) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
    ThrowFilesystemError("last write time", path, GetLastError());
  }
  return static_cast<uint64_t>(data.ftLastWriteTime.dwHighDateTime) << 32 |
         data.ftLastWriteTime.dwLowDateTime;
}

bool IsReparsePoint(const std::filesystem::path& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

void ForEachFile(const std::filesystem::path& folder, bool recursive,
                 const std::function<void(const std::filesystem::path&)>& visit) {
  std::filesystem::recursive_directory_iterator entry(folder);
  for (; entry != std::filesystem::recursive_directory_iterator(); ++entry) {
    if (entry->is_regular_file()) visit(entry->path());
    if (!recursive || IsReparsePoint(entry->path())) entry.disable_recursion_pending();
  }
}

std::string ShellFolder(int csidl) {
  char folder[MAX_PATH] = {};
  if (SHGetFolderPathA(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, folder) != S_OK) return {};
  return AnsiToUtf8(folder);
}

std::string FullPath(const std::string& path) {
  char full[MAX_PATH] = {};
  const DWORD length = GetFullPathNameA(path.c_str(), MAX_PATH, full, nullptr);
  return length == 0 || length >= MAX_PATH ? path : std::string(full, length);
}

}  // namespace tarnwick
