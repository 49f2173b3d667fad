#include "host/fleet/scan_diff.h"

#include <gmock/gmock.h>

namespace tarnwick::host {
namespace {

using testing::IsEmpty;
using Games = std::vector<ScannedGame>;

const ScannedGame kWren = {"Wren", "Steam", R"(C:\steamapps\common\Wren\wren.exe)", "steam://run/70"};
const ScannedGame kOwl = {"Owl", "Installed", R"(C:\Games\Owl\owl.exe)", ""};

// "-Owl +Finch ~Wren(C:\old)"
std::string Difference(const Games& older, const Games& newer) {
  const ScanDifference difference = CompareScans(older, newer);
  std::string text;
  for (const ScannedGame& game : difference.removed) text += "-" + game.name + " ";
  for (const ScannedGame& game : difference.added) text += "+" + game.name + " ";
  for (const MovedGame& moved : difference.moved) text += "~" + moved.game.name + "(" + moved.from + ") ";
  return text;
}

ScannedGame At(ScannedGame game, const std::string& loc) {
  game.loc = loc;
  return game;
}

ScannedGame Named(ScannedGame game, const std::string& name) {
  game.name = name;
  return game;
}

ScannedGame WithUri(ScannedGame game, const std::string& uri) {
  game.launchUrl = uri;
  return game;
}

TEST(HostScanDiff, EqualScansDoNotDiffer) {
  EXPECT_EQ(Difference({}, {}), "");
  EXPECT_EQ(Difference({kWren, kOwl}, {kOwl, kWren}), "");
}

TEST(HostScanDiff, WhatCameWentOrMovedIsTold) {
  EXPECT_EQ(Difference({kWren, kOwl}, {kWren}), "-Owl ");
  EXPECT_EQ(Difference({kOwl}, {kWren, kOwl}), "+Wren ");
  EXPECT_EQ(Difference({kWren, kOwl}, {At(kOwl, R"(D:\Owl\owl.exe)"), At(kWren, R"(D:\w.exe)")}),
            R"(~Owl(C:\Games\Owl\owl.exe) ~Wren(C:\steamapps\common\Wren\wren.exe) )");
}

TEST(HostScanDiff, LetterCaseOfAPathIsNoMove) {
  EXPECT_EQ(Difference({At(kOwl, R"(C:\Совы\owl.exe)")}, {At(kOwl, R"(c:\совы\OWL.EXE)")}), "");
}

TEST(HostScanDiff, AnUpdateOfAStorePackageIsNoMove) {
  const ScannedGame finch = {"Finch", "Microsoft Store",
                             R"(C:\Program Files\WindowsApps\F.Finch_1.2.0.0_x64__abc\f.exe)",
                             R"(shell:AppsFolder\F.Finch_abc!App)"};
  EXPECT_EQ(
      Difference({finch}, {At(finch, R"(C:\Program Files\WindowsApps\F.Finch_1.3.0.0_x64__abc\f.exe)")}), "");
  EXPECT_NE(Difference({finch}, {At(finch, R"(D:\WindowsApps\F.Finch_1.3.0.0_x64__abc\f.exe)")}), "");
  EXPECT_NE(Difference({finch},
                       {At(finch, R"(C:\Program Files\WindowsApps\F.Finch_1.2.0.0_x64__abc\g_1_2\f.exe)")}),
            "");
}

TEST(HostScanDiff, APathThatOnlyOneScanKnowsIsNoMove) {
  EXPECT_EQ(Difference({At(kWren, "")}, {kWren}), "");
  EXPECT_EQ(Difference({kWren}, {At(kWren, "")}), "");
}

TEST(HostScanDiff, AnotherNameOrLauncherAtTheSamePlaceIsTheSameGame) {
  EXPECT_EQ(Difference({kOwl}, {Named(kOwl, "Owl Gold")}), "");
  EXPECT_EQ(Difference({kWren}, {Named(kWren, "Wren Gold")}), "");
  EXPECT_EQ(Difference({kOwl}, {{"Owl", "GOG", kOwl.loc, "goggalaxy://openGameView/1"}}), "");
}

TEST(HostScanDiff, TwoLaunchUrisAreTwoGames) {
  EXPECT_EQ(Difference({kWren}, {WithUri(kWren, "steam://run/71")}), "-Wren +Wren ");
}

TEST(HostScanDiff, AGameIsFollowedBeforeWhatTookItsPlace) {
  const ScannedGame finch = {"Finch", "Steam", kWren.loc, "steam://run/80"};
  EXPECT_EQ(Difference({kWren}, {finch, At(kWren, R"(D:\w.exe)")}),
            R"(+Finch ~Wren(C:\steamapps\common\Wren\wren.exe) )");
}

TEST(HostScanDiff, OfSeveralOfOneNameThoseThatStayedStay) {
  const ScannedGame second = At(kOwl, R"(D:\Owl\owl.exe)");
  const ScannedGame third = At(kOwl, R"(E:\Owl\owl.exe)");
  EXPECT_EQ(Difference({kOwl, second}, {third, second}), R"(~Owl(C:\Games\Owl\owl.exe) )");
  EXPECT_EQ(Difference({kOwl, second}, {second}), "-Owl ");
}

TEST(HostScanDiff, SymmetricDifferencesMirrorEachOther) {
  const ScanDifference there = CompareScans({kWren, kOwl}, {kOwl});
  const ScanDifference back = CompareScans({kOwl}, {kWren, kOwl});
  EXPECT_EQ(there.removed.size(), back.added.size());
  EXPECT_THAT(there.added, IsEmpty());
  EXPECT_THAT(back.removed, IsEmpty());
}

}  // namespace
}  // namespace tarnwick::host
