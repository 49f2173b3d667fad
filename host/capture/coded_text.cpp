// Edge, since letter case and the ANSI code page are the system's.
#include "host/capture/coded_text.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>

namespace tarnwick::host {
namespace {

constexpr char32_t kUnknown = 0xFFFFFFFF;  // equals no character

struct Found {
  char32_t character = kUnknown;
  size_t units = 1;
};

// Bytes or 16-bit units, by the coding.
struct Units {
  std::string_view bytes;
  size_t width;

  size_t size() const { return bytes.size() / width; }
  char32_t operator[](size_t index) const {
    const auto low = static_cast<unsigned char>(bytes[index * width]);
    if (width == 1) return low;
    return low | static_cast<char32_t>(static_cast<unsigned char>(bytes[index * width + 1])) << 8;
  }
};

int HexDigit(char32_t unit) {
  if (unit >= '0' && unit <= '9') return static_cast<int>(unit - '0');
  const char32_t lower = unit | 0x20;
  return unit < 0x80 && lower >= 'a' && lower <= 'f' ? static_cast<int>(lower - 'a') + 10 : -1;
}

// `count` hexadecimal digits from `at` on; -1 if there are not so many.
int HexNumber(const Units& units, size_t at, size_t count) {
  int number = 0;
  for (size_t i = at; i < at + count; ++i) {
    const int digit = i < units.size() ? HexDigit(units[i]) : -1;
    if (digit < 0) return -1;
    number = number * 16 + digit;
  }
  return number;
}

bool IsHigh(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLow(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }
char32_t Paired(char32_t high, char32_t low) { return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00); }

std::optional<char32_t> EscapeAt(const Units& units, size_t at) {
  if (at + 6 > units.size() || units[at] != '\\' || units[at + 1] != 'u') return std::nullopt;
  const int number = HexNumber(units, at + 2, 4);
  return number < 0 ? std::nullopt : std::optional(static_cast<char32_t>(number));
}

std::optional<Found> Escaped(const Units& units, size_t at) {
  const std::optional<char32_t> first = EscapeAt(units, at);
  if (!first || IsLow(*first)) return std::nullopt;
  if (!IsHigh(*first)) return Found{*first, 6};
  const std::optional<char32_t> second = EscapeAt(units, at + 6);
  if (!second || !IsLow(*second)) return std::nullopt;
  return Found{Paired(*first, *second), 12};
}

struct Lead {
  int mask;
  int value;
  size_t length;
  char32_t least;  // what shorter forms could not hold
};
constexpr Lead kLeads[] = {
    {0x80, 0x00, 1, 0}, {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};

// One character of UTF-8, whose i-th byte `byteAt` gives, or a negative number behind the end.
template <class ByteAt>
std::optional<Found> Utf8Character(ByteAt&& byteAt) {
  const int first = byteAt(0);
  const Lead* const lead =
      std::ranges::find_if(kLeads, [&](const Lead& one) { return (first & one.mask) == one.value; });
  if (first < 0 || lead == std::end(kLeads)) return std::nullopt;
  auto character = static_cast<char32_t>(lead->length == 1 ? first : first & ~lead->mask & 0xFF);
  for (size_t i = 1; i < lead->length; ++i) {
    const int next = byteAt(i);
    if (next < 0 || (next & 0xC0) != 0x80) return std::nullopt;
    character = character << 6 | static_cast<char32_t>(next & 0x3F);
  }
  if (character < lead->least || character > 0x10FFFF || IsHigh(character) || IsLow(character))
    return std::nullopt;
  return Found{character, lead->length};
}

std::optional<Found> PercentCoded(const Units& units, size_t at) {
  std::optional<Found> found = Utf8Character([&](size_t i) {
    const size_t place = at + 3 * i;
    return place < units.size() && units[place] == '%' ? HexNumber(units, place + 1, 2) : -1;
  });
  if (found) found->units *= 3;
  return found;
}

std::array<wchar_t, 128> AnsiUpperHalf() {
  std::array<wchar_t, 128> half{};
  for (size_t i = 0; i < half.size(); ++i) {
    const char byte = static_cast<char>(i + 128);
    MultiByteToWideChar(CP_ACP, 0, &byte, 1, &half[i], 1);
  }
  return half;
}

const std::array<wchar_t, 128>& AnsiLetters() {
  static const std::array<wchar_t, 128> half = AnsiUpperHalf();
  return half;
}

Found RawUtf8(const Units& units, size_t at) {
  const auto found =
      Utf8Character([&](size_t i) { return at + i < units.size() ? static_cast<int>(units[at + i]) : -1; });
  return found ? *found : Found{AnsiLetters()[units[at] - 0x80], 1};
}

Found RawUtf16(const Units& units, size_t at) {
  const char32_t unit = units[at];
  if (!IsHigh(unit)) return {IsLow(unit) ? kUnknown : unit, 1};
  const bool paired = at + 1 < units.size() && IsLow(units[at + 1]);
  return paired ? Found{Paired(unit, units[at + 1]), 2} : Found{kUnknown, 1};
}

Found CharacterAt(const Units& units, size_t at) {
  if (units[at] == '\\') {
    if (const auto escaped = Escaped(units, at)) return *escaped;
  } else if (units[at] == '%') {
    if (const auto coded = PercentCoded(units, at)) return *coded;
  }
  return units.width == 1 ? RawUtf8(units, at) : RawUtf16(units, at);
}

std::u16string Utf16Of(char32_t character) {
  if (character < 0x10000) return {static_cast<char16_t>(character)};
  const char32_t rest = character - 0x10000;
  return {static_cast<char16_t>(0xD800 + (rest >> 10)), static_cast<char16_t>(0xDC00 + (rest & 0x3FF))};
}

std::string Utf8Of(char32_t character) {
  if (character < 0x80) return {static_cast<char>(character)};
  const size_t length = character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
  std::string bytes(length, '\0');
  for (size_t i = length - 1; i > 0; --i, character >>= 6)
    bytes[i] = static_cast<char>(0x80 | (character & 0x3F));
  bytes[0] = static_cast<char>(static_cast<char32_t>(kLeads[length - 1].value) | character);
  return bytes;
}

std::string Hexed(const char* prefix, uint32_t number, int digits) {
  std::string text = prefix;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) text += "0123456789abcdef"[number >> shift & 15];
  return text;
}

std::string EscapedForm(char32_t character) {
  std::string text;
  for (const char16_t unit : Utf16Of(character)) text += Hexed("\\u", unit, 4);
  return text;
}

std::string PercentForm(char32_t character) {
  std::string text;
  for (const char byte : Utf8Of(character)) text += Hexed("%", static_cast<unsigned char>(byte), 2);
  return text;
}

std::string AnsiForm(char32_t character) {
  const auto& letters = AnsiLetters();
  const auto* const found = std::ranges::find(letters, static_cast<wchar_t>(character));
  return found == letters.end() ? "x" : std::string(1, static_cast<char>(found - letters.begin() + 128));
}

// The bytes of `text`, each as a unit of its own.
std::string Widened(const std::string& text) {
  std::string wide;
  for (const char byte : text) wide.append({byte, '\0'});
  return wide;
}

std::string RawUtf16Form(char32_t character) {
  std::string bytes;
  for (const char16_t unit : Utf16Of(character))
    bytes.append({static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)});
  return bytes;
}

// `character` in the form that `old` has.
std::string InFormOf(std::string_view old, Coding coding, char32_t character) {
  const bool wide = coding == Coding::kUtf16;
  const bool spelled = old.size() >= 3 && (!wide || old.size() > 4);
  if (spelled && (old[0] == '\\' || old[0] == '%')) {
    const std::string text = old[0] == '%' ? PercentForm(character) : EscapedForm(character);
    return wide ? Widened(text) : text;
  }
  if (wide) return RawUtf16Form(character);
  const bool ansi = old.size() == 1 && static_cast<unsigned char>(old[0]) >= 0x80;
  return ansi ? AnsiForm(character) : Utf8Of(character);
}

std::string Filled(size_t bytes, Coding coding) {
  return coding == Coding::kUtf8 ? std::string(bytes, 'x') : Widened(std::string(bytes / 2, 'x'));
}

using CaseTable = std::vector<char16_t>;

CaseTable TableOf(wchar_t*(WINAPI* convert)(wchar_t*)) {
  CaseTable table(0x10000);
  for (size_t unit = 0; unit < table.size(); ++unit) {
    const bool surrogate = IsHigh(static_cast<char32_t>(unit)) || IsLow(static_cast<char32_t>(unit));
    const auto converted = reinterpret_cast<uintptr_t>(convert(reinterpret_cast<wchar_t*>(unit)));
    table[unit] = static_cast<char16_t>(surrogate ? unit : converted);
  }
  return table;
}

char32_t Converted(const CaseTable& table, char32_t character) {
  return character < table.size() ? table[character] : character;
}

}  // namespace

