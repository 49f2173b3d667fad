#include "foundation/text.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

std::wstring Escaped(const std::wstring& text) {
  std::wstring out;
  AppendJsonEscaped(out, text);
  return out;
}

std::string Encoded(const std::string& bytes) {
  return Base64Encode(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

std::string Stripped(std::string name) {
  StripTrademarkSigns(name);
  return name;
}

TEST(IgnoredExeNames, HoldsTheInstallersInOrder) {
  EXPECT_THAT(IgnoredExeNames,
              testing::ElementsAre("uninstall.exe", "unins000.exe", "setup.exe", "install.exe"));
}

TEST(AppendJsonEscaped, AppendsNothingForAnEmptyText) { EXPECT_EQ(Escaped(L""), L""); }

TEST(AppendJsonEscaped, KeepsWhatTheOutputHeld) {
  std::wstring out = L"\"name\":\"";
  AppendJsonEscaped(out, L"a\\b");
  EXPECT_EQ(out, L"\"name\":\"a\\\\b");
}

TEST(AppendJsonEscaped, EscapesBackslashQuoteAndLineFeed) { EXPECT_EQ(Escaped(L"\\\"\n"), L"\\\\\\\"\\n"); }

TEST(AppendJsonEscaped, WritesOtherControlCharactersAsLowerCaseHexadecimal) {
  EXPECT_EQ(Escaped(L"\r"), L"\\u000d");
  EXPECT_EQ(Escaped(L"\t"), L"\\u0009");
  EXPECT_EQ(Escaped(L"\b\f"), L"\\u0008\\u000c");
  EXPECT_EQ(Escaped(std::wstring(1, L'\0')), L"\\u0000");
  EXPECT_EQ(Escaped(L"\x1f"), L"\\u001f");
}

TEST(AppendJsonEscaped, EveryControlCharacterHasItsOwnNumber) {
  for (int unit = 0; unit < 0x20; ++unit) {
    if (unit == '\n') continue;
    wchar_t expected[8];
    swprintf(expected, 8, L"\\u%04x", static_cast<unsigned>(unit));
    EXPECT_EQ(Escaped(std::wstring(1, static_cast<wchar_t>(unit))), expected) << unit;
  }
}

TEST(AppendJsonEscaped, LeavesSlashesAndEverythingFromTheBlankOnUnchanged) {
  EXPECT_EQ(Escaped(L" /\x7f\x80é'<>&Ωж漢"), L" /\x7f\x80é'<>&Ωж漢");
}

TEST(Base64Encode, PadsAsTheStandardSays) {
  EXPECT_EQ(Encoded(""), "");
  EXPECT_EQ(Encoded("\x4D"), "TQ==");
  EXPECT_EQ(Encoded("Ma"), "TWE=");
  EXPECT_EQ(Encoded("Man"), "TWFu");
  EXPECT_EQ(Encoded("ManM"), "TWFuTQ==");
}

TEST(Base64Encode, UsesTheStandardAlphabetAndNoLineBreaks) {
  EXPECT_EQ(Encoded("\xFB\xEF\xBE"), "++++");
  EXPECT_EQ(Encoded("\xFF\xFF\xFF"), "////");
  EXPECT_EQ(Encoded(std::string(300, '\0')), std::string(400, 'A'));
}

TEST(Base64Encode, WritesAllSixtyFourDigitsInOrder) {
  // Bytes whose groups of six bits count from 0 to 63.
  std::string bytes;
  for (unsigned group = 0; group < 64; group += 4) {
    const unsigned bits = group << 18 | (group + 1) << 12 | (group + 2) << 6 | (group + 3);
    for (const int shift : {16, 8, 0}) bytes += static_cast<char>(bits >> shift & 0xFF);
  }
  EXPECT_EQ(Encoded(bytes), "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST(StripTrademarkSigns, RemovesBothSignsWhereverTheyStand) {
  EXPECT_EQ(Stripped("\xE2\x84\xA2"
                     "A\xC2\xAE"
                     "B\xE2\x84\xA2\xE2\x84\xA2"),
            "AB");
  EXPECT_EQ(Stripped("\xC2\xAE"), "");
  EXPECT_EQ(Stripped(""), "");
}

TEST(StripTrademarkSigns, KeepsTheBlankBeforeASign) { EXPECT_EQ(Stripped("Foo \xE2\x84\xA2"), "Foo "); }

TEST(StripTrademarkSigns, TouchesNothingElse) {
  EXPECT_EQ(Stripped("Caf\xC3\xA9 \xC2\xA9 (TM) \xE2\x84\xA0"), "Caf\xC3\xA9 \xC2\xA9 (TM) \xE2\x84\xA0");
  EXPECT_EQ(Stripped("\xE2\x84"), "\xE2\x84");
}

TEST(StripTrademarkSigns, SeesASignThatARemovalOfItsKindJoinedTogether) {
  EXPECT_EQ(Stripped("x\xE2\x84\xE2\x84\xA2\xA2y"), "xy");
  EXPECT_EQ(Stripped("\xC2\xC2\xAE\xAE"), "");
  // The trade mark signs have had their turn when the registered signs go.
  EXPECT_EQ(Stripped("\xE2\x84\xC2\xAE\xA2"), "\xE2\x84\xA2");
}

TEST(ExeStemOrUnknown, GivesTheNameBetweenSeparatorAndDot) {
  EXPECT_EQ(ExeStemOrUnknown("C:\\Games\\foo.exe"), "foo");
  EXPECT_EQ(ExeStemOrUnknown("C:/Games/foo.bar.exe"), "foo.bar");
  EXPECT_EQ(ExeStemOrUnknown("C:\\Games/\xD0\x96.exe"), "\xD0\x96");
  EXPECT_EQ(ExeStemOrUnknown("C:\\.exe"), "");
}

TEST(ExeStemOrUnknown, IsUnknownWithoutSeparatorOrDotBehindIt) {
  EXPECT_EQ(ExeStemOrUnknown(""), "Unknown");
  EXPECT_EQ(ExeStemOrUnknown("foo.exe"), "Unknown");
  EXPECT_EQ(ExeStemOrUnknown("C:\\Games\\foo"), "Unknown");
  EXPECT_EQ(ExeStemOrUnknown("C:\\Games.d\\foo"), "Unknown");
}

TEST(NormalizeLocPath, CollapsesRunsAndTurnsSlashes) {
  EXPECT_EQ(NormalizeLocPath(L""), L"");
  EXPECT_EQ(NormalizeLocPath(L"C:/Games//Foo\\\\\\bar/x.exe"), L"C:\\Games\\Foo\\bar\\x.exe");
  EXPECT_EQ(NormalizeLocPath(L"C:\\Ж\\漢.exe"), L"C:\\Ж\\漢.exe");
  EXPECT_EQ(NormalizeLocPath(L"C:\\Foo\\\\"), L"C:\\Foo\\");
}

TEST(NormalizeLocPath, KeepsTheDoubleBackslashOfANetworkPath) {
  EXPECT_EQ(NormalizeLocPath(L"\\\\server\\\\share"), L"\\\\server\\share");
  EXPECT_EQ(NormalizeLocPath(L"//server/share"), L"\\\\server\\share");
  EXPECT_EQ(NormalizeLocPath(L"\\\\\\\\server"), L"\\\\server");
  EXPECT_EQ(NormalizeLocPath(L"\\x"), L"\\x");
}

TEST(JoinWidePath, PutsOneBackslashBetweenThem) {
  EXPECT_EQ(JoinWidePath(L"", L"b"), L"b");
  EXPECT_EQ(JoinWidePath(L"a", L"b"), L"a\\b");
  EXPECT_EQ(JoinWidePath(L"a\\", L"b"), L"a\\b");
  EXPECT_EQ(JoinWidePath(L"a/", L"b"), L"a/b");
  EXPECT_EQ(JoinWidePath(L"a", L""), L"a\\");
  EXPECT_EQ(JoinWidePath(L"a\\", L"\\b"), L"a\\\\b");
}

TEST(ByteCase, MapsAsciiAlone) {
  EXPECT_EQ(ToLowerBytes("AbZ\xC3\x89"), "abz\xC3\x89");
  EXPECT_EQ(ToUpperBytes("aBz\xC3\xA9"), "ABZ\xC3\xA9");
}

TEST(StripOuterQuotes, NeedsOneAtBothEnds) {
  EXPECT_EQ(StripOuterQuotes("\"C:\\a b\""), "C:\\a b");
  EXPECT_EQ(StripOuterQuotes("\"\"a\"\""), "\"a\"");
  EXPECT_EQ(StripOuterQuotes("\"a"), "\"a");
  EXPECT_EQ(StripOuterQuotes("a\""), "a\"");
  EXPECT_EQ(StripOuterQuotes("\"\""), "");
  EXPECT_EQ(StripOuterQuotes("\""), "");
  EXPECT_EQ(StripOuterQuotes(""), "");
}

TEST(TrimSeparators, TakesAllOfOneEnd) {
  EXPECT_EQ(TrimLeadingSeparators("\\/\\a\\b/"), "a\\b/");
  EXPECT_EQ(TrimTrailingSeparators("\\a\\b/\\/"), "\\a\\b");
  EXPECT_EQ(TrimLeadingSeparators("\\//"), "");
  EXPECT_EQ(TrimTrailingSeparators("\\//"), "");
  EXPECT_EQ(TrimLeadingSeparators(""), "");
  EXPECT_EQ(TrimTrailingSeparators(""), "");
}

TEST(UnquotedHead, TakesOffQuotesThatAreClosed) {
  EXPECT_EQ(UnquotedHead(L"\"C:\\A\" /x"), L"C:\\A");
  EXPECT_EQ(UnquotedHead(L"\"\""), L"");
  for (const wchar_t* text : {L"", L"\"", L"\"C:\\A", L"C:\\A\"", L" \"C:\\A\"", L"C:\\A"}) {
    EXPECT_EQ(UnquotedHead(text), text);
  }
}

TEST(ReadAll, GivesTheRestOfAStream) {
  std::istringstream stream("first\nsecond\nthird");
  std::string line;
  std::getline(stream, line);
  EXPECT_EQ(ReadAll(stream), "second\nthird");
  EXPECT_EQ(ReadAll(stream), "");
}

TEST(HalveBackslashes, MakesOneOfEachPair) {
  EXPECT_EQ(HalveBackslashes(""), "");
  EXPECT_EQ(HalveBackslashes("\\"), "\\");
  EXPECT_EQ(HalveBackslashes("\\\\"), "\\");
  EXPECT_EQ(HalveBackslashes("\\\\\\"), "\\\\");
  EXPECT_EQ(HalveBackslashes("\\\\\\\\"), "\\\\");
  EXPECT_EQ(HalveBackslashes("\\\\\\\\\\"), "\\\\\\");
  EXPECT_EQ(HalveBackslashes("a\\\\b\\c\\\\"), "a\\b\\c\\");
  EXPECT_EQ(HalveBackslashes("//x"), "//x");
}

TEST(ShownGameName, IsTheNameOrTheExecutablesWithoutSigns) {
  EXPECT_EQ(ShownGameName("Wren\xE2\x84\xA2", "C:\\a.exe"), "Wren");
  EXPECT_EQ(ShownGameName("", "C:\\Owl\xC2\xAE.exe"), "Owl");
  EXPECT_EQ(ShownGameName("", "owl"), "Unknown");
}

TEST(AppendJsonMember, PutsACommaBeforeAllButTheFirst) {
  std::wstring json = L"{";
  AppendJsonMember(json, L"a", L"x\"{");
  AppendJsonMember(json, L"b", L"");
  EXPECT_EQ(json, L"{\"a\":\"x\\\"{\",\"b\":\"\"");
}

}  // namespace
}  // namespace tarnwick
