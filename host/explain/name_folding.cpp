#include "host/explain/name_folding.h"

#include "common/wide_text.h"
#include "foundation/windows_api.h"
#include "host/edit_distance.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

namespace tarnwick::host {
namespace {

std::wstring WideName(const std::string& name) { return common::Wide(name, common::Malformed::kReplaced); }

std::wstring Decomposed(const std::wstring& text) {
  if (text.empty()) return text;
  const int length = static_cast<int>(text.size());
  const int room = NormalizeString(NormalizationKD, text.data(), length, nullptr, 0);
  std::wstring decomposed(static_cast<size_t>(std::max(room, 0)), L'\0');
  const int made = NormalizeString(NormalizationKD, text.data(), length, decomposed.data(), room);
  if (made <= 0) return text;
  decomposed.resize(static_cast<size_t>(made));
  return decomposed;
}

bool IsMark(wchar_t unit) {
  WORD type = 0;
  return GetStringTypeW(CT_CTYPE3, &unit, 1, &type) && (type & (C3_NONSPACING | C3_DIACRITIC)) != 0 &&
         (type & C3_ALPHA) == 0 && unit >= 0x300;
}

std::wstring Folded(std::wstring text) {
  text = Decomposed(text);
  std::erase_if(text, IsMark);
  CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

bool IsTrademark(wchar_t unit) {
  return unit == 0x2122 || unit == 0x2120 || unit == 0x00AE || unit == 0x00A9;
}

constexpr const wchar_t* kRoman[] = {L"i",  L"ii", L"iii", L"iv",  L"v",    L"vi",  L"vii", L"viii",
                                     L"ix", L"x",  L"xi",  L"xii", L"xiii", L"xiv", L"xv",  L"xvi"};

std::wstring Arabic(const std::wstring& word) {
  const auto found = std::find(std::begin(kRoman), std::end(kRoman), word);
  return found == std::end(kRoman) ? word : std::to_wstring(found - std::begin(kRoman) + 1);
}

std::u32string CodePoints(const std::string& text) {
  std::u32string points;
  const std::wstring wide = WideName(text);
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

std::string FoldedName(const std::string& name) { return common::Narrow(Folded(WideName(name))); }

std::string LooseName(const std::string& name) {
  std::wstring text = WideName(name);
  std::erase_if(text, IsTrademark);
  std::wistringstream words(Folded(text));
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
