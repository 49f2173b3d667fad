// Edge: attributes, status, times and full forms of paths.
#include "foundation/machine/paths.h"

#include "foundation/conversions.h"
#include "foundation/machine/observer.h"
#include "foundation/owner.h"

#include <shlwapi.h>
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace tarnwick {
namespace {

using machine::AskMachine;

std::string TextOf(const std::string& path) { return path; }
std::string TextOf(const std::wstring& path) { return WideToUtf8(path); }

bool IsFolder(DWORD attributes) {
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsFile(DWORD attributes) {
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

Answer TellAttributes(DWORD attributes) {
  if (attributes == INVALID_FILE_ATTRIBUTES) return {false, "error " + std::to_string(GetLastError())};
  return {true, IsFolder(attributes) ? "folder" : "file"};
}

Answer TellThere(bool there) { return {there, there ? "there" : "not there"}; }

// `call` is put under the question's name; `way` tells apart which call it is.
template <class Path, class Call>
DWORD AskAttributes(const Path& path, const char* way, Call&& call) {
  return AskMachine([&] { return Question{QuestionKind::kAttributes, TextOf(path), way, {}, {}}; },
                    [] { return INVALID_FILE_ATTRIBUTES; }, [&] { return call(path.c_str()); },
                    TellAttributes);
}

template <class Path, class Call>
bool AskShell(const Path& path, const char* way, Call&& call) {
  return AskMachine([&] { return Question{QuestionKind::kAttributes, TextOf(path), way, {}, {}}; },
                    [] { return false; }, [&] { return call(path.c_str()) != FALSE; }, TellThere);
}

DWORD Attributes(const std::string& path) {
  return path.empty() ? INVALID_FILE_ATTRIBUTES : AskAttributes(Utf8ToWide(path), "", GetFileAttributesW);
}

DWORD NarrowAttributes(const std::string& path) { return AskAttributes(path, "narrow", GetFileAttributesA); }

// The errors that mean no more than that nothing of this name is there.
bool MeansNotFound(DWORD error) {
  constexpr DWORD kNotFound[] = {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_INVALID_DRIVE,
                                 ERROR_BAD_NETPATH,    ERROR_BAD_NET_NAME,   ERROR_INVALID_NAME,
                                 ERROR_BAD_PATHNAME,   ERROR_DIRECTORY};
  return std::find(std::begin(kNotFound), std::end(kNotFound), error) != std::end(kNotFound);
}

[[noreturn]] void ThrowFilesystemError(const char* what, const std::wstring& path, DWORD error) {
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

// Instead of std::filesystem::status: libstdc++'s on Windows reports every error as "not found".
DWORD FollowedAttributes(const std::wstring& path) {
  DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    attributes = AttributesBehindLink(path);
  }
  if (attributes != INVALID_FILE_ATTRIBUTES) return attributes;
  const DWORD error = GetLastError();
  if (!MeansNotFound(error)) ThrowFilesystemError("status", path, error);
  return INVALID_FILE_ATTRIBUTES;
}

DWORD StatusOrThrow(const std::string& path) {
  if (path.empty()) return INVALID_FILE_ATTRIBUTES;
  const std::wstring wide = Utf8ToWide(path);
  return AskMachine([&] { return Question{QuestionKind::kStatus, path, "", {}, {}}; },
                    [&]() -> DWORD { ThrowFilesystemError("status", wide, ERROR_ACCESS_DENIED); },
                    [&] { return FollowedAttributes(wide); }, TellAttributes);
}

std::optional<uint64_t> AskFileSize(const std::wstring& path) {
  std::error_code error;
  const uintmax_t size = std::filesystem::file_size(path, error);
  return error ? std::nullopt : std::optional<uint64_t>(size);
}

uint64_t AskWriteTime(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
    ThrowFilesystemError("last write time", path, GetLastError());
  }
  return static_cast<uint64_t>(data.ftLastWriteTime.dwHighDateTime) << 32 |
         data.ftLastWriteTime.dwLowDateTime;
}

std::string AskFullPath(const std::string& path) {
  char full[MAX_PATH] = {};
  const DWORD length = GetFullPathNameA(path.c_str(), MAX_PATH, full, nullptr);
  return length == 0 || length >= MAX_PATH ? path : std::string(full, length);
}

}  // namespace

bool FileExists(const std::string& path) { return IsFile(Attributes(path)); }

bool DirectoryExists(const std::string& path) { return IsFolder(Attributes(path)); }

bool FileOrFolderExists(const std::string& path) { return Attributes(path) != INVALID_FILE_ATTRIBUTES; }

std::string FirstExistingFile(const std::vector<std::string>& paths) {
  const auto found = std::find_if(paths.begin(), paths.end(), FileExists);
  return found == paths.end() ? std::string() : *found;
}

bool NarrowFileExists(const std::string& path) { return IsFile(NarrowAttributes(path)); }

bool NarrowDirectoryExists(const std::string& path) { return IsFolder(NarrowAttributes(path)); }

bool ExistsOrThrow(const std::string& path) { return StatusOrThrow(path) != INVALID_FILE_ATTRIBUTES; }

bool IsDirectoryOrThrow(const std::string& path) { return IsFolder(StatusOrThrow(path)); }

bool ShellPathExists(const std::wstring& path) {
  return !path.empty() && AskShell(path, "shell", PathFileExistsW);
}

bool ShellFolderExists(const std::wstring& path) {
  return !path.empty() && AskShell(path, "shell, folder", PathIsDirectoryW);
}

bool NarrowShellPathExists(const std::string& path) {
  return AskShell(path, "shell, narrow", PathFileExistsA);
}

std::optional<uint64_t> FileSize(const std::string& path) {
  return AskMachine([&] { return Question{QuestionKind::kFileSize, path, "", {}, {}}; },
                    [] { return std::optional<uint64_t>(); }, [&] { return AskFileSize(Utf8ToWide(path)); },
                    [](const auto& size) {
                      return size ? Answer{true, std::to_string(*size)} : Answer{false, "not known"};
                    });
}

uint64_t LastWriteTime(const std::wstring& path) {
  return AskMachine([&] { return Question{QuestionKind::kWriteTime, TextOf(path), "", {}, {}}; },
                    [&]() -> uint64_t { ThrowFilesystemError("last write time", path, ERROR_ACCESS_DENIED); },
                    [&] { return AskWriteTime(path); },
                    [](uint64_t time) { return Answer{true, std::to_string(time)}; });
}

std::string FullPath(const std::string& path) {
  return AskMachine([&] { return Question{QuestionKind::kFullPath, path, "", {}, {}}; }, [&] { return path; },
                    [&] { return AskFullPath(path); }, machine::TellText);
}

}  // namespace tarnwick
