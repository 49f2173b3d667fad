#pragma once
// What stands at a path. Narrow paths are UTF-8, except where a function is called narrow: those hand their
// bytes to the ANSI call as they are. An empty path names nothing.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// By attributes (GetFileAttributesW), and quiet: an existing file that is not a folder; an existing folder;
// either.
bool FileExists(const std::string& path);
bool DirectoryExists(const std::string& path);
bool FileOrFolderExists(const std::string& path);

// The first of these paths that is an existing file, empty if none is.
std::string FirstExistingFile(const std::vector<std::string>& paths);

// By attributes, through the ANSI call.
bool NarrowFileExists(const std::string& path);
bool NarrowDirectoryExists(const std::string& path);

// By status: links are followed, and an error other than "not found" throws
// std::filesystem::filesystem_error.
bool ExistsOrThrow(const std::string& path);
bool IsDirectoryOrThrow(const std::string& path);

// As the shell tells it (PathFileExistsW, PathIsDirectoryW, PathFileExistsA).
bool ShellPathExists(const std::wstring& path);
bool ShellFolderExists(const std::wstring& path);
bool NarrowShellPathExists(const std::string& path);

// The bytes of a regular file; nothing if that can't be told.
std::optional<uint64_t> FileSize(const std::string& path);

// When a file was last written, in 100-nanosecond steps. Throws std::filesystem::filesystem_error.
uint64_t LastWriteTime(const std::wstring& path);

// GetFullPathNameA with a buffer of 260 bytes: the full path, or the text itself where the call answers 0 or
// has no room. The bytes pass through the ANSI call unconverted: ASCII comes back as it was everywhere, the
// rest of a UTF-8 text where the code page has a character for each single byte. On double-byte code pages
// some come back changed.
std::string FullPath(const std::string& path);

}  // namespace tarnwick
