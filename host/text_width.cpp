#include "host/text_width.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <vector>

#include "host/console.h"
#include "host/display_width_table.h"

namespace tarnwick::host {
namespace {

constexpr wchar_t kEllipsis = L'\u2026';
constexpr size_t kDrive = 3;  // "C:\" is what a path that has to be cut keeps of its beginning

struct Character {
  char32_t code;
  size_t units;
};

Character CharacterAt(const std::wstring& text, size_t at) {
  const char32_t first = text[at];
  if (first < 0xD800 || first > 0xDBFF || at + 1 == text.size()) return {first, 1};
  return {0x10000 + ((first - 0xD800) << 10) + (static_cast<char32_t>(text[at + 1]) - 0xDC00), 2};
}

size_t ColumnsOf(char32_t code) {
  const auto range = std::lower_bound(std::begin(kWidthRanges), std::end(kWidthRanges), code,
                                      [](const WidthRange& r, char32_t wanted) { return r.last < wanted; });
  return range != std::end(kWidthRanges) && range->first <= code ? range->columns : 1;
}

bool ActsOnTheTerminal(wchar_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || (unit >= 0x2028 && unit <= 0x202E) ||
         (unit >= 0x2066 && unit <= 0x2069);
}

// The columns of each UTF-16 unit; the second half of a pair has none.
std::vector<size_t> ColumnsOfUnits(const std::wstring& text) {
  std::vector<size_t> columns(text.size());
  for (size_t at = 0; at < text.size();) {
    const Character character = CharacterAt(text, at);
    columns[at] = ColumnsOf(character.code);
    at += character.units;
  }
  return columns;
}

size_t Sum(const std::vector<size_t>& columns, size_t from = 0) {
  return std::accumulate(columns.begin() + static_cast<std::ptrdiff_t>(from), columns.end(), size_t{0});
}

// How many units of the beginning fit. Marks go with the character that they are drawn on.
size_t UnitsThatFit(const std::vector<size_t>& columns, size_t room) {
  size_t count = 0;
  for (size_t taken = 0; count < columns.size() && taken + columns[count] <= room; ++count)
    taken += columns[count];
  return count;
}

// Where the longest end begins that fits, which is not at a mark.
size_t BeginOfEnd(const std::vector<size_t>& columns, size_t room) {
  size_t begin = columns.size();
  size_t taken = 0;
  for (size_t at = columns.size(); at > 0 && taken + columns[at - 1] <= room; --at) {
    taken += columns[at - 1];
    if (columns[at - 1] > 0) begin = at - 1;
  }
  return begin;
}

}  // namespace

size_t DisplayColumns(const std::string& text) { return Sum(ColumnsOfUnits(Widen(text))); }

size_t ConsoleCells(const std::string& text) {
  const std::wstring wide = Widen(text);
  size_t cells = 0;
  for (size_t at = 0; at < wide.size();) {
    const Character character = CharacterAt(wide, at);
    cells += std::max(ColumnsOf(character.code), character.units);
    at += character.units;
  }
  return cells;
}

std::string PrintableText(const std::string& text) {
  std::wstring wide = Widen(text);
  std::replace_if(wide.begin(), wide.end(), ActsOnTheTerminal, L' ');
  return Narrow(wide);
}

std::string CutEnd(const std::string& text, size_t columns) {
  const std::wstring wide = Widen(text);
  const std::vector<size_t> units = ColumnsOfUnits(wide);
  if (Sum(units) <= columns) return text;
  if (columns == 0) return {};
  return Narrow(wide.substr(0, UnitsThatFit(units, columns - 1)) + kEllipsis);
}

std::string CutMiddle(const std::string& path, size_t columns) {
  const std::wstring wide = Widen(path);
  const std::vector<size_t> units = ColumnsOfUnits(wide);
  if (Sum(units) <= columns) return path;
  if (columns == 0) return {};
  const size_t room = columns - 1;
  const size_t separator = std::min(wide.find_last_of(L"\\/"), wide.size());
  const size_t end = BeginOfEnd(units, std::min(Sum(units, separator), room - std::min(room, kDrive)));
  const size_t beginning = UnitsThatFit(units, room - Sum(units, end));
  return Narrow(wide.substr(0, beginning) + kEllipsis + wide.substr(end));
}

}  // namespace tarnwick::host
