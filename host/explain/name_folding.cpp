#include "host/explain/name_folding.h"

#include "common/wide_text.h"
#include "foundation/windows_api.h"
#include "host/edit_distance.h"

#include <algorithm>
#include <cwctype>
#include <iterator>
#include <sstream>
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

constexpr const wchar_t* kRoman[] = {L"i",  L"ii", L"iii", L"iv",  L"v",    L"vi",  L"vii", L"viii",
                                     L"ix", L"x",  L"xi",  L"xii", L"xiii", L"xiv", L"xv",  L"xvi"};

std::wstring Arabic(const std::wstring& word) {
  const auto found = std::find(std::begin(kRoman), std::end(kRoman), word);
  return found == std::end(kRoman) ? word : std::to_wstring(found - std::begin(kRoman) + 1);
}

std::u32string CodePoints(const std::string& text) {
  std::u32string points;
  const std::wstring wide = common::Wide(text, common::Malformed::kReplaced);
  for (size_t i = 0; i < wide.size(); ++i) {
    char32_t point = wide[i];
    const bool pair = point >= 0xD800 && point < 0xDC00 && i + 1 < wide.size();
    if (pair) point = 0x10000 + ((point - 0xD800) << 10) + (static_cast<char32_t>(wide[++i]) - 0xDC00);
    points += point;
  }
  return points;
}

std::u32string DigitsOf(std::u32string text) {
  std::erase_if(text, [](char32_t point) { return point < U'0' || point > U'9'; });
  return text;
}

size_t Difference(size_t a, size_t b) { return a < b ? b - a : a - b; }

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

std::string LooseName(const std::string& name) {
  std::wistringstream words(common::Wide(FoldedName(name)));
  std::wstring loose;
  for (std::wstring word; words >> word;) loose += loose.empty() ? word : Arabic(word);
  return common::Narrow(loose);
}

bool AreNear(const std::string& looseName, const std::string& otherLooseName) {
  constexpr size_t kShortest = 4;
  if (looseName == otherLooseName) return true;
  if (Difference(looseName.size(), otherLooseName.size()) > 4) return false;
  const std::u32string one = CodePoints(looseName);
  const std::u32string other = CodePoints(otherLooseName);
  if (std::min(one.size(), other.size()) < kShortest || Difference(one.size(), other.size()) > 1)
    return false;
  return DigitsOf(one) == DigitsOf(other) && EditDistance(one, other) == 1;
}

}  // namespace tarnwick::host
