#include "host/explain/name_folding.h"

#include "common/wide_text.h"

#include <windows.h>

#include <algorithm>
#include <cwctype>
#include <string_view>
#include <vector>

namespace tarnwick::host {
namespace {

constexpr std::wstring_view kSigns = L"\u2122\u00AE\u00A9\u2120";

// The text itself where Windows can't tell.
std::wstring Decomposed(const std::wstring& text) {
  if (text.empty()) return text;
  const int length = static_cast<int>(text.size());
  // The first answer is an estimate, and a call that finds it too small gives the next one.
  for (int room = NormalizeString(NormalizationKD, text.data(), length, nullptr, 0); room > 0;) {
    std::wstring decomposed(static_cast<size_t>(room), L'\0');
    const int written = NormalizeString(NormalizationKD, text.data(), length, decomposed.data(), room);
    if (written > 0) return decomposed.substr(0, static_cast<size_t>(written));
    room = GetLastError() == ERROR_INSUFFICIENT_BUFFER ? -written : 0;
  }
  return text;
}

void DropMarks(std::wstring& text) {
  std::vector<WORD> types(text.size());
  if (!GetStringTypeW(CT_CTYPE3, text.data(), static_cast<int>(text.size()), types.data())) return;
  size_t at = 0;
  std::erase_if(text, [&](wchar_t) { return (types[at++] & C3_NONSPACING) != 0; });
}

std::wstring WithSingleBlanks(const std::wstring& text) {
  std::wstring single;
  for (const wchar_t unit : text) {
    if (std::iswspace(unit) == 0) {
      single += unit;
    } else if (!single.empty() && single.back() != L' ') {
      single += L' ';
    }
  }
  if (single.ends_with(L' ')) single.pop_back();
  return single;
}

}  // namespace

std::string FoldedName(const std::string& utf8) {
  std::wstring name = common::Wide(utf8, common::Malformed::kReplaced);
  // Before the compatibility form, which makes letters of them.
  std::erase_if(name, [](wchar_t unit) { return kSigns.find(unit) != std::wstring_view::npos; });
  name = Decomposed(name);
  DropMarks(name);
  CharLowerBuffW(name.data(), static_cast<DWORD>(name.size()));
  return common::Narrow(WithSingleBlanks(name));
}

}  // namespace tarnwick::host
