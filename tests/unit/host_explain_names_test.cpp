// Names as people compare them.
#include "host/explain/name_folding.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using host::AreNear;
using host::FoldedName;
using host::LooseName;

bool Near(const std::string& one, const std::string& other) {
  return AreNear(LooseName(one), LooseName(other));
}

TEST(HostExplainNames, FoldedHaveNeitherCaseNorAccents) {
  EXPECT_EQ(FoldedName("Château BRUMAIRE"), "chateau brumaire");
  EXPECT_EQ(FoldedName("Ve\u0301rite\u0301"), "verite");
  EXPECT_EQ(FoldedName("ВЬЮГОГРАД"), "вьюгоград");
  EXPECT_EQ(FoldedName("青瓷谜城"), "青瓷谜城");
  EXPECT_EQ(FoldedName(""), "");
}

TEST(HostExplainNames, MalformedTextsAreTakenAsTheyCanBeRead) { EXPECT_EQ(FoldedName("A\xFF"), "a\uFFFD"); }

TEST(HostExplainNames, AreNearInSpiteOfSignsSpacesAndNumerals) {
  EXPECT_TRUE(Near("Foo 2", "Foo II"));
  EXPECT_TRUE(Near("Foo 2", "Foo \u2161"));
  EXPECT_TRUE(Near("Salt & Signal", "Salt &  Signal\u2122"));
  EXPECT_TRUE(Near("Far Beacon", "FarBeacon\u00AE"));
  EXPECT_TRUE(Near("Château", "CHATEAU"));
  EXPECT_TRUE(Near("Lantern", "Lantren"));
  EXPECT_TRUE(Near("Вьюгоград", "Выюгоград"));
}

TEST(HostExplainNames, AreNotNearWhereTheyNameAnotherGame) {
  EXPECT_FALSE(Near("Foo 2", "Foo 3"));
  EXPECT_FALSE(Near("Foo", "Foe"));
  EXPECT_FALSE(Near("Lantern", "Lanterns 2"));
  EXPECT_FALSE(Near("Lantern", "Kiteborne"));
}

TEST(HostExplainNames, AFirstWordIsNoNumeral) { EXPECT_EQ(LooseName("V Rising II"), "vrising2"); }

}  // namespace
}  // namespace tarnwick
