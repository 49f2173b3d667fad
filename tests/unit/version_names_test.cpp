#include "core/version_names.h"

#include "common/wide_text.h"
#include "desktop/desktop.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using Strings = std::map<std::string, std::string>;

class VersionNames : public testing::Test {
 protected:
  std::wstring NameOf(const std::vector<desktop::VersionStrings>& versions) {
    desktop::ExecutableOptions options;
    options.versions = versions;
    desktop_.Executable(kPath, options);
    return VersionName(common::Wide(kPath));
  }

  static constexpr char kPath[] = R"(C:\TarnwickTest\VersionNames\game.exe)";
  desktop::Desktop desktop_;
};

TEST_F(VersionNames, PrefersTheDescription) {
  EXPECT_EQ(NameOf({{0x409, 1200, {{"FileDescription", "Foo the Game"}, {"ProductName", "Foo"}}}}),
            L"Foo the Game");
}

TEST_F(VersionNames, TakesTheProductWhereThereIsNoDescription) {
  EXPECT_EQ(NameOf({{0x409, 1200, {{"ProductName", "Foo"}}}}), L"Foo");
}

TEST_F(VersionNames, TakesTheProductWhereTheDescriptionIsEmpty) {
  EXPECT_EQ(NameOf({{0x409, 1200, {{"FileDescription", ""}, {"ProductName", "Foo"}}}}), L"Foo");
}

TEST_F(VersionNames, IsEmptyWithoutEither) {
  EXPECT_EQ(NameOf({{0x409, 1200, {{"CompanyName", "Bar"}}}}), L"");
  EXPECT_EQ(NameOf({{0x409, 1200, {{"FileDescription", ""}, {"ProductName", ""}}}}), L"");
  EXPECT_EQ(NameOf({}), L"");
  EXPECT_EQ(VersionName(L"C:\\no such file.exe"), L"");
  EXPECT_EQ(VersionName(L""), L"");
}

TEST_F(VersionNames, TakesTheFirstTranslationThatHasIt) {
  EXPECT_EQ(NameOf({{0x407, 1200, {{"FileDescription", "Deutsch"}}},
                    {0x409, 1200, {{"FileDescription", "English"}}}}),
            L"Deutsch");
  EXPECT_EQ(
      NameOf({{0x407, 1200, {{"CompanyName", "Bar"}}}, {0x409, 1200, {{"FileDescription", "English"}}}}),
      L"English");
}

TEST_F(VersionNames, DescriptionOfALaterTranslationWinsOverAnEarlierProduct) {
  EXPECT_EQ(
      NameOf({{0x407, 1200, {{"ProductName", "Produkt"}}}, {0x419, 1251, {{"FileDescription", "Описание"}}}}),
      L"Описание");
}

TEST_F(VersionNames, QueriesLanguageAndCodePageAsTheResourceNamesThem) {
  EXPECT_EQ(NameOf({{0x804, 936, {{"FileDescription", "俄罗斯方块"}}}}), L"俄罗斯方块");
  EXPECT_EQ(NameOf({{0, 0, {{"FileDescription", "neutral"}}}}), L"neutral");
}

TEST_F(VersionNames, FileThatIsNoExecutableHasNone) {
  desktop_.File(kPath, "not an executable");
  EXPECT_EQ(VersionName(common::Wide(kPath)), L"");
}

}  // namespace
}  // namespace tarnwick
