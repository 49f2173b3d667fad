#pragma once
// Small operations on command lines and paths, as the shell reads them.

#include <cstdint>
#include <initializer_list>
#include <string>

namespace tarnwick {

// True if the text holds any of the words, without regard to case (StrStrIW).
bool ContainsNoCase(const std::wstring& text, std::initializer_list<const wchar_t*> words);

// Where the text begins with a double quote and has a second one: what stands between them. Otherwise the
// text.
std::wstring UnquotedHead(const std::wstring& text);

// Environment variables expanded into `units` wide characters; the text itself if that fails or has no room.
std::wstring ExpandVariables(const std::wstring& text, uint32_t units);

// Both false for an empty path (PathFileExistsW, PathIsDirectoryW).
bool PathExists(const std::wstring& path);
bool IsDirectory(const std::wstring& path);

// The path's last part (PathFindFileNameW).
std::wstring FileNameOf(const std::wstring& path);

// The first units - 1 characters of the path without their last part (lstrcpynW into `units` wide characters,
// then PathRemoveFileSpecW): a longer path loses what lies behind, too.
std::wstring FolderOf(const std::wstring& path, int units);

}  // namespace tarnwick
