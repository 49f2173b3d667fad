#pragma once
// Windows' and the standard library's own rules for the text of paths and command lines. They ask the machine
// nothing; they stand here because no other part of the library sees those interfaces.

#include <initializer_list>
#include <string>

namespace tarnwick {

// PathCombineW into 260 characters. Empty where the join fails.
std::wstring CombineByShell(const std::wstring& first, const std::wstring& second);

// The path's last part (PathFindFileNameW).
std::wstring FileNameOf(const std::wstring& path);

// The first units - 1 characters of the path without their last part (lstrcpynW into `units` wide characters,
// then PathRemoveFileSpecW): a longer path loses what lies behind, too.
std::wstring FolderOf(const std::wstring& path, int units);

// True if the text holds any of the words, without regard to case (StrStrIW).
bool ContainsNoCase(const std::wstring& text, std::initializer_list<const wchar_t*> words);

// By std::filesystem's rules. The extension has its dot; a name that begins with its only dot has none.
std::wstring ExtensionOf(const std::wstring& path);

// A path in UTF-8 without its last part, if that is `name`; otherwise the path itself.
std::string WithoutLastPart(const std::string& path, const std::string& name);

// Joined by backslashes where there is none.
std::string JoinParts(const std::string& path, std::initializer_list<const char*> parts);

}  // namespace tarnwick
