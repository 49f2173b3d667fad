#include "catalogue/element_text_reader.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>

namespace tarnwick {
namespace {

// ---- ExtractElementText.

TEST(ExtractElementText, GivesTheRawTextBetweenTheTags) {
  EXPECT_EQ(ExtractElementText("<a><LaunchUrl>  x &amp;\n y </LaunchUrl></a>", "LaunchUrl"),
            "  x &amp;\n y ");
}

TEST(ExtractElementText, GivesNothingForAnEmptyElement) {
  EXPECT_EQ(ExtractElementText("<LaunchUrl></LaunchUrl>", "LaunchUrl"), "");
}

TEST(ExtractElementText, GivesNothingForANilElement) {
  EXPECT_EQ(ExtractElementText("<LaunchUrl i:nil=\"true\"/>", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("<LaunchUrl i:nil=\"true\"/>text</LaunchUrl>", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("<LaunchUrl i:nil=\"true\">text</LaunchUrl>", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("<LaunchUrli:nil=\"true\">text</LaunchUrl>", "LaunchUrl"), "");
}

TEST(ExtractElementText, TakesAnyOtherNilForAnAttributeOfNoMeaning) {
  EXPECT_EQ(ExtractElementText("<LaunchUrl i:nil=\"false\">text</LaunchUrl>", "LaunchUrl"), "text");
  EXPECT_EQ(ExtractElementText("<LaunchUrl i:nil='true'>text</LaunchUrl>", "LaunchUrl"), "text");
  EXPECT_EQ(ExtractElementText("<LaunchUrl i:nil=\"True\">text</LaunchUrl>", "LaunchUrl"), "text");
  EXPECT_EQ(ExtractElementText("<LaunchUrl>i:nil=\"true\"</LaunchUrl>", "LaunchUrl"), "i:nil=\"true\"");
}

TEST(ExtractElementText, GivesNothingForASelfClosedElement) {
  EXPECT_EQ(ExtractElementText("<LaunchUrl/>", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("<LaunchUrl />text</LaunchUrl>", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("<LaunchUrl a=\"/\" >text</LaunchUrl>", "LaunchUrl"), "text");
}

TEST(ExtractElementText, GivesNothingWhereATagIsMissing) {
  EXPECT_EQ(ExtractElementText("", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("text</LaunchUrl>", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("<LaunchUrl text", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("<LaunchUrl>text", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("<LaunchUrl>text</LaunchUrl", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("<LaunchUrl>text</LaunchUrl >", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("</LaunchUrl><LaunchUrl>text", "LaunchUrl"), "");
}

TEST(ExtractElementText, IsAPrefixSearchWithoutABoundary) {
  EXPECT_EQ(
      ExtractElementText("<DefaultExe32>a.exe</DefaultExe32><DefaultExe>b.exe</DefaultExe>", "DefaultExe"),
      "a.exe</DefaultExe32><DefaultExe>b.exe");
  EXPECT_EQ(ExtractElementText("<SourceExId>7</SourceExId><SourceEx>Steam</SourceEx>", "SourceEx"),
            "7</SourceExId><SourceEx>Steam");
  EXPECT_EQ(ExtractElementText("<LaunchUrlOther>x</LaunchUrl>", "LaunchUrl"), "x");
}

TEST(ExtractElementText, DoesNotGoBehindANilElementOfALongerName) {
  EXPECT_EQ(ExtractElementText("<DefaultExe32 i:nil=\"true\"/><DefaultExe>b.exe</DefaultExe>", "DefaultExe"),
            "");
}

TEST(ExtractElementText, DistinguishesUpperAndLowerCase) {
  EXPECT_EQ(ExtractElementText("<launchurl>text</launchurl>", "LaunchUrl"), "");
  EXPECT_EQ(ExtractElementText("<LaunchUrl>text</launchurl>", "LaunchUrl"), "");
}

TEST(ExtractElementText, TakesTheFirstOfRepeatedElements) {
  EXPECT_EQ(ExtractElementText("<GameInfo>1</GameInfo><GameInfo>2</GameInfo>", "GameInfo"), "1");
  EXPECT_EQ(ExtractElementText("<GameInfo/><GameInfo>2</GameInfo>", "GameInfo"), "");
}

TEST(ExtractElementText, FindsTheClosingTagBehindTheOpeningOneOnly) {
  EXPECT_EQ(ExtractElementText("<GameInfo </GameInfo>text</GameInfo>", "GameInfo"), "text");
}

// ---- NormalizeElementText.

TEST(NormalizeElementText, TrimsAndCollapses) {
  EXPECT_EQ(NormalizeElementText(""), "");
  EXPECT_EQ(NormalizeElementText("plain"), "plain");
  EXPECT_EQ(NormalizeElementText("  a  b \t c\r\n"), "a b c");
  EXPECT_EQ(NormalizeElementText("a\nb"), "a b");
  EXPECT_EQ(NormalizeElementText(" \t\r\n\v\f "), "");
}

TEST(NormalizeElementText, CountsWhatTheCLibraryCallsSpace) {
  for (int byte = 0; byte < 128; ++byte) {
    const std::string middle(1, static_cast<char>(byte));
    const bool space = byte == ' ' || (byte >= '\t' && byte <= '\r');
    EXPECT_EQ(NormalizeElementText("a" + middle + "b"), space ? "a b" : "a" + middle + "b") << byte;
    EXPECT_EQ(NormalizeElementText(middle), space ? "" : middle) << byte;
  }
}

TEST(NormalizeElementText, LeavesNonAsciiTextAlone) {
  // U+00A0 and U+3000 are spaces to Unicode, and none to a parser of bytes.
  const std::string text = "\xD0\x98\xD0\xB3\xD1\x80\xD0\xB0\xC2\xA0\xE3\x80\x80\xE7\x8E\xA9 \xC3\xA9";
  EXPECT_EQ(NormalizeElementText(text), text);
}

TEST(NormalizeElementText, KeepsZeroBytes) {
  EXPECT_EQ(NormalizeElementText(std::string(" \0 \0", 4)), std::string("\0 \0", 3));
}

// ---- DecodeEntities.

TEST(DecodeEntities, ReplacesTheFiveNames) {
  EXPECT_EQ(DecodeEntities("&amp;&lt;&gt;&quot;&apos;"), "&<>\"'");
  EXPECT_EQ(DecodeEntities("a &amp; b"), "a & b");
}

TEST(DecodeEntities, IsOnePass) {
  EXPECT_EQ(DecodeEntities("a &amp;amp; b"), "a &amp; b");
  EXPECT_EQ(DecodeEntities("&amp;#65;"), "&#65;");
  EXPECT_EQ(DecodeEntities("&#38;lt;"), "&lt;");
}

TEST(DecodeEntities, ReadsNumbersInBothBases) {
  EXPECT_EQ(DecodeEntities("&#x41;"), "A");
  EXPECT_EQ(DecodeEntities("&#X41;"), "A");
  EXPECT_EQ(DecodeEntities("&#65;"), "A");
  EXPECT_EQ(DecodeEntities("&#xaBc;"), "\xE0\xAA\xBC");
}

TEST(DecodeEntities, LeavesWhatIsNoReference) {
  for (const char* text :
       {"",     "&",     "a&",     "&;",     "&#",   "&#;",  "&#x",   "&#x;", "&#xZZ;", "&#Z;", "&nbsp;",
        "&amp", "&AMP;", "& amp;", "&amp ;", "&#-;", "&#+;", "&#x-;", "&# ;", "&#65",   "&&",   "&#&#;"}) {
    EXPECT_EQ(DecodeEntities(text), text);
  }
}

TEST(DecodeEntities, GoesOnAtTheNextByteBehindAnUnknownName) {
  EXPECT_EQ(DecodeEntities("&x&amp;"), "&x&");
  EXPECT_EQ(DecodeEntities("&&amp;"), "&&");
  EXPECT_EQ(DecodeEntities("&nbsp;&lt;"), "&nbsp;<");
  EXPECT_EQ(DecodeEntities("&#;&#65;"), "&#;A");
  EXPECT_EQ(DecodeEntities("&#x;&amp;"), "&#x;&");
}

TEST(DecodeEntities, ParsesDigitsAsTheCLibraryDoes) {
  EXPECT_EQ(DecodeEntities("&# 65;"), "A");
  EXPECT_EQ(DecodeEntities("&#\t+65;"), "A");
  EXPECT_EQ(DecodeEntities("&#65rubbish;"), "A");
  EXPECT_EQ(DecodeEntities("&#65&#66;"), "A");
  EXPECT_EQ(DecodeEntities("&#x41G;"), "A");
  EXPECT_EQ(DecodeEntities("&#x0x41;"), "A");
  EXPECT_EQ(DecodeEntities("&#x+41;"), "A");
  EXPECT_EQ(DecodeEntities("&#00000000000000000065;"), "A");
  EXPECT_EQ(DecodeEntities("&#0x41;"), std::string(1, '\0'));
  EXPECT_EQ(DecodeEntities("&#x0x;"), std::string(1, '\0'));
  // A minus negates the 32-bit value.
  EXPECT_EQ(DecodeEntities("&#-4294967231;"), "A");
}

TEST(DecodeEntities, RefusesNumbersOutOfRange) {
  EXPECT_EQ(DecodeEntities("&#4294967296;"), "&#4294967296;");
  EXPECT_EQ(DecodeEntities("&#x100000000;"), "&#x100000000;");
  EXPECT_EQ(DecodeEntities("&#-4294967296;"), "&#-4294967296;");
  EXPECT_EQ(DecodeEntities("&#99999999999999999999999999;"), "&#99999999999999999999999999;");
}

TEST(DecodeEntities, WritesCodePointsByThePlainTableOfRanges) {
  EXPECT_EQ(DecodeEntities("&#0;"), std::string(1, '\0'));
  EXPECT_EQ(DecodeEntities("&#x7F;"), "\x7F");
  EXPECT_EQ(DecodeEntities("&#x80;"), "\xC2\x80");
  EXPECT_EQ(DecodeEntities("&#x7FF;"), "\xDF\xBF");
  EXPECT_EQ(DecodeEntities("&#x800;"), "\xE0\xA0\x80");
  EXPECT_EQ(DecodeEntities("&#xFFFF;"), "\xEF\xBF\xBF");
  EXPECT_EQ(DecodeEntities("&#x10000;"), "\xF0\x90\x80\x80");
  EXPECT_EQ(DecodeEntities("&#x1F3AE;"), "\xF0\x9F\x8E\xAE");
}

TEST(DecodeEntities, WritesSurrogatesAndWhatLiesBeyondUnicodeUnchecked) {
  EXPECT_EQ(DecodeEntities("&#xD800;"), "\xED\xA0\x80");
  EXPECT_EQ(DecodeEntities("&#x110000;"), "\xF4\x90\x80\x80");
  EXPECT_EQ(DecodeEntities("&#xFFFFFFFF;"), "\xFF\xBF\xBF\xBF");
  EXPECT_EQ(DecodeEntities("&#-1;"), "\xFF\xBF\xBF\xBF");
}

// ---- AssignElementText.

// Followed by bytes that would count if any were looked at.
std::string Assigned(const std::string& raw) {
  const std::string text = raw + "&amp;  \t<";
  std::string field = "what stood here before";
  AssignElementText(field, std::string_view(text).substr(0, raw.size()));
  return field;
}

TEST(AssignElementText, NormalizesAndThenDecodes) {
  EXPECT_EQ(Assigned(""), "");
  EXPECT_EQ(Assigned("as it stands"), "as it stands");
  EXPECT_EQ(Assigned(" a \n b &#32;&#32;c "), "a b   c");
  EXPECT_EQ(Assigned("12345678&lt;"), "12345678<");
  EXPECT_EQ(Assigned("1234567 "), "1234567");
}

// ---- Where unsigned long has the size that the numbers are read with, the C++ library itself is the
// reference.

std::string DecodedByTheLibrary(const std::string& digits, int base) {
  const std::string reference = (base == 16 ? "&#x" : "&#") + digits + ";";
  try {
    const unsigned long code = std::stoul(digits, nullptr, base);
    return DecodeEntities("&#" + std::to_string(code) + ";");
  } catch (const std::logic_error&) {
    return reference;
  }
}

TEST(DecodeEntities, ReadsNumbersAsTheLibraryDoes) {
  if (sizeof(unsigned long) != 4) GTEST_SKIP() << "unsigned long has another size here";
  std::mt19937 random(7);
  constexpr char kBytes[] = "0123456789abcdefABCDEF0000 +-xg\t";
  for (int i = 0; i < 20'000; ++i) {
    std::string digits;
    for (size_t length = 1 + random() % 11; length > 0; --length)
      digits += kBytes[random() % (sizeof kBytes - 1)];
    if (digits.front() == 'x') continue;
    // A "0x" without digits behind it is the number 0 by the standard of C, and no number to Microsoft's
    // runtime.
    const size_t prefix = digits.find("0x");
    if (prefix != std::string::npos &&
        digits.find_first_of("0123456789abcdefABCDEF", prefix + 2) != prefix + 2)
      continue;
    ASSERT_EQ(DecodeEntities("&#" + digits + ";"), DecodedByTheLibrary(digits, 10)) << digits;
    ASSERT_EQ(DecodeEntities("&#x" + digits + ";"), DecodedByTheLibrary(digits, 16)) << digits;
  }
}

}  // namespace
}  // namespace tarnwick
