#pragma once
// Files and folders named by UTF-8 texts. All opening and listing goes through wide paths: the narrow forms
// of the standard library take the ANSI code page.

#include "foundation/text.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace tarnwick {

std::filesystem::path PathFromUtf8(const std::string& path);
std::string PathToUtf8(const std::filesystem::path& path);

// GetFileAttributesW: an existing file that is not a folder; an existing folder; either. False for an empty
// path.
bool FileExists(const std::string& path);
bool DirectoryExists(const std::string& path);
bool PathExists(const std::string& path);

// The first of these paths that is an existing file, empty if none is.
std::string FirstExistingFile(const std::vector<std::string>& paths);

// The same questions by the rules of std::filesystem: links are followed, and an error other than "not found"
// throws std::filesystem::filesystem_error.
bool ExistsOrThrow(const std::string& path);
bool IsDirectoryOrThrow(const std::string& path);

// Opens for reading. Text mode applies the platform's translation of line ends. The stream is closed on
// failure.
std::ifstream OpenTextFile(const std::string& path);
std::ifstream OpenBinaryFile(const std::string& path);

// When a file was last written, in 100-nanosecond steps. Throws std::filesystem::filesystem_error.
uint64_t LastWriteTime(const std::filesystem::path& path);

// True for a junction, symbolic link or other reparse point: a recursive walk must not descend into it, or a
// loop of junctions would never end.
bool IsReparsePoint(const std::filesystem::path& path);

// Calls `visit` for each regular file of a folder, in the file system's order; if `recursive`, also for those
// of the folders below, but not of folders behind reparse points. Throws std::filesystem::filesystem_error at
// the first folder that can't be listed: what was visited before counts.
void ForEachFile(const std::filesystem::path& folder, bool recursive,
                 const std::function<void(const std::filesystem::path&)>& visit);

// A folder of the shell by its CSIDL number (SHGetFolderPathA), as UTF-8; empty if the shell refuses.
std::string ShellFolder(int csidl);

// GetFullPathNameA with a buffer of 260 bytes: the full path, or the text itself where the call answers 0 or
// has no room. The bytes pass through the ANSI call unconverted: ASCII comes back as it was everywhere, the
// rest of a UTF-8 text where the code page has a character for each single byte. On double-byte code pages
// some come back changed.
std::string FullPath(const std::string& path);

}  // namespace tarnwick
