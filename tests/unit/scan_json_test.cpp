#include "core/scan_json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace tarnwick {
namespace {

std::string NoIcon(const ScanResult&) { return {}; }

ScanResult Result(const std::string& name, const std::string& path, const std::string& url = "") {
  ScanResult result;
  result.name = name;
  result.exePath = path;
  result.launchUrl = url;
  return result;
}

TEST(ScanJson, OfNothingIsAnEmptyArray) { EXPECT_EQ(WriteScanJson({}, NoIcon), "[]"); }

TEST(ScanJson, WritesTheFiveMembersInOrderWithoutBlanks) {
  ScanResult result = Result("Foo", "C:\\Games\\foo.exe", "steam://run/10");
  result.source = "not shown";
  result.displayIcon = "not shown";
  result.sourceExId = "not shown";
  EXPECT_EQ(
      WriteScanJson({result}, [](const ScanResult&) { return std::string("data:image/png;base64,AA=="); }),
      R"([{"name":"Foo","loc":"C:\\Games\\foo.exe","icon":"data:image/png;base64,AA==",)"
      R"("launchUrl":"steam://run/10","exeName":"foo.exe"}])");
}

TEST(ScanJson, SeparatesEntriesByOneComma) {
  EXPECT_EQ(WriteScanJson({Result("a", ""), Result("b", ""), Result("a", "")}, NoIcon),
            R"([{"name":"a","loc":"","icon":"","launchUrl":"","exeName":""},)"
            R"({"name":"b","loc":"","icon":"","launchUrl":"","exeName":""},)"
            R"({"name":"a","loc":"","icon":"","launchUrl":"","exeName":""}])");
}

TEST(ScanJson, BuildsOneIconForEachEntryInOrder) {
  std::vector<std::string> asked;
  const auto icon = [&](const ScanResult& result) {
    asked.push_back(result.name);
    return "icon " + std::to_string(asked.size());
  };
  const auto json = nlohmann::json::parse(WriteScanJson({Result("a", ""), Result("b", "")}, icon));
  EXPECT_THAT(asked, testing::ElementsAre("a", "b"));
  EXPECT_EQ(json.at(0).at("icon"), "icon 1");
  EXPECT_EQ(json.at(1).at("icon"), "icon 2");
}

TEST(ScanJson, EscapesQuotesLineFeedsAndControlCharacters) {
  EXPECT_THAT(WriteScanJson({Result("a\"b\nc\td\re", "")}, NoIcon),
              testing::StartsWith(R"([{"name":"a\"b\nc\u0009d\u000de",)"));
}

TEST(ScanJson, EscapesEveryMember) {
  const std::string text = WriteScanJson({Result("n\"", "C:\\\"x\"\\a\n.exe", "u\"\\")}, NoIcon);
  const auto entry = nlohmann::json::parse(text)[0];
  EXPECT_EQ(entry.at("name"), "n\"");
  EXPECT_EQ(entry.at("loc"), "C:\\\"x\"\\a\n.exe");
  EXPECT_EQ(entry.at("launchUrl"), "u\"\\");
  EXPECT_EQ(entry.at("exeName"), "a\n.exe");
}

TEST(ScanJson, NormalisesThePathButNotTheName) {
  const auto entry =
      nlohmann::json::parse(WriteScanJson({Result("x//y", "C:/Games//x.exe", "a//b")}, NoIcon))[0];
  EXPECT_EQ(entry.at("loc"), "C:\\Games\\x.exe");
  EXPECT_EQ(entry.at("exeName"), "x.exe");
  EXPECT_EQ(entry.at("name"), "x//y");
  EXPECT_EQ(entry.at("launchUrl"), "a//b");
  EXPECT_THAT(WriteScanJson({Result("", "C:/Games//x.exe")}, NoIcon),
              testing::HasSubstr(R"("loc":"C:\\Games\\x.exe")"));
}

TEST(ScanJson, KeepsCharactersOfAllKinds) {
  const std::string name = "Тетрис 俄罗斯方块 é \xF0\x9F\x8E\xAE";
  const std::string text = WriteScanJson({Result(name, "C:\\Игры\\游戏.exe")}, NoIcon);
  EXPECT_THAT(text, testing::HasSubstr(name));
  EXPECT_EQ(nlohmann::json::parse(text)[0].at("exeName"), "游戏.exe");
}

TEST(ScanJson, ReplacesBrokenUtf8ByValidText) {
  EXPECT_EQ(nlohmann::json::parse(WriteScanJson({Result("a\xFF", "C:\\\xC3.exe")}, NoIcon)).size(), 1u);
}

TEST(ScanJson, TakesTheFileNameBehindTheLastBackslash) {
  EXPECT_EQ(ExeFileName("C:\\a\\b.exe"), "b.exe");
  EXPECT_EQ(ExeFileName("C:\\a/b.exe"), "a/b.exe");
  EXPECT_EQ(ExeFileName("C:/a/b.exe"), "b.exe");
  EXPECT_EQ(ExeFileName("C:/a\\b.exe"), "b.exe");
  EXPECT_EQ(ExeFileName("b.exe"), "b.exe");
  EXPECT_EQ(ExeFileName(""), "");
  EXPECT_EQ(ExeFileName("C:\\a\\"), "");
  EXPECT_EQ(ExeFileName("C:/a/"), "");
}

}  // namespace
}  // namespace tarnwick
