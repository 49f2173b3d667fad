#include "core/merge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ScanResult Result(const std::string& name, const std::string& path, const std::string& url = "",
                  const std::string& source = "") {
  ScanResult result;
  result.name = name;
  result.exePath = path;
  result.launchUrl = url;
  result.source = source;
  result.displayIcon = "icon of " + name;
  result.found = true;
  return result;
}

std::vector<std::string> MergedNames(const ScanResults& all) {
  std::vector<std::string> names;
  for (const ScanResult& result : MergeResults(all)) names.push_back(result.name);
  return names;
}

TEST(Merge, RanksSourcesByTheirWords) {
  EXPECT_EQ(SourceRank("HKEY_LOCAL_MACHINE\\SOFTWARE\\Foo"), 3);
  EXPECT_EQ(SourceRank("Steam AppInfo"), 1);
  EXPECT_EQ(SourceRank("Steam App"), 4);
  EXPECT_EQ(SourceRank("Steam App 620"), 4);
  EXPECT_EQ(SourceRank("Steam ID"), 2);
  EXPECT_EQ(SourceRank("Steam"), 0);
  EXPECT_EQ(SourceRank(""), 0);
}

TEST(Merge, TestsTheRanksInTheirOwnOrderAndWithCase) {
  EXPECT_EQ(SourceRank("Steam App of HKEY_CURRENT_USER"), 3);
  EXPECT_EQ(SourceRank("Steam ID, Steam App"), 4);
  EXPECT_EQ(SourceRank("Steam App, Steam AppInfo"), 1);
  EXPECT_EQ(SourceRank("from Steam ID list"), 2);
  EXPECT_EQ(SourceRank("steam app"), 0);
  EXPECT_EQ(SourceRank("hkey_local_machine"), 0);
}

TEST(Merge, OfNothingIsNothing) { EXPECT_THAT(MergeResults({}), IsEmpty()); }

TEST(Merge, ABetterSteamSourceTakesTheFirstOnesPlaceWithAllItsFields) {
  const ScanResults unique = MergeResults(
      {Result("a", "C:\\1.exe", "steam://run/10", "Steam AppInfo (10)"), Result("other", "C:\\2.exe"),
       Result("b", "C:\\3.exe", "steam://run/10", "HKEY_LOCAL_MACHINE\\x")});
  ASSERT_EQ(unique.size(), 2u);
  EXPECT_EQ(unique[0].name, "b");
  EXPECT_EQ(unique[0].exePath, "C:\\3.exe");
  EXPECT_EQ(unique[0].source, "HKEY_LOCAL_MACHINE\\x");
  EXPECT_EQ(unique[0].displayIcon, "icon of b");
  EXPECT_EQ(unique[1].name, "other");
}

TEST(Merge, AWorseSteamSourceIsDropped) {
  EXPECT_THAT(MergedNames({Result("registry", "", "steam://run/10", "HKEY_CURRENT_USER\\x"),
                           Result("id", "", "steam://run/10", "Steam ID")}),
              ElementsAre("registry"));
}

TEST(Merge, OfEqualSteamSourcesTheFirstStays) {
  EXPECT_THAT(MergedNames({Result("first", "", "steam://run/10", "HKEY_CURRENT_USER\\x"),
                           Result("second", "", "steam://run/10", "HKEY_LOCAL_MACHINE\\y")}),
              ElementsAre("first"));
}

TEST(Merge, APlainSteamAppIsTheBestSourceOfAll) {
  EXPECT_THAT(MergedNames({Result("registry", "", "steam://run/10", "HKEY_CURRENT_USER\\x"),
                           Result("app", "", "steam://run/10", "Steam App"),
                           Result("none", "", "steam://run/10", "elsewhere")}),
              ElementsAre("app"));
}

TEST(Merge, SteamUriWithoutAnIdGoesByPath) {
  EXPECT_THAT(MergedNames({Result("a", "C:\\1.exe"), Result("b", "C:\\1.exe", "steam://run/"),
                           Result("c", "C:\\2.exe", "steam://run/")}),
              ElementsAre("a", "c"));
}

TEST(Merge, StripsNothingFromTheAppId) {
  EXPECT_THAT(MergedNames({Result("a", "", "steam://run/123"), Result("b", "", "steam://run/123/"),
                           Result("c", "", "steam://run/123?x=1")}),
              ElementsAre("a", "b", "c"));
}

TEST(Merge, SteamUriFurtherAlongIsNoSteamResult) {
  EXPECT_THAT(
      MergedNames({Result("a", "C:\\1.exe", "x steam://run/123"),
                   Result("b", "C:\\2.exe", "x steam://run/123"), Result("c", "C:\\3.exe", "STEAM://RUN/123"),
                   Result("d", "C:\\4.exe", "STEAM://RUN/123")}),
      ElementsAre("a", "b", "c", "d"));
}

TEST(Merge, SteamResultStandsBesideAnEarlierEntryOfItsPath) {
  EXPECT_THAT(MergedNames({Result("plain", "C:\\1.exe"), Result("steam", "C:\\1.exe", "steam://run/10")}),
              ElementsAre("plain", "steam"));
}

TEST(Merge, PlainResultIsDroppedForAnEarlierSteamEntryOfItsPath) {
  EXPECT_THAT(MergedNames({Result("steam", "C:\\1.exe", "steam://run/10"), Result("plain", "C:\\1.exe")}),
              ElementsAre("steam"));
}

TEST(Merge, ReplacedSteamEntryIsFoundByItsNewPathOnly) {
  EXPECT_THAT(MergedNames({Result("old", "C:\\old.exe", "steam://run/10", "Steam ID"),
                           Result("new", "C:\\new.exe", "steam://run/10", "HKEY_LOCAL_MACHINE\\x"),
                           Result("at old", "C:\\old.exe"), Result("at new", "C:\\new.exe")}),
              ElementsAre("new", "at old"));
}

TEST(Merge, ComparesPathsByteForByte) {
  EXPECT_THAT(MergedNames({Result("a", "C:\\Games\\x.exe"), Result("b", "C:\\games\\x.exe"),
                           Result("c", "C:/Games/x.exe"), Result("d", "C:\\Games\\x.exe")}),
              ElementsAre("a", "b", "c"));
}

TEST(Merge, NamesPlayNoPart) {
  EXPECT_THAT(MergedNames({Result("same", "C:\\1.exe"), Result("same", "C:\\2.exe")}),
              ElementsAre("same", "same"));
}

TEST(Merge, ResultsWithoutPathAndSteamUriAllStay) {
  EXPECT_THAT(MergedNames({Result("a", ""), Result("b", ""), Result("a", "", "uplay://launch/1")}),
              ElementsAre("a", "b", "a"));
}

}  // namespace
}  // namespace tarnwick
