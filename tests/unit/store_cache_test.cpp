#include "launchers/store_cache.h"

#include "desktop/desktop.h"
#include "support/debug_capture.h"
#include "support/failing_allocation.h"
#include "support/store_world.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using desktop::Desktop;
using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using tests::kInstallAgentKey;
using tests::kInstallServiceKey;

void Category(Desktop& desktop, const std::string& key, const std::string& family, const std::string& id,
              View view) {
  desktop.String(key, "PackageFamilyName", family, view);
  desktop.String(key, "ProductId", id, view);
}

std::string Entitlement(const std::string& id, const std::string& kind) {
  return R"({"Entitlements":[{"ProductId":")" + id + R"(","ProductKind":")" + kind + "\"}]}";
}

TEST(StoreCache, IsEmptyAndSilentWhereThereIsNone) {
  tests::DebugCapture capture;
  EXPECT_THAT(LoadCategoryCache(), IsEmpty());
  EXPECT_THAT(LoadEntitlementsCache(), IsEmpty());
  EXPECT_THAT(capture.Lines(), IsEmpty());
}

TEST(StoreCache, ReadsTheCategoriesOfBothKeysAndPrefersTheFirst) {
  Desktop desktop;
  Category(desktop, kInstallServiceKey + R"(\1)", "Игра_p", "id of service", View::k64);
  Category(desktop, kInstallAgentKey + R"(\1)", "Игра_p", "id of agent", View::k64);
  Category(desktop, kInstallAgentKey + R"(\2)", "Only_p", "only", View::k64);
  EXPECT_THAT(LoadCategoryCache(), ElementsAre(Pair("Only_p", "only"), Pair("Игра_p", "id of service")));
}

TEST(StoreCache, KeepsTheFirstOfTwoSubkeysOfOneFamily) {
  Desktop desktop;
  Category(desktop, kInstallServiceKey + R"(\1)", "A_p", "first", View::k64);
  Category(desktop, kInstallServiceKey + R"(\2)", "A_p", "second", View::k64);
  EXPECT_THAT(LoadCategoryCache(), ElementsAre(Pair("A_p", "first")));
}

TEST(StoreCache, ListsThe32BitViewOnlyWhereThe64BitViewHasNoSubkeys) {
  Desktop desktop;
  Category(desktop, kInstallServiceKey + R"(\1)", "A_p", "narrow", View::k32);
  EXPECT_THAT(LoadCategoryCache(), ElementsAre(Pair("A_p", "narrow")));
  Category(desktop, kInstallServiceKey + R"(\2)", "B_p", "wide", View::k64);
  EXPECT_THAT(LoadCategoryCache(), ElementsAre(Pair("B_p", "wide")));
}

TEST(StoreCache, TakesTheProductFromTheFulfillmentDataOfAnyValue) {
  Desktop desktop;
  const std::string key = kInstallServiceKey + R"(\1)";
  desktop.String(key, "A note", R"({"FulfillmentData":null})", View::k64);
  desktop.Dword(key, "Counter", 7, View::k64);
  desktop.String(key, "Payload", R"({"FulfillmentData":{"ProductId":"9X","PackageFamilyName":"A_p"}})",
                 View::k64);
  EXPECT_THAT(LoadCategoryCache(), ElementsAre(Pair("A_p", "9X")));
}

TEST(StoreCache, TakesTheProductFromTheFulfillmentDataOfA32BitKeyToo) {
  Desktop desktop;
  desktop.String(kInstallAgentKey + R"(\1)", "Data",
                 R"({"FulfillmentData":{"ProductId":"9X","PackageFamilyName":"A_p"}})", View::k32);
  EXPECT_THAT(LoadCategoryCache(), ElementsAre(Pair("A_p", "9X")));
}

TEST(StoreCache, LooksForNoFulfillmentDataWhereTheProductStandsInAValue) {
  Desktop desktop;
  const std::string key = kInstallServiceKey + R"(\1)";
  Category(desktop, key, "A_p", "own", View::k64);
  desktop.String(key, "Data", R"({"FulfillmentData":{"ProductId":"9X","PackageFamilyName":"B_p"}})",
                 View::k64);
  EXPECT_THAT(LoadCategoryCache(), ElementsAre(Pair("A_p", "own")));
}

TEST(StoreCache, KeepsTheFamilyOfTheValueWhereTheDataHasNone) {
  Desktop desktop;
  const std::string key = kInstallServiceKey + R"(\1)";
  desktop.String(key, "PackageFamilyName", "A_p", View::k64);
  desktop.String(key, "Data", R"({"FulfillmentData":{"ProductId":"9X"}})", View::k64);
  EXPECT_THAT(LoadCategoryCache(), ElementsAre(Pair("A_p", "9X")));
}

TEST(StoreCache, PassesOverCategoriesWithoutFamilyOrProduct) {
  Desktop desktop;
  Category(desktop, kInstallServiceKey + R"(\1)", "", "id", View::k64);
  Category(desktop, kInstallServiceKey + R"(\2)", "A_p", "", View::k64);
  desktop.Key(kInstallServiceKey + R"(\3)", View::k64);
  EXPECT_THAT(LoadCategoryCache(), IsEmpty());
}

TEST(StoreCache, ReadsEntitlementsOfTheJsonFilesOfOneFolder) {
  Desktop desktop;
  const std::string folder = tests::StoreCacheFolder();
  desktop.File(folder + R"(\a.json)", Entitlement("1", "Game"));
  desktop.File(folder + R"(\Игра.json)", Entitlement("2", "Application"));
  desktop.File(folder + R"(\b.txt)", Entitlement("3", "Game"));
  desktop.File(folder + R"(\c.json.bak)", Entitlement("4", "Game"));
  desktop.File(folder + R"(\Below\d.json)", Entitlement("5", "Game"));
  desktop.File(folder + R"(\folder.json\e.json)", Entitlement("6", "Game"));
  desktop.File(folder + R"(\empty.json)", "");
  EXPECT_THAT(LoadEntitlementsCache(), ElementsAre(Pair("1", "Game"), Pair("2", "Application")));
}

TEST(StoreCache, KeepsTheEntitlementsReadBeforeAFailure) {
  Desktop desktop;
  desktop.File(tests::StoreCacheFolder() + R"(\a.json)", Entitlement("1", "Game"));
  desktop.File(tests::StoreCacheFolder() + R"(\b.json)",
               std::string(200'000, ' ') + Entitlement("2", "Game"));
  tests::DebugCapture capture;
  EntitlementsCache cache;
  {
    tests::FailingAllocation failing(100'000);
    cache = LoadEntitlementsCache();
  }
  EXPECT_THAT(cache, ElementsAre(Pair("1", "Game")));
  EXPECT_THAT(capture.Lines(), ElementsAre("[UWP] Error reading EntitlementsCache: std::bad_alloc"));
}

}  // namespace
}  // namespace tarnwick
