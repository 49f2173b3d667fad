#include "launchers/store_cache_reader.h"

#include "support/hex_page.h"
#include "support/hostile_texts.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

EntitlementsCache Entitlements(std::string_view text) {
  EntitlementsCache cache;
  ParseEntitlements(text, cache);
  return cache;
}

const std::string kEntitlements =
    R"({"User":"me","Entitlements":[{"ProductId":"9AAA","ProductKind":"Game","SkuId":"0010"},)"
    R"({"ProductKind":"Application","ProductId":"9BBB"},{"ProductId":"9CCC","ProductKind":"Игра"}],"Version":2})";

TEST(StoreCacheReader, ReadsTheProductsOfAllObjects) {
  EXPECT_THAT(Entitlements(kEntitlements),
              ElementsAre(Pair("9AAA", "Game"), Pair("9BBB", "Application"), Pair("9CCC", "Игра")));
}

TEST(StoreCacheReader, ReadsTheExampleOfItsPage) {
  EXPECT_THAT(Entitlements(tests::HexExample("store-entitlements")),
              ElementsAre(Pair("9NBLGGH1", "Game"), Pair("9WZDNCR2", "Application")));
  const FulfillmentData data = ParseFulfillmentData(tests::HexExample("store-entitlements", 1));
  EXPECT_EQ(data.productId, "9NBLGGH1");
  EXPECT_EQ(data.packageFamilyName, "Studio.Saga_8wekyb3d8bbwe");
}

TEST(StoreCacheReader, LooksAtNothingBeforeTheEntitlements) {
  EXPECT_THAT(Entitlements(R"([{"ProductId":"1","ProductKind":"Game"}])"), IsEmpty());
  EXPECT_THAT(
      Entitlements(
          R"([{"ProductId":"1","ProductKind":"Game"}],"Entitlements":[{"ProductId":"2","ProductKind":"Game"}])"),
      ElementsAre(Pair("2", "Game")));
  EXPECT_THAT(Entitlements(R"({"entitlements":[{"ProductId":"1","ProductKind":"Game"}]})"), IsEmpty());
}

TEST(StoreCacheReader, TakesOnlyObjectsWithBothTexts) {
  EXPECT_THAT(
      Entitlements(
          R"({"Entitlements":[{"ProductId":"1"},{"ProductKind":"Game"},{},{"ProductId":"","ProductKind":"Game"},)"
          R"({"ProductId":"2","ProductKind":"Game"}]})"),
      ElementsAre(Pair("2", "Game")));
}

TEST(StoreCacheReader, ReadsAcrossLineEnds) {
  EXPECT_THAT(Entitlements("{\r\n \"Entitlements\" :\r\n [\r\n {\r\n \"ProductId\" :\r\n\t\"1\" "
                           ",\n\"ProductKind\":\n\"Game\"\r\n}\r\n]}"),
              ElementsAre(Pair("1", "Game")));
}

TEST(StoreCacheReader, KeepsTheFirstOfTwoEntriesOfOneProduct) {
  EntitlementsCache cache = {{"1", "Before"}};
  ParseEntitlements(
      R"("Entitlements":[{"ProductId":"1","ProductKind":"Game"},{"ProductId":"2","ProductKind":"Game"},)"
      R"({"ProductId":"2","ProductKind":"Application"}])",
      cache);
  EXPECT_THAT(cache, ElementsAre(Pair("1", "Before"), Pair("2", "Game")));
}

TEST(StoreCacheReader, EndsAnObjectAtItsFirstClosingBrace) {
  EXPECT_THAT(Entitlements(R"("Entitlements":[{"ProductId":"1","Sku":{"Id":"x"},"ProductKind":"Game"}])"),
              IsEmpty());
  EXPECT_THAT(Entitlements(R"("Entitlements":{"Items":[{"ProductId":"1","ProductKind":"Game"}]})"),
              ElementsAre(Pair("1", "Game")));
}

