#include "host/catalogue/check_layout.h"

#include "support/catalogue_reference.h"
#include "support/catalogue_sample.h"
#include "support/catalogue_text_parts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnwick::host {
namespace {

GameList PlacedRecords(std::string_view text) {
  GameList games;
  RecordPlace place;
  for (size_t at = 0; NextRecord(text, at, place); at = place.end)
    games.push_back(ReadPlacedRecord(text, place));
  return games;
}

void ExpectAsTheLibrary(const std::string& text) {
  EXPECT_EQ(tests::FirstDifference(PlacedRecords(text), ParseCatalogue(text)), -1) << text.substr(0, 300);
}

TEST(CatalogueCheckLayout, FindsWhatTheLibraryReads) {
  for (const auto style :
       {tests::SampleStyle::kSparse, tests::SampleStyle::kFull, tests::SampleStyle::kRough})
    ExpectAsTheLibrary(tests::CatalogueSample(50, style).text());
}

TEST(CatalogueCheckLayout, FindsWhatTheLibraryReadsOfEachTrap) {
  for (const char* inside :
       {"<DefaultExe32>a</DefaultExe32><DefaultExe>b</DefaultExe>",
        "<DefaultExe32 i:nil=\"true\"/><DefaultExe>b</DefaultExe>",
        "<DisplayName i:nil=\"true\">A</DisplayName>", "<DisplayName x=\"</DisplayName>\">A</DisplayName>",
        "<DisplayName x=\"a/>b\">A</DisplayName>",
        "<DisplayName>A</DisplayName ><DisplayName>B</DisplayName>", "<DisplayName>A", "<DisplayName",
        "<DisplayName<RegistryKey>A</RegistryKey></DisplayName>",
        "<GameSignature><DisplayName>A</DisplayName>", "<DisplayName/>A</DisplayName>",
        "<SourceExId>1</SourceExId><SourceEx>Steam</SourceEx>", "<!-- <DisplayName>A</DisplayName> -->",
        "</DisplayName><DisplayName>A</DisplayName>", "<a:DisplayName>A</a:DisplayName>"})
    ExpectAsTheLibrary(tests::RecordOf(inside) + tests::RecordOf("<DisplayName>Z</DisplayName>"));
}

TEST(CatalogueCheckLayout, FindsWhatTheLibraryReadsOfEachBeginning) {
  const std::string text = tests::CatalogueSample(2, tests::SampleStyle::kRough).text();
  for (size_t length = 0; length <= text.size(); ++length) ExpectAsTheLibrary(text.substr(0, length));
}

TEST(CatalogueCheckLayout, AnEmptyElementBehindALongerNameHasNoTextOfItsOwn) {
  for (const char* own : {"<DefaultExe/>", "<DefaultExe i:nil=\"true\">c</DefaultExe>"}) {
    const std::string text =
        tests::RecordOf("<DefaultExe32>a</DefaultExe32>" + std::string(own) + "<DefaultExe>b</DefaultExe>");
    RecordPlace place;
    ASSERT_TRUE(NextRecord(text, 0, place));
    EXPECT_EQ(place.elements[3].own, text.find(own));
    EXPECT_FALSE(OwnText(text, place, 3).Exists()) << own;
  }
}

TEST(CatalogueCheckLayout, GivesThePlacesOfTextsAndTags) {
  const std::string text = "x" + tests::RecordOf("<DefaultExe32>a</DefaultExe32><DefaultExe>b</DefaultExe>");
  RecordPlace place;
  ASSERT_TRUE(NextRecord(text, 0, place));
  EXPECT_EQ(place.open, 1u);
  EXPECT_EQ(place.end, text.size());
  const ElementPlace& exe = place.elements[3];
  EXPECT_EQ(exe.tag, text.find("<DefaultExe32>"));
  EXPECT_EQ(exe.own, text.find("<DefaultExe>"));
  EXPECT_EQ(TextOf(text, exe.text), "a</DefaultExe32><DefaultExe>b");
  EXPECT_EQ(TextOf(text, OwnText(text, place, 3)), "b");
}

TEST(CatalogueCheckLayout, TellsARecordWithoutAnEndFromNone) {
  RecordPlace place;
  EXPECT_FALSE(NextRecord("ab<GameSignature>", 0, place));
  EXPECT_EQ(place.open, 2u);
  EXPECT_FALSE(NextRecord("ab", 0, place));
  EXPECT_EQ(place.open, kNowhere);
}

}  // namespace
}  // namespace tarnwick::host
