// Edge: path texts by the shell's and the standard library's rules.
#include "foundation/machine/path_rules.h"

#include "foundation/conversions.h"
#include "foundation/windows_api.h"

#include <shlwapi.h>
#include <algorithm>
#include <filesystem>
#include <vector>

namespace tarnwick {
namespace {

std::filesystem::path PathOf(const std::string& path) { return {Utf8ToWide(path)}; }

}  // namespace

std::wstring CombineByShell(const std::wstring& first, const std::wstring& second) {
  // A join that fails leaves the buffer empty, and then the answer is empty.
  wchar_t joined[MAX_PATH] = {};
  PathCombineW(joined, first.c_str(), second.c_str());
  return joined;
}

std::wstring FileNameOf(const std::wstring& path) { return PathFindFileNameW(path.c_str()); }

std::wstring FolderOf(const std::wstring& path, int units) {
  std::vector<wchar_t> folder(static_cast<size_t>(units), L'\0');
  lstrcpynW(folder.data(), path.c_str(), units);
  PathRemoveFileSpecW(folder.data());
  return folder.data();
}

bool ContainsNoCase(const std::wstring& text, std::initializer_list<const wchar_t*> words) {
  return std::any_of(words.begin(), words.end(),
                     [&](const wchar_t* word) { return StrStrIW(text.c_str(), word) != nullptr; });
}

std::wstring ExtensionOf(const std::wstring& path) {
  return std::filesystem::path(path).extension().native();
}

std::string WithoutLastPart(const std::string& path, const std::string& name) {
  const std::filesystem::path whole = PathOf(path);
  return whole.filename() == PathOf(name) ? WideToUtf8(whole.parent_path().native()) : path;
}

std::string JoinParts(const std::string& path, std::initializer_list<const char*> parts) {
  std::filesystem::path joined = PathOf(path);
  for (const char* part : parts) joined /= part;
  return WideToUtf8(joined.native());
}

}  // namespace tarnwick
