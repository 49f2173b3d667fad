// Reader.
#include "host/capture/stand_ins.h"

#include "host/capture/coded_text.h"

#include <algorithm>
#include <iterator>

namespace tarnwick::host {
namespace {

// Characters of one length in UTF-8, and what takes their place: the word's beginning, then the number, in
// digits of the alphabet.
struct Script {
  char32_t first;
  char32_t last;
  std::u32string_view word;
  std::u32string_view alphabet;
};

constexpr std::u32string_view kDigits = U"0123456789";

constexpr Script kScripts[] = {
    {0x80, 0x36F, U"\u00e9\u00e0\u00fc", U"\u00e4\u00e9\u00e0\u00fc\u00f6\u00f1\u00e7\u00ea\u00ee\u00e5"},
    {0x370, 0x3FF, U"\u03c7\u03c1\u03ae\u03c3\u03c4\u03b7",
     U"\u03b1\u03b2\u03b3\u03b4\u03b5\u03b6\u03b7\u03b8\u03b9\u03ba"},
    {0x400, 0x7FF, U"\u043f\u043e\u043b\u044c\u0437",
     U"\u0430\u0431\u0432\u0433\u0434\u0435\u0436\u0437\u0438\u043a"},
    {0x800, 0xFFFF, U"\u7528\u6237", U"\u7532\u4e59\u4e19\u4e01\u620a\u5df1\u5e9a\u8f9b\u58ec\u7678"},
    {0x10000, 0x10FFFF, U"\U00020000", U"\U00020000\U00020001\U00020002\U00020003\U00020004"},
};

bool IsAsciiWord(char32_t character) { return character < 0x80 && IsWordCharacter(character); }
bool IsDigit(char32_t character) { return character >= '0' && character <= '9'; }
bool IsHex(char32_t character) {
  return IsDigit(character) || (LowerCase(character) >= 'a' && LowerCase(character) <= 'f');
}

bool Belongs(const Script& script, char32_t character) {
  return character >= script.first && character <= script.last;
}

// The number in the alphabet's digits, the lowest last; `count` of them.
std::u32string Numeral(std::u32string_view alphabet, size_t count, size_t number) {
  std::u32string text(count, alphabet.front());
  for (size_t i = count; i > 0 && number > 0; --i, number /= alphabet.size())
    text[i - 1] = alphabet[number % alphabet.size()];
  return text;
}

size_t DigitsOf(size_t number, size_t base) {
  size_t digits = 1;
  while (number /= base) ++digits;
  return digits;
}

std::u32string Worded(std::u32string_view word, std::u32string_view alphabet, size_t count, size_t number) {
  const size_t digits = std::min(count, DigitsOf(number, alphabet.size()));
  const size_t letters = std::min(word.size(), count - digits);
  return std::u32string(word.substr(0, letters)) + Numeral(alphabet, count - letters, number);
}

// Numbers keep a first digit that is no zero, ids of hexadecimal digits begin with zeros.
std::u32string AsciiText(const std::u32string& letters, std::u32string_view word, size_t number) {
  constexpr size_t kShortestId = 16;
  if (std::ranges::all_of(letters, IsDigit)) word = U"1";
  if (letters.size() >= kShortestId && std::ranges::all_of(letters, IsHex)) word = U"";
  return Worded(word, kDigits, letters.size(), number);
}

// Puts the characters of `texts` where those that pass the test stand, in order.
template <class Test>
void Distribute(std::u32string& into, std::u32string_view original, const std::u32string& text, Test&& test) {
  size_t next = 0;
  for (size_t i = 0; i < original.size(); ++i) {
    if (test(original[i]) && next < text.size()) into[i] = text[next++];
  }
}

}  // namespace

std::u32string StandIn(std::u32string_view original, std::u32string_view word, size_t number) {
  std::u32string result(original);
  std::u32string letters;
  std::ranges::copy_if(original, std::back_inserter(letters), IsAsciiWord);
  Distribute(result, original, AsciiText(letters, word, number), IsAsciiWord);
  for (const Script& script : kScripts) {
    const auto test = [&](char32_t character) { return Belongs(script, character); };
    const auto count = static_cast<size_t>(std::ranges::count_if(original, test));
    Distribute(result, original, Worded(script.word, script.alphabet, count, number), test);
  }
  return result;
}

std::u32string InCaseOf(std::u32string_view spelling, std::u32string_view standIn) {
  std::u32string result(standIn);
  for (size_t i = 0; i < result.size() && i < spelling.size(); ++i) {
    if (spelling[i] != LowerCase(spelling[i])) result[i] = UpperCase(result[i]);
  }
  return result;
}

}  // namespace tarnwick::host
