#include "host/catalogue/check_findings.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnwick::host {
namespace {

Finding PlacedAt(const std::string& text, size_t at) {
  Findings findings;
  AddFinding(findings, {at, kNoName, {}, {}});
  PlaceFindings(findings, text);
  return findings.list.front();
}

TEST(CatalogueCheckFindings, LinesAndColumnsCountFromOneInCharacters) {
  const std::string text = "a\xC3\xA4\xF0\x9F\x98\x80z\r\nb";
  EXPECT_EQ(PlacedAt(text, 0).column, 1u);
  EXPECT_EQ(PlacedAt(text, 7).column, 4u);
  EXPECT_EQ(PlacedAt(text, 10).line, 2u);
  EXPECT_EQ(PlacedAt(text, 10).column, 1u);
  EXPECT_EQ(PlacedAt(text, 1000).line, 2u);
}

TEST(CatalogueCheckFindings, AByteOrderMarkTakesNoColumn) {
  EXPECT_EQ(PlacedAt("\xEF\xBB\xBF<A/>", 3).column, 1u);
}

TEST(CatalogueCheckFindings, AreSortedByPlace) {
  Findings findings;
  for (const size_t at : {5u, 1u, 3u}) AddFinding(findings, {at, kNoName, {}, {}});
  PlaceFindings(findings, "aaaaaaaaa");
  EXPECT_EQ(findings.list[0].at, 1u);
  EXPECT_EQ(findings.list[2].column, 6u);
}

TEST(CatalogueCheckFindings, AParsersColumnsCountUtf16Units) {
  const std::string text = "x\n\xF0\x9F\x98\x80<\xC3\xA4>";
  EXPECT_EQ(OffsetOf(text, 2, 1), 2u);
  EXPECT_EQ(OffsetOf(text, 2, 3), 6u);
  EXPECT_EQ(OffsetOf(text, 2, 5), 9u);
  EXPECT_EQ(OffsetOf(text, 9, 1), text.size());
  EXPECT_EQ(OffsetOf("\xEF\xBB\xBF<A/>", 1, 1), 3u);
}

TEST(CatalogueCheckFindings, QuotedTextsAreShortAndOnOneLine) {
  EXPECT_EQ(Quoted("a\nb"), "'a b'");
  EXPECT_EQ(Quoted(std::string(79, 'x') + "\xC3\xA4"), "'" + std::string(79, 'x') + "...'");
}

}  // namespace
}  // namespace tarnwick::host
