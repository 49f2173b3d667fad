// Edge: files and folders.
#include "foundation/files.h"

#include "foundation/conversions.h"
#include "foundation/windows_api.h"

#include <shlobj.h>
#include <sstream>

namespace tarnwick {
namespace {

DWORD Attributes(const std::string& path) {
  return path.empty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(Utf8ToWide(path).c_str());
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

std::ifstream OpenTextFile(const std::string& path) { return std::ifstream(PathFromUtf8(path)); }

std::ifstream OpenBinaryFile(const std::string& path) {
  return std::ifstream(PathFromUtf8(path), std::ios::in | std::ios::binary);
}

std::string ReadAll(std::istream& stream) {
  std::ostringstream text;
  text << stream.rdbuf();
  return std::move(text).str();
}

bool IsReparsePoint(const std::filesystem::path& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
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
