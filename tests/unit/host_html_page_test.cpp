#include "host/html_page.h"

#include "core/scan_json.h"
#include "desktop/description.h"
#include "desktop/icon_image.h"
#include "foundation/com_scope.h"
#include "foundation/owner.h"
#include "foundation/text.h"
#include "host/icon_scaling.h"
#include "host/page/report_data.h"
#include "inventory/png.h"
#include "support/file_bytes.h"
#include "support/png_pixels.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include <functional>
#include <string_view>

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

ObservedScan ScanOf(const std::string& text) {
  StrategyRun run{{text, 3, nullptr}, {}, {}, {}, text};
  run.results.push_back({text, "C:\\a.exe", "", text, "", true, 0, ""});
  run.heard.push_back(
      {{QuestionKind::kAttributes, "C:\\a.exe", "", RegistryView::kNative, text}, {true, text}, 0});
  run.heard.push_back({{QuestionKind::kAttributes, text, "", RegistryView::kNative, text}, {false, text}, 0});
  ObservedScan scan;
  scan.runs = {run, run};
  scan.all = {run.results[0], run.results[0]};
  scan.unique = {run.results[0]};
  return scan;
}

TEST(HostHtmlPage, NoTextOfAScanCanEndTheScriptItStandsIn) {
  constexpr char kBad[] = "</script><b>";
  const std::string page =
      GamesPage({{"A", "C:\\a.exe", "", "", "", ""}}, ScanOf(kBad), {56, false, kBad, kBad});
  EXPECT_THAT(page, HasSubstr("\\u003c/script>\\u003cb>"));
  EXPECT_THAT(page, Not(HasSubstr(kBad)));
}

TEST(HostHtmlPage, BytesOfAScanThatAreNoUtf8AreReplaced) {
  EXPECT_THAT(GamesPage({{"A", "", "", "", "", ""}}, ScanOf("\xFF")),
              HasSubstr("\"source\":\"\xEF\xBF\xBD\""));
}

nlohmann::json DataOf(const std::string& page) {
  constexpr std::string_view kBegin = "id=\"data\">";
  const size_t begin = page.find(kBegin) + kBegin.size();
  return nlohmann::json::parse(page.substr(begin, page.find("</script>", begin) - begin));
}

TEST(HostHtmlPage, AGameIsExplained) {
  const auto item =
      DataOf(GamesPage({{"A", "C:\\a.exe", "", "", "", ""}}, ScanOf("Some Search")))["items"][0];
  EXPECT_EQ(item["detail"], "Some Search");
  EXPECT_EQ(item["explanation"],
            nlohmann::json::parse(R"({"strategy": "Some Search", "level": 3, "source": "Some Search",
    "evidence": [{"text": "look for C:\\a.exe", "answer": "Some Search", "ok": true},
                 {"text": "Some Search doesn't exist", "answer": "", "ok": false}],
    "merged": [{"name": "Some Search", "path": "C:\\a.exe", "source": "Some Search", "strategy": "Some Search", "level": 3,
                "why": "same path, found later"}]})"));
}

TEST(HostHtmlPage, TheReportTellsOfEachStrategy) {
  ObservedScan scan = ScanOf("Some Search");
  scan.report.strategies = {{"Some Search", 3, true, true, 1, 2.5, {"a line"}}};
  const auto report = DataOf(GamesPage({}, scan, {56, true, "C:\\games.xml", "today"}))["report"];
  EXPECT_EQ(report["catalogueFile"], "C:\\games.xml");
  EXPECT_EQ(report["began"], "today");
  EXPECT_EQ(report["raw"], 2);
  EXPECT_EQ(report["unique"], 1);
  EXPECT_EQ(report["strategies"][0],
            nlohmann::json::parse(R"({"name": "Some Search", "level": 3, "records": 0, "found": 1,
    "failure": "Some Search", "milliseconds": 2.5, "lines": ["a line"], "asked": 2, "missed": 1,
    "reasons": [{"text": "Some Search doesn't exist", "count": 1}], "reasonsLeftOut": 0,
    "kinds": [{"name": "attributes", "asked": 2, "missed": 1}],
    "questions": [{"text": "look for C:\\a.exe", "answer": "Some Search", "ok": true},
                  {"text": "Some Search doesn't exist", "answer": "", "ok": false}]})"));
}

TEST(HostHtmlPage, OfManyQuestionsTheFirstStandInThePageAndAllAreCounted) {
  ObservedScan scan = ScanOf("Some Search");
  scan.runs.resize(1);
  for (int i = 0; i < 50000; ++i) {
    scan.runs[0].heard.push_back(
        {{QuestionKind::kAttributes, std::to_string(i), "", RegistryView::kNative, ""}, {}, 0});
  }
  const std::string page = GamesPage({}, scan);
  const auto strategy = DataOf(page)["report"]["strategies"][0];
  EXPECT_EQ(strategy["asked"], 50002);
  EXPECT_EQ(strategy["missed"], 50001);
  EXPECT_EQ(strategy["questions"].size(), kMostQuestions);
  EXPECT_EQ(strategy["reasons"].size(), kMostReasons);
  EXPECT_EQ(strategy["reasonsLeftOut"], 50001 - kMostReasons);
  EXPECT_LT(page.size(), 200000u);
}

class HostHtmlPageOfAScan : public testing::Test {
 protected:
  void SetUp() override {
    ApplyDescription(desktop_, tests::ReadSource("desktop/samples/sample-desktop.json"));
  }

  desktop::Desktop desktop_;
};

TEST_F(HostHtmlPageOfAScan, ExplainsEachGameByTheStrategyThatFoundIt) {
  const ObservedScan scan = ObserveScan(R"(C:\TarnwickDemo\MasterGameList.xml)", {});
  const ComScope com;
  const auto data = DataOf(GamesPage(GamesFromJson(WriteScanJson(scan.unique), scan.report), scan));
  ASSERT_EQ(data["items"].size(), scan.unique.size());
  ASSERT_GT(scan.unique.size(), 30u);
  for (size_t i = 0; i < scan.unique.size(); ++i) {
    const auto& item = data["items"][i];
    EXPECT_EQ(item["name"], scan.unique[i].name);
    EXPECT_EQ(item["explanation"]["source"], scan.unique[i].source);
    EXPECT_EQ(item["explanation"]["strategy"], item["detail"]);
    EXPECT_FALSE(item["explanation"]["evidence"].empty()) << item["name"];
  }
  EXPECT_EQ(data["report"]["strategies"].size(), scan.runs.size());
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
