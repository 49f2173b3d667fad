#include "host/html_page.h"

#include "desktop/icon_image.h"
#include "foundation/com_scope.h"
#include "foundation/owner.h"
#include "foundation/text.h"
#include "host/icon_scaling.h"
#include "inventory/png.h"
#include "support/png_pixels.h"

#include <gmock/gmock.h>

#include <functional>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(HostHtmlPage, NamesCanNotEndTheScriptTheyStandIn) {
  const std::string page =
      GamesPage({{"</script><script>alert(1)</script>", "C:\\a.exe", "", "", "", "Installed"}}, {});
  EXPECT_THAT(page, HasSubstr("\\u003c/script>\\u003cscript>alert(1)"));
  EXPECT_THAT(page, Not(HasSubstr("<script>alert(1)")));
  EXPECT_THAT(page, Not(HasSubstr("{{DATA}}")));
}

TEST(HostHtmlPage, BytesThatAreNoUtf8AreReplaced) {
  EXPECT_THAT(GamesPage({{"\xFF", "", "", "", "", ""}}, {}), HasSubstr("\"name\":\"\xEF\xBF\xBD\""));
}

TEST(HostHtmlPage, ApplicationsHaveNoReport) {
  EXPECT_THAT(ApplicationsPage({{"Tool", "Maker", "1.2", "C:\\t.exe", "20260101", 4096, ""}}),
              HasSubstr("\"report\":null"));
}

TEST(HostHtmlPage, SizesAreInTheUnitThatSuitsThem) {
  EXPECT_EQ(SizeText(0), "");
  EXPECT_EQ(SizeText(1), "1 KB");
  EXPECT_EQ(SizeText(1023), "1023 KB");
  EXPECT_EQ(SizeText(1024), "1.0 MB");
  EXPECT_EQ(SizeText(1536), "1.5 MB");
  EXPECT_EQ(SizeText(1048575), "1.0 GB");
  EXPECT_EQ(SizeText(7654321), "7.3 GB");
}

TEST(HostHtmlPage, ApplicationsShowVersionAndSize) {
  EXPECT_THAT(ApplicationsPage({{"Tool", "Maker", "1.2", "", "", 4096, ""}}),
              HasSubstr("\"detail\":\"1.2 \u00b7 4.0 MB\""));
  EXPECT_THAT(ApplicationsPage({{"Tool", "Maker", "", "", "", 4096, ""}}),
              HasSubstr("\"detail\":\"4.0 MB\""));
  EXPECT_THAT(ApplicationsPage({{"Tool", "Maker", "1.2", "", "", 0, ""}}), HasSubstr("\"detail\":\"1.2\""));
}

std::string DataUri(const std::string& png) {
  return kPngDataUriPrefix + Base64Encode(reinterpret_cast<const unsigned char*>(png.data()), png.size());
}

std::string SquareUri(int size) { return DataUri(desktop::PngBytes(size, 0x3366CC)); }

// A picture drawn pixel by pixel: `draw(x, y)` is 0xAARRGGBB.
std::string DrawnUri(int size, const std::function<uint32_t(int, int)>& draw) {
  std::vector<uint32_t> pixels;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) pixels.push_back(draw(x, y));
  }
  const std::vector<unsigned char> mask(pixels.size() / 8, 0);
  const Icon icon(
      CreateIcon(nullptr, size, size, 1, 32, mask.data(), reinterpret_cast<const BYTE*>(pixels.data())));
  return IconDataUri(icon.Get());
}

tests::Picture ScaledTo56(const std::string& uri) {
  return tests::DecodePngDataUri(IconScaler().ScaleDown(uri, 56));
}

TEST(HostHtmlPage, IconsAreStoredAtTheirSizeOnScreen) {
  const Game game = {"A", "", SquareUri(256), "", "", "Installed"};
  EXPECT_THAT(GamesPage({game}, {}), HasSubstr(IconScaler().ScaleDown(SquareUri(256), 56)));
  const std::string page = GamesPage({game}, {}, {32, true});
  EXPECT_THAT(page, HasSubstr(IconScaler().ScaleDown(SquareUri(256), 32)));
  EXPECT_THAT(page, HasSubstr("\"iconSize\":32"));
}

TEST(HostHtmlPage, APageCanDoWithoutIcons) {
  const std::string page = ApplicationsPage({{"Tool", "", "", "", "", 0, SquareUri(32)}}, {56, false});
  EXPECT_THAT(page, HasSubstr("\"icon\":\"\""));
  EXPECT_THAT(page, Not(HasSubstr(SquareUri(32))));
}

TEST(HostIconScaling, ALargePictureBecomesAsSmallAsItIsShown) {
  const tests::Picture picture = ScaledTo56(SquareUri(256));
  EXPECT_EQ(picture.width, 56u);
  EXPECT_EQ(picture.height, 56u);
  EXPECT_EQ(picture.pixels, std::vector<uint32_t>(size_t{56} * 56, 0xFF3366CC));
}

TEST(HostIconScaling, APictureThatIsNoLargerStaysByteForByte) {
  for (const int size : {16, 32, 56}) EXPECT_EQ(IconScaler().ScaleDown(SquareUri(size), 56), SquareUri(size));
  EXPECT_NE(IconScaler().ScaleDown(SquareUri(57), 56), SquareUri(57));
}

TEST(HostIconScaling, TransparencyIsKeptAndLendsNoColour) {
  const ComScope com;
  const tests::Picture picture = ScaledTo56(DrawnUri(256, [](int x, int) {
    return x < 100 ? 0xFFCC3300u : x < 200 ? 0x800033CCu : 0u;
  }));
  EXPECT_EQ(picture.pixels[0], 0xFFCC3300);
  EXPECT_EQ(picture.pixels[32], 0x800033CC);
  EXPECT_EQ(picture.pixels[43] & 0xFFFFFF, 0x0033CCu) << "half of it is over nothing";
  EXPECT_LT(picture.pixels[43] >> 24, 0x80u);
  EXPECT_EQ(picture.pixels[55] >> 24, 0u);
}

TEST(HostIconScaling, EveryPixelCounts) {
  const ComScope com;
  const tests::Picture picture =
      ScaledTo56(DrawnUri(256, [](int x, int y) { return (x + y) % 2 == 0 ? 0xFFFFFFFFu : 0xFF000000u; }));
  for (const uint32_t pixel : picture.pixels) EXPECT_NEAR(static_cast<double>(pixel & 0xFF), 127.5, 8);
}

TEST(HostIconScaling, WhatIsNoPictureStaysAsItIs) {
  for (const std::string& text :
       {std::string(), std::string("data:image/png;base64,"), std::string("data:image/png;base64,AAAA"),
        std::string("data:image/png;base64,%"), SquareUri(256).substr(0, 120), std::string("javascript:1")})
    EXPECT_EQ(IconScaler().ScaleDown(text, 56), text);
}

}  // namespace
}  // namespace tarnwick::host
