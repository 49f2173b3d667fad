#include "common/catalogue_text.h"

#include "catalogue/catalogue_reader.h"
#include "common/xml_text.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tarnwick::common {
namespace {

TEST(CatalogueText, PutsShorterNamesAheadOfLongerOnesThatBeginWithThem) {
  const auto& elements = CatalogueElements();
  EXPECT_EQ(elements.size(), 18u);
  for (size_t first = 0; first < elements.size(); ++first)
    for (size_t second = first + 1; second < elements.size(); ++second)
      EXPECT_FALSE(elements[first].name.starts_with(elements[second].name))
          << elements[first].name << " before " << elements[second].name;
}

TEST(CatalogueText, WritesRecordsInOrderAndEscapesTexts) {
  GameSignature wren;
  wren.DisplayName = "Wren & \"Owl\" <2> 游戏's";
  wren.DefaultFolderExe = "a|b";
  wren.DefaultFolder = "C:\\Wren";
  wren.SourceExId = "70";
  wren.SourceKind = kSourceSteam;
  GameSignature owl;
  owl.DisplayName = "Owl";
  EXPECT_EQ(CatalogueText({wren, owl}),
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ArrayOfGameSignature>\n"
            "  <GameSignature>\n"
            "    <DisplayName>Wren &amp; &quot;Owl&quot; &lt;2&gt; 游戏&apos;s</DisplayName>\n"
            "    <DefaultFolder>C:\\Wren</DefaultFolder>\n"
            "    <DefaultFolderExe>a|b</DefaultFolderExe>\n"
            "    <SourceEx>STEAM</SourceEx>\n"
            "    <SourceExId>70</SourceExId>\n"
            "  </GameSignature>\n"
            "  <GameSignature>\n"
            "    <DisplayName>Owl</DisplayName>\n"
            "  </GameSignature>\n"
            "</ArrayOfGameSignature>\n");
}

TEST(CatalogueText, NamesEverySourceKindBothWays) {
  for (const int32_t kind : {0, 1, 2, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13})
    EXPECT_EQ(SourceKindOf(SourceExText(kind)), kind);
  EXPECT_THROW(SourceExText(4), std::runtime_error);
  EXPECT_THROW(SourceKindOf("steam"), std::runtime_error);
}

std::string ReadBack(const std::string& text) {
  GameSignature game;
  game.DefaultFolder = text;
  const GameList games = ParseCatalogue(CatalogueText({game}));
  return games.size() == 1 ? games.front().DefaultFolder : "not one record";
}

TEST(CatalogueText, ReadersGetEveryTextBack) {
  for (const std::string text :
       {" ", "  a", "a  ", "a  b", "a b", "a\nb", "a \r\n b", "\t", "a\vb\fc", "&", "&amp;", "&#32;",
        "</DefaultFolder>", "</GameSignature>", "]]>", "i:nil=\"true\"", "a\1b", "\xFF", "é 游"}) {
    EXPECT_EQ(ReadBack(text), text);
  }
  EXPECT_EQ(ReadBack(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(XmlText, KnowsWhichBytesAreNoCharacterOfXml) {
  EXPECT_EQ(FindNoXml("\t\n\r aé游😀\x7F"), std::string::npos);
  for (const char* bad : {"\x01", "\x1F", "\x80", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80",
                          "\xEF\xBF\xBE", "\xEF\xBF\xBF", "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xFE"}) {
    EXPECT_EQ(FindNoXml(std::string("é") + bad + "a"), 2u) << DescribeNoXml(bad, 0);
  }
  EXPECT_EQ(FindNoXml(std::string_view("\0", 1)), 0u);
  EXPECT_EQ(DescribeNoXml("a\x01", 1), "U+0001");
  EXPECT_EQ(DescribeNoXml("\xEF\xBF\xBE", 0), "U+FFFE");
  EXPECT_EQ(DescribeNoXml("\xFF", 0), "byte 0xFF");
}

}  // namespace
}  // namespace tarnwick::common