TEST(StoreCacheReader, TakesWhateverStandsInQuotesBehindAKey) {
  EXPECT_THAT(Entitlements(R"("Entitlements":[{"ProductKind":"Game","ProductId":7,"Name":"x"}])"),
              ElementsAre(Pair("Name", "Game")));
}

TEST(StoreCacheReader, ReadsWholeEntriesOfATruncatedFile) {
  const EntitlementsCache whole = Entitlements(kEntitlements);
  for (size_t length = 0; length < kEntitlements.size(); ++length) {
    const EntitlementsCache cut = Entitlements(std::string_view(kEntitlements).substr(0, length));
    for (const auto& [id, kind] : cut) EXPECT_EQ(whole.at(id), kind) << length;
    EXPECT_EQ(cut.contains("9AAA"), length > kEntitlements.find('}')) << length;
  }
}

TEST(StoreCacheReader, ReadsFulfillmentData) {
  const FulfillmentData data = ParseFulfillmentData(
      R"({"ProductId":"outer","FulfillmentData":{"PackageFamilyName":"Игра_1","ProductId":"9X"}})");
  EXPECT_EQ(data.productId, "9X");
  EXPECT_EQ(data.packageFamilyName, "Игра_1");
}

TEST(StoreCacheReader, ReadsNoFulfillmentDataWhereThereIsNone) {
  for (const std::string text :
       {R"({"ProductId":"9X"})", R"({"fulfillmentdata":{"ProductId":"9X"}})",
        R"({"FulfillmentData":"ProductId"})", R"({"FulfillmentData":{"ProductId":"9X")"}) {
    EXPECT_EQ(ParseFulfillmentData(text).productId, "") << text;
    EXPECT_EQ(ParseFulfillmentData(text).packageFamilyName, "") << text;
  }
  EXPECT_EQ(ParseFulfillmentData(R"({"FulfillmentData":{"PackageFamilyName":"a_b"}})").packageFamilyName,
            "a_b");
  EXPECT_EQ(ParseFulfillmentData(R"({"FulfillmentData":{"PackageFamilyName":"a_b"}})").productId, "");
}

TEST(StoreCacheReader, ReadsFulfillmentDataTruncatedAtEveryByte) {
  const std::string text = R"({"FulfillmentData":{"ProductId":"9X","PackageFamilyName":"a_b"}})";
  for (size_t length = 0; length < text.size() - 1; ++length) {
    const FulfillmentData data = ParseFulfillmentData(std::string_view(text).substr(0, length));
    EXPECT_EQ(data.productId, "") << length;
    EXPECT_EQ(data.packageFamilyName, "") << length;
  }
}

TEST(StoreCacheReader, FindsNothingInMeaninglessTexts) {
  for (const std::string& text : tests::MeaninglessTexts(kEntitlements)) {
    EXPECT_THAT(Entitlements(text), IsEmpty());
    EXPECT_THAT(Entitlements("\"Entitlements\"" + text), IsEmpty());
    EXPECT_EQ(ParseFulfillmentData(text).productId, "");
    EXPECT_EQ(ParseFulfillmentData("\"FulfillmentData\"" + text).productId, "");
  }
}

// Fifty megabytes of a pattern, made from a longer block of it: a piece at a time takes seconds.
std::string Huge(const std::string& pattern) {
  return tests::Repeated(tests::Repeated(pattern, pattern.size() * 4096), tests::kHuge);
}

TEST(StoreCacheReader, ReadsFiftyMegabytesOfOneLine) {
  for (const std::string pattern :
       {"{", "}", "\"", "\"Entitlements\"{", "{\"ProductId\":", "{\"Sku\":\"0010\"}"}) {
    EXPECT_THAT(Entitlements("\"Entitlements\"" + Huge(pattern)), IsEmpty()) << pattern;
  }
  const std::string object = R"({"ProductId":"9AAA","ProductKind":"Game"},)";
  EXPECT_THAT(Entitlements("\"Entitlements\":[" + Huge(object)), ElementsAre(Pair("9AAA", "Game")));
}

}  // namespace
}  // namespace tarnwick
