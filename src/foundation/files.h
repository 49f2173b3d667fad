#pragma once
// Files and folders named by UTF-8 texts. All opening and listing goes through wide paths: the narrow forms of the
// standard library take the ANSI code page.

#include <filesystem>
#include <fstream>
#include <string>

namespace tarnwick {

std::filesystem::path PathFromUtf8(const std::string& path);
std::string PathToUtf8(const std::filesystem::path& path);

// GetFileAttributesW: an existing file that is not a folder; an existing folder; either. False for an empty path.
bool FileExists(const std::string& path);
bool DirectoryExists(const std::string& path);
bool PathExists(const std::string& path);

// Opens for reading. Text mode applies the platform's translation of line ends. The stream is closed on failure.
std::ifstream OpenTextFile(const std::string& path);
std::ifstream OpenBinaryFile(const std::string& path);

// The rest of an open stream as one text.
std::string ReadAll(std::istream& stream);

// True for a junction, symbolic link or other reparse point: a recursive walk must not descend into it, or a loop
// of junctions would never end.
bool IsReparsePoint(const std::filesystem::path& path);

// A folder of the shell by its CSIDL number (SHGetFolderPathA), as UTF-8; empty if the shell refuses.
std::string ShellFolder(int csidl);

// GetFullPathNameA with a buffer of 260 bytes: the full path, or the text itself where the call answers 0 or has no
// room. The bytes pass through the ANSI call unconverted, so that every byte of a UTF-8 text comes back.
std::string FullPath(const std::string& path);

}  // namespace tarnwick
