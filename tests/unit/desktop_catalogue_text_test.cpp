#include "desktop/catalogue_text.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tarnwick::desktop {
namespace {

TEST(DesktopCatalogueText, PutsShorterNamesAheadOfLongerOnesThatBeginWithThem) {
  const auto& elements = CatalogueElements();
  EXPECT_EQ(elements.size(), 17u);
  for (size_t first = 0; first < elements.size(); ++first)
    for (size_t second = first + 1; second < elements.size(); ++second)
      EXPECT_FALSE(std::string(elements[first].name).starts_with(elements[second].name))
          << elements[first].name << " before " << elements[second].name;
}

TEST(DesktopCatalogueText, WritesRecordsInOrderAndEscapesTexts) {
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
            "    <SourceEx>STEAM</SourceEx>\n"
            "    <DisplayName>Wren &amp; &quot;Owl&quot; &lt;2&gt; 游戏&apos;s</DisplayName>\n"
            "    <DefaultFolder>C:\\Wren</DefaultFolder>\n"
            "    <DefaultFolderExe>a|b</DefaultFolderExe>\n"
            "    <SourceExId>70</SourceExId>\n"
            "  </GameSignature>\n"
            "  <GameSignature>\n"
            "    <DisplayName>Owl</DisplayName>\n"
            "  </GameSignature>\n"
            "</ArrayOfGameSignature>\n");
}

TEST(DesktopCatalogueText, NamesEverySourceKindBothWays) {
  for (const int32_t kind : {0, 1, 2, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13})
    EXPECT_EQ(SourceKindOf(SourceExText(kind)), kind);
  EXPECT_THROW(SourceExText(4), std::runtime_error);
  EXPECT_THROW(SourceKindOf("steam"), std::runtime_error);
}

}  // namespace
}  // namespace tarnwick::desktop
