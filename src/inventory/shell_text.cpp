// Edge: the shell's own path operations.
#include "inventory/shell_text.h"

#include "foundation/windows_api.h"

#include <shlwapi.h>
#include <algorithm>
#include <vector>

namespace tarnwick {

bool ContainsNoCase(const std::wstring& text, std::initializer_list<const wchar_t*> words) {
  return std::any_of(words.begin(), words.end(),
                     [&](const wchar_t* word) { return StrStrIW(text.c_str(), word) != nullptr; });
}

std::wstring UnquotedHead(const std::wstring& text) {
  if (text.empty() || text.front() != L'"') return text;
  const size_t end = text.find(L'"', 1);
  return end == std::wstring::npos ? text : text.substr(1, end - 1);
}

std::wstring ExpandVariables(const std::wstring& text, uint32_t units) {
  std::vector<wchar_t> expanded(units + size_t{1}, L'\0');
  const DWORD needed = ExpandEnvironmentStringsW(text.c_str(), expanded.data(), units);
  return needed == 0 || needed > units ? text : std::wstring(expanded.data());
}

bool PathExists(const std::wstring& path) { return !path.empty() && PathFileExistsW(path.c_str()) != FALSE; }

bool IsDirectory(const std::wstring& path) {
  return !path.empty() && PathIsDirectoryW(path.c_str()) != FALSE;
}

std::wstring FileNameOf(const std::wstring& path) { return PathFindFileNameW(path.c_str()); }

std::wstring FolderOf(const std::wstring& path, int units) {
  std::vector<wchar_t> folder(static_cast<size_t>(units), L'\0');
  lstrcpynW(folder.data(), path.c_str(), units);
  PathRemoveFileSpecW(folder.data());
  return folder.data();
}

}  // namespace tarnwick
