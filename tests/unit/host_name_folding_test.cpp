// Names that a person would call the same.
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

TEST(HostNameFolding, CaseDoesNotCount) {
  EXPECT_EQ(FoldedName("Lantern HARBOUR"), "lantern harbour");
  EXPECT_EQ(FoldedName("\u00C4\u00D8\u0416\u03A9"), FoldedName("\u00E4\u00F8\u0436\u03C9"));
}

TEST(HostNameFolding, AccentsDoNotCountHoweverTheyAreWritten) {
  EXPECT_EQ(FoldedName("Caf\u00E9"), "cafe");
  EXPECT_EQ(FoldedName("Cafe\u0301"), "cafe");
  EXPECT_EQ(FoldedName("\u00C5ngstr\u00F6m"), "angstrom");
}

TEST(HostNameFolding, SignsOfRightsAreDropped) {
  EXPECT_EQ(FoldedName("Fern\u2122 Pad\u00AE 2\u00A9\u2120"), "fern pad 2");
}

TEST(HostNameFolding, CompatibleFormsAreOne) {
  EXPECT_EQ(FoldedName("\uFF26\uFF45\uFF52\uFF4E"), "fern");
  EXPECT_EQ(FoldedName("\uFB01g \u2161"), "fig ii");
}

TEST(HostNameFolding, WhiteSpaceIsOneBlankAndNoneAtTheEnds) {
  EXPECT_EQ(FoldedName(" \tFern\u00A0 \u3000Pad \n"), "fern pad");
  EXPECT_EQ(FoldedName("\u2122 Fern"), "fern");
}

TEST(HostNameFolding, DigitsAndPunctuationStay) {
  EXPECT_EQ(FoldedName("Fern: 2.0 - a_b^"), "fern: 2.0 - a_b^");
}

TEST(HostNameFolding, NothingStaysNothing) {
  EXPECT_EQ(FoldedName(""), "");
  EXPECT_EQ(FoldedName(" \u2122 "), "");
  EXPECT_EQ(FoldedName("a\xFF"), "a\uFFFD");
}

TEST(HostNameFolding, ALongNameIsFoldedWhole) {
  std::string ligatures;
  std::string plain;
  for (int i = 0; i < 3000; ++i) {
    ligatures += "\uFDFA";
    plain += FoldedName("\uFDFA");
  }
  EXPECT_EQ(FoldedName(ligatures), plain);
  EXPECT_GT(plain.size(), 3000u * 18u);
}

TEST(HostNameFolding, NamesAreNearInSpiteOfSignsSpacesAndNumerals) {
  EXPECT_TRUE(Near("Foo 2", "Foo II"));
  EXPECT_TRUE(Near("Foo 2", "Foo \u2161"));
  EXPECT_TRUE(Near("Salt & Signal", "Salt &  Signal\u2122"));
  EXPECT_TRUE(Near("Far Beacon", "FarBeacon\u00AE"));
  EXPECT_TRUE(Near("Château", "CHATEAU"));
  EXPECT_TRUE(Near("Lantern", "Lantren"));
  EXPECT_TRUE(Near("Вьюгоград", "Выюгоград"));
}

TEST(HostNameFolding, NamesAreNotNearWhereTheyNameAnotherGame) {
  EXPECT_FALSE(Near("Foo 2", "Foo 3"));
  EXPECT_FALSE(Near("Foo", "Foe"));
  EXPECT_FALSE(Near("Lantern", "Lanterns 2"));
  EXPECT_FALSE(Near("Lantern", "Kiteborne"));
}

TEST(HostNameFolding, AFirstWordIsNoNumeral) { EXPECT_EQ(LooseName("V Rising II"), "vrising2"); }

}  // namespace
}  // namespace tarnwick