CodedText Decode(std::string_view bytes, Coding coding, size_t offset) {
  CodedText coded{coding, {}, {}, {}};
  const size_t width = coding == Coding::kUtf8 ? 1 : 2;
  offset = std::min(offset, bytes.size());
  const Units units{bytes.substr(offset), width};
  size_t at = 0;
  while (at < units.size()) {
    const Found found = CharacterAt(units, at);
    coded.text += found.character;
    coded.at.push_back(static_cast<uint32_t>(offset + at * width));
    at += found.units;
  }
  coded.at.push_back(static_cast<uint32_t>(offset + at * width));
  coded.folded = Folded(coded.text);
  return coded;
}

void Overwrite(std::string& bytes, const CodedText& coded, size_t first, std::u32string_view characters) {
  for (size_t i = 0; i < characters.size(); ++i) {
    const size_t begin = coded.at[first + i];
    const size_t length = coded.at[first + i + 1] - begin;
    std::string form = InFormOf(std::string_view(bytes).substr(begin, length), coded.coding, characters[i]);
    if (form.size() != length) form = Filled(length, coded.coding);
    bytes.replace(begin, length, form);
  }
}

char32_t LowerCase(char32_t character) {
  static const CaseTable table = TableOf(CharLowerW);
  return Converted(table, character);
}

char32_t UpperCase(char32_t character) {
  static const CaseTable table = TableOf(CharUpperW);
  return Converted(table, character);
}

std::u32string Folded(std::u32string_view text) {
  std::u32string folded(text);
  std::ranges::transform(folded, folded.begin(), LowerCase);
  return folded;
}

bool IsWordCharacter(char32_t character) {
  if (character < 0x80) return std::isalnum(static_cast<int>(character)) != 0;
  if (character >= 0x10000) return character != kUnknown;
  return IsCharAlphaNumericW(static_cast<wchar_t>(character)) != 0;
}

}  // namespace tarnwick::host
