#include "foundation/conversions.h"

#include "foundation/windows_api.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

constexpr char kMixed[] = "caf\xC3\xA9 \xD0\x96 \xE6\xBC\xA2 \xF0\x9F\x8E\xAE";
constexpr wchar_t kMixedWide[] = L"caf\x00E9 \x0416 \x6F22 \xD83C\xDFAE";

TEST(Conversions, EmptyStaysEmpty) {
  EXPECT_EQ(Utf8ToWide(""), L"");
  EXPECT_EQ(WideToUtf8(L""), "");
  EXPECT_EQ(AnsiToWide(""), L"");
  EXPECT_EQ(AnsiToUtf8(""), "");
}

TEST(Conversions, CarryAccentsCyrillicHanAndEmojiBothWays) {
  EXPECT_EQ(Utf8ToWide(kMixed), kMixedWide);
  EXPECT_EQ(WideToUtf8(kMixedWide), kMixed);
}

TEST(Conversions, EndAtTheFirstZero) {
  EXPECT_EQ(Utf8ToWide(std::string("ab\0cd", 5)), L"ab");
  EXPECT_EQ(WideToUtf8(std::wstring(L"ab\0cd", 5)), "ab");
  EXPECT_EQ(Utf8ToWide(std::string("\0ab", 3)), L"");
  EXPECT_EQ(WideToUtf8(std::wstring(L"\0ab", 3)), "");
}

TEST(Conversions, HaveNoTerminatorInTheirText) {
  EXPECT_EQ(Utf8ToWide("abc").size(), 3u);
  EXPECT_EQ(WideToUtf8(L"abc").size(), 3u);
}

TEST(Conversions, ReplaceMalformedInput) {
  const std::wstring wide = Utf8ToWide("a\xFFz");
  EXPECT_EQ(wide.front(), L'a');
  EXPECT_EQ(wide.back(), L'z');
  EXPECT_NE(wide.find(L'\xFFFD'), std::wstring::npos);
  EXPECT_EQ(WideToUtf8(L"a\xD83Cz"), "a\xEF\xBF\xBDz");
}

// What stands before a character that was cut is kept.
TEST(Conversions, TakeATextCutAtEveryByte) {
  const std::string text = kMixed;
  for (size_t length = 0; length <= text.size(); ++length) {
    size_t whole = length;
    while (whole < text.size() && whole > 0 && (text[whole] & 0xC0) == 0x80) --whole;
    EXPECT_TRUE(WideToUtf8(Utf8ToWide(text.substr(0, length))).starts_with(text.substr(0, whole))) << length;
  }
}

TEST(Conversions, TakeLongTexts) {
  const std::string text(100'000, 'x');
  EXPECT_EQ(Utf8ToWide(text), std::wstring(100'000, L'x'));
  EXPECT_EQ(WideToUtf8(std::wstring(100'000, L'\x0416')).size(), 200'000u);
}

TEST(Conversions, ReadTheAnsiCodePage) {
  EXPECT_EQ(AnsiToWide("plain"), L"plain");
  EXPECT_EQ(AnsiToUtf8(std::string("ab\0c", 4)), "ab");
  if (GetACP() != 1252) GTEST_SKIP() << "the machine's code page is not 1252";
  EXPECT_EQ(AnsiToWide("caf\xE9"), L"caf\x00E9");
  EXPECT_EQ(AnsiToUtf8("caf\xE9 \x80"), "caf\xC3\xA9 \xE2\x82\xAC");
}

}  // namespace
}  // namespace tarnwick
