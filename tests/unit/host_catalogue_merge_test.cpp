#include "host/catalogue/merge.h"

#include <gmock/gmock.h>

namespace tarnwick::host {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

GameSignature Game(const std::string& name, int32_t kind, const std::string& id, const std::string& exe) {
  GameSignature game;
  game.DisplayName = name;
  game.SourceKind = kind;
  game.SourceExId = id;
  game.DefaultExe = exe;
  return game;
}

const GameSignature kWren = Game("Wren", kSourceSteam, "70", "wren.exe");
const GameSignature kOwl = Game("Owl", kSourceGog, "70", "owl.exe");
const GameSignature kFinch = Game("Finch", kSourceNone, "", "finch.exe");

TEST(HostCatalogueMerge, KeepsTheOrderOfBoth) {
  const MergedCatalogue merged = MergeCatalogues({kWren, kOwl}, {kFinch});
  ASSERT_THAT(merged.games, SizeIs(3));
  EXPECT_EQ(merged.games[1].DisplayName, "Owl");
  EXPECT_EQ(merged.games[2].DisplayName, "Finch");
  EXPECT_THAT(merged.conflicts, IsEmpty());
}

TEST(HostCatalogueMerge, KeepsTheFirstOfOneSourceAndIdAndListsWhatDiffers) {
  GameSignature other = Game("Wren Gold", kSourceSteam, "70", "gold.exe");
  const MergedCatalogue merged = MergeCatalogues({kWren}, {other, kWren});
  ASSERT_THAT(merged.games, SizeIs(1));
  EXPECT_EQ(merged.games[0].DefaultExe, "wren.exe");
  EXPECT_EQ(merged.equal, 1u);
  ASSERT_THAT(merged.conflicts, SizeIs(1));
  EXPECT_EQ(merged.conflicts[0].before.DisplayName, "Wren");
  ASSERT_THAT(merged.conflicts[0].fields, SizeIs(2));
  EXPECT_EQ(merged.conflicts[0].fields[0].element, "DisplayName");
  EXPECT_EQ(merged.conflicts[0].fields[0].after, "Wren Gold");
  EXPECT_EQ(merged.conflicts[0].fields[1].before, "wren.exe");
}

TEST(HostCatalogueMerge, WithoutAnIdSourceAndNameTell) {
  EXPECT_THAT(MergeCatalogues({kFinch}, {Game("Finch", kSourceNone, "", "other.exe")}).games, SizeIs(1));
  EXPECT_THAT(MergeCatalogues({kFinch}, {Game("finch", kSourceNone, "", "")}).games, SizeIs(2));
  EXPECT_THAT(MergeCatalogues({kFinch}, {Game("Finch", kSourceEa, "", "")}).games, SizeIs(2));
  EXPECT_THAT(MergeCatalogues({kFinch}, {Game("Finch", kSourceNone, "Finch", "")}).games, SizeIs(2));
}

TEST(HostCatalogueMerge, ComparingTellsAddedRemovedAndChanged) {
  GameSignature changed = kOwl;
  changed.DefaultExe = "owl2.exe";
  const CatalogueDifference difference = CompareCatalogues({kWren, kOwl}, {kFinch, changed});
  ASSERT_THAT(difference.added, SizeIs(1));
  EXPECT_EQ(difference.added[0].DisplayName, "Finch");
  ASSERT_THAT(difference.removed, SizeIs(1));
  EXPECT_EQ(difference.removed[0].DisplayName, "Wren");
  ASSERT_THAT(difference.changed, SizeIs(1));
  ASSERT_THAT(difference.changed[0].fields, SizeIs(1));
  EXPECT_EQ(difference.changed[0].fields[0].before, "owl.exe");
  EXPECT_EQ(difference.changed[0].fields[0].after, "owl2.exe");
}

TEST(HostCatalogueMerge, OrderIsNoDifferenceAndRepeatedRecordsAreComparedOneByOne) {
  const CatalogueDifference none = CompareCatalogues({kWren, kOwl, kWren}, {kWren, kWren, kOwl});
  EXPECT_THAT(none.added, IsEmpty());
  EXPECT_THAT(none.removed, IsEmpty());
  EXPECT_THAT(none.changed, IsEmpty());
  EXPECT_THAT(CompareCatalogues({kWren}, {kWren, kWren}).added, SizeIs(1));
  EXPECT_THAT(CompareCatalogues({kWren, kWren}, {kWren}).removed, SizeIs(1));
}

TEST(HostCatalogueMerge, ATitleNamesSourceIdAndName) {
  EXPECT_EQ(RecordTitle(kWren), "STEAM 70 Wren");
  EXPECT_EQ(RecordTitle(kFinch), "no source Finch");
  EXPECT_EQ(RecordTitle({}), "no source (no name)");
}

}  // namespace
}  // namespace tarnwick::host
