#include "launchers/mihoyo_platform_search.h"

#include "desktop/desktop.h"
#include "desktop/launcher_files.h"
#include "foundation/machine/known_folders.h"
#include "foundation/machine/paths.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/hostile_texts.h"
#include "support/locked_path.h"

#include <gmock/gmock.h>

#include <shlobj.h>
#include <algorithm>

namespace tarnwick {
namespace {

using desktop::MihoyoGame;
using desktop::MihoyoGameDataBytes;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using tests::DebugCapture;

const std::string kRoot = R"(C:\TarnwickTest\Mihoyo)";
const std::string kStart = "[MihoyoPlatformSearch] Starting Mihoyo Platform Search...";

GameSignature Signature(const std::string& id, const std::string& name = "Wren") {
  GameSignature signature;
  signature.DisplayName = name;
  signature.SourceKind = kSourceMihoyo;
  signature.SourceExId = id;
  signature.RunningExe = "w.exe";
  signature.LaunchUrl = "hyp://" + id;
  return signature;
}

// The launcher's files double their backslashes, and so do the paths made of them.
const std::string kRootAsRead = R"(C:\\TarnwickTest\\Mihoyo)";

std::string Expected(const std::string& exe, const std::string& id = "wren",
                     const std::string& name = "Wren") {
  return name + '|' + exe + "|hyp://" + id + "|Mihoyo Platform: " + id + "||1|0|";
}

class MihoyoSearch : public testing::Test {
 protected:
  MihoyoSearch() { desktop_.File(kRoot + "\\w.exe"); }

  void Data(const std::string& folder, const std::vector<MihoyoGame>& games) {
    desktop_.File(folder + "\\gamedata.dat", MihoyoGameDataBytes(games));
  }
  std::vector<std::string> Scan(const GameList& games) const {
    return tests::Describe(MihoyoPlatformSearch(games, "S-1-5-21"));
  }

  const std::string kAppData = KnownFolderPath(KnownFolder::kRoamingData);
  const std::string kMihoyo = kAppData + "\\miHoYo\\HYP";
  const std::string kCognosphere = kAppData + "\\Cognosphere\\HYP";
  const std::string kStandalone = kCognosphere + "\\standalone";
  desktop::Desktop desktop_;
};

TEST_F(MihoyoSearch, ReportsAGameAndSaysSo) {
  const std::string folder = kRoot + "\\Игры 游戏";
  desktop_.File(folder + "\\w.exe");
  std::string slashes = folder;
  std::replace(slashes.begin(), slashes.end(), '\\', '/');
  Data(kMihoyo + "\\1_0\\deep", {{"wren_cn", slashes, "shortcut"}});
  DebugCapture log;
  const std::string exe = slashes + "\\w.exe";
  EXPECT_THAT(Scan({Signature("wren_cn", "Зимородок™")}), ElementsAre(Expected(exe, "wren_cn", "Зимородок™")))
      << "the sign stays";
  EXPECT_TRUE(FileExists(exe));
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[MihoyoPlatformSearch] Found: Зимородок™ -> " + exe,
                                       "[MihoyoPlatformSearch] Scan completed! Found 1 games."));
}

TEST_F(MihoyoSearch, WithoutALauncherNothingIsFound) {
  DebugCapture log;
  EXPECT_THAT(Scan({Signature("wren")}), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[MihoyoPlatformSearch] Scan completed! Found 0 games."));
}

TEST_F(MihoyoSearch, WithoutASignatureNoFileIsTouched) {
  desktop_.Folder(kMihoyo);
  const tests::LockedPath lock(kMihoyo);  // touching it would log an error
  GameSignature ofAnotherKind = Signature("wren");
  ofAnotherKind.SourceKind = kSourceRiot;
  DebugCapture log;
  EXPECT_THAT(Scan({ofAnotherKind, Signature("")}), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[MihoyoPlatformSearch] No Mihoyo games in MGL."))
      << "and no completion line";
}

// The files

TEST_F(MihoyoSearch, FindsTheFilesOfEachRoot) {
  Data(kMihoyo, {});
  Data(kMihoyo + "\\a\\б", {});
  Data(kCognosphere + "\\a", {});
  Data(kStandalone + "\\b", {});
  desktop_.File(kMihoyo + "\\Gamedata.dat2");
  desktop_.File(kMihoyo + "\\b\\GameData.dat");
  desktop_.File(kMihoyo + "\\xgamedata.dat");
  desktop_.Folder(kMihoyo + "\\c\\gamedata.dat");
  EXPECT_THAT(GetGameDataPaths(0, kAppData),
              testing::UnorderedElementsAre(kMihoyo + "\\gamedata.dat", kMihoyo + "\\a\\б\\gamedata.dat"));
  EXPECT_THAT(GetGameDataPaths(1, kAppData), ElementsAre(kCognosphere + "\\a\\gamedata.dat"));
  EXPECT_THAT(GetGameDataPaths(2, kAppData), ElementsAre(kStandalone + "\\b\\gamedata.dat"));
}

TEST_F(MihoyoSearch, TheSecondRootLeavesEveryPathWithStandaloneOut) {
  Data(kCognosphere + "\\my standalones", {});
  Data(kMihoyo + "\\standalone", {});
  EXPECT_THAT(GetGameDataPaths(1, kAppData), IsEmpty());
  EXPECT_THAT(GetGameDataPaths(0, kAppData), SizeIs(1)) << "the first root doesn't";
}

TEST_F(MihoyoSearch, ARootThatIsMissingIsSilent) {
  DebugCapture log;
  for (const int root : {0, 1, 2}) {
    EXPECT_THAT(GetGameDataPaths(root, kAppData), IsEmpty());
    EXPECT_THAT(GetGameDataPaths(root, ""), IsEmpty()) << "the shell has no such folder";
  }
  desktop_.File(kMihoyo, "a file");
  EXPECT_THAT(GetGameDataPaths(0, kAppData), IsEmpty());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(MihoyoSearch, AFolderThatCannotBeListedEndsTheList) {
  Data(kMihoyo + "\\a", {{"wren", kRoot, ""}});
  Data(kMihoyo + "\\b", {});
  Data(kMihoyo + "\\c", {});
  const tests::LockedPath lock(kMihoyo + "\\b");
  DebugCapture log;
  EXPECT_THAT(GetGameDataPaths(0, kAppData), ElementsAre(kMihoyo + "\\a\\gamedata.dat"));
  EXPECT_THAT(log.Lines(), ElementsAre(StartsWith("[MihoyoPlatformSearch] Error getting gamedata paths: ")));
  EXPECT_THAT(Scan({Signature("wren")}), ElementsAre(Expected(kRootAsRead + "\\w.exe")))
      << "what was found before it counts";
}

TEST_F(MihoyoSearch, ARootThatCannotBeAskedForIsAnError) {
  DebugCapture log;
  EXPECT_THAT(GetGameDataPaths(0, tests::kUnaskablePath), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(StartsWith("[MihoyoPlatformSearch] Error getting gamedata paths: ")));
}

TEST_F(MihoyoSearch, AJunctionIsNotEntered) {
  Data(kMihoyo + "\\a", {});
  desktop_.Junction(kMihoyo + "\\a\\loop", kMihoyo);
  EXPECT_THAT(GetGameDataPaths(0, kAppData), SizeIs(1));
}

TEST_F(MihoyoSearch, AFileThatCannotBeOpenedHoldsNothing) {
  Data(kMihoyo + "\\a", {{"wren", "C:\\gone", ""}});
  Data(kMihoyo + "\\b", {{"wren", kRoot, ""}});
  const tests::LockedPath lock(kMihoyo + "\\a\\gamedata.dat");
  DebugCapture log;
  EXPECT_THAT(ParseGameDataFile(kMihoyo + "\\a\\gamedata.dat"), IsEmpty());
  EXPECT_THAT(ParseGameDataFile(kMihoyo + "\\nothing"), IsEmpty());
  EXPECT_THAT(log.Lines(), IsEmpty());
  EXPECT_THAT(Scan({Signature("wren")}), ElementsAre(Expected(kRootAsRead + "\\w.exe")))
      << "the next file is still read";
}

TEST_F(MihoyoSearch, TheFileIsReadAsText) {
  desktop_.File(kMihoyo + "\\gamedata.dat", "{\"gameBiz\":\"a\r\nb\"}\x1A{\"gameBiz\":\"c\"}");
  const auto entries = ParseGameDataFile(kMihoyo + "\\gamedata.dat");
  ASSERT_THAT(entries, SizeIs(1)) << "the platform ends a text at the byte 0x1A";
  EXPECT_EQ(entries[0].gameBiz, "a\nb");
}

// The match

TEST_F(MihoyoSearch, TheFirstEntryOfAnIdCountsAndSoMihoyosBeforeCognospheres) {
  desktop_.File(kRoot + "\\1\\w.exe");
  desktop_.File(kRoot + "\\2\\w.exe");
  desktop_.File(kRoot + "\\3\\w.exe");
  Data(kCognosphere, {{"wren", kRoot + "\\3", ""}, {"owl", kRoot + "\\3", ""}});
  Data(kMihoyo + "\\a", {{"wren", kRoot + "\\1", ""}, {"wren", kRoot + "\\2", ""}});
  Data(kMihoyo + "\\b", {{"wren", kRoot + "\\2", ""}});
  EXPECT_THAT(Scan({Signature("wren"), Signature("owl", "Owl")}),
              ElementsAre(Expected(kRootAsRead + R"(\\3\w.exe)", "owl", "Owl"),
                          Expected(kRootAsRead + R"(\\1\w.exe)")))
      << "in the byte order of their ids";
}

TEST_F(MihoyoSearch, AnEarlierEntryCountsEvenIfItsFolderIsGone) {
  Data(kMihoyo, {{"wren", "C:\\gone", ""}});
  Data(kCognosphere, {{"wren", kRoot, ""}});
  EXPECT_THAT(Scan({Signature("wren")}), IsEmpty());
}

TEST_F(MihoyoSearch, WhatOnlyTheStandaloneRootKnowsIsNotReported) {
  Data(kStandalone, {{"wren", kRoot, ""}});
  EXPECT_THAT(ParseGameDataFile(kStandalone + "\\gamedata.dat"), SizeIs(1));
  EXPECT_THAT(Scan({Signature("wren")}), IsEmpty());
}

TEST_F(MihoyoSearch, TheStandaloneRootIsReadAllTheSame) {
  desktop_.Folder(kStandalone + "\\locked");
  const tests::LockedPath lock(kStandalone + "\\locked");
  DebugCapture log;
  Scan({Signature("wren")});
  EXPECT_THAT(log.LinesWith("[MihoyoPlatformSearch] Error getting gamedata paths: "), SizeIs(2))
      << "once for the second root, in which it lies, and once for the third";
}

TEST_F(MihoyoSearch, IdsAreTrimmedForTheComparison) {
  Data(kMihoyo, {{"owl ", kRoot, ""}});
  const std::string found = "Wren|" + kRootAsRead + "\\w.exe|hyp://";
  EXPECT_THAT(Scan({Signature("owl")}), ElementsAre(found + "owl|Mihoyo Platform: owl ||1|0|"))
      << "the source keeps its blank";
  EXPECT_THAT(Scan({Signature("\towl \t ")}), ElementsAre(found + "\towl \t |Mihoyo Platform: owl ||1|0|"));
  EXPECT_THAT(Scan({Signature("OWL")}), IsEmpty());
  EXPECT_THAT(Scan({Signature("owl\n")}), IsEmpty()) << "blanks and tabs only";
}

TEST_F(MihoyoSearch, OfEqualIdsTheLaterSignatureCounts) {
  Data(kMihoyo, {{"wren", kRoot, ""}});
  EXPECT_THAT(Scan({Signature("wren", "First"), Signature(" wren ", "Second")}),
              ElementsAre("Second|" + kRootAsRead + "\\w.exe|hyp:// wren |Mihoyo Platform: wren||1|0|"));
}

TEST_F(MihoyoSearch, AnIdOfBlanksAloneIsAnIdToo) {
  Data(kMihoyo, {{"\t", kRoot, ""}, {" ", kRoot, ""}});
  EXPECT_THAT(MihoyoPlatformSearch({Signature("  ")}, ""), testing::Not(IsEmpty()));
}

TEST_F(MihoyoSearch, TheRunningExeComesBeforeTheDefaultExe) {
  desktop_.File(kRoot + "\\d.exe");
  Data(kMihoyo, {{"wren", kRoot, ""}});
  GameSignature signature = Signature("wren");
  signature.DefaultExe = "d.exe";
  EXPECT_THAT(Scan({signature}), ElementsAre(Expected(kRootAsRead + "\\w.exe")));
  signature.RunningExe = "gone.exe";
  EXPECT_THAT(Scan({signature}), IsEmpty()) << "the default one isn't tried";
  signature.RunningExe = "";
  EXPECT_THAT(Scan({signature}), ElementsAre(Expected(kRootAsRead + "\\d.exe")));
  signature.DefaultExe = "";
  signature.DefaultExe32 = "d.exe";
  EXPECT_THAT(Scan({signature}), IsEmpty());
}

TEST_F(MihoyoSearch, WithoutAnInstallPathTheExeStandsAlone) {
  desktop_.File(kMihoyo + "\\gamedata.dat", R"({"gameBiz":"wren"})");
  EXPECT_THAT(Scan({Signature("wren")}), IsEmpty());
  GameSignature signature = Signature("wren");
  signature.RunningExe = kRoot + "\\w.exe";
  EXPECT_THAT(Scan({signature}), ElementsAre(Expected(kRoot + "\\w.exe")));
}

TEST_F(MihoyoSearch, AFolderIsNoExecutable) {
  desktop_.Folder(kRoot + "\\sub\\w.exe");
  Data(kMihoyo, {{"wren", kRoot + "\\sub", ""}});
  EXPECT_THAT(Scan({Signature("wren")}), IsEmpty());
}

TEST_F(MihoyoSearch, FilesWithoutMeaningHoldNothing) {
  for (const std::string& bytes : tests::MeaninglessTexts(R"({"gameBiz":"wren"})")) {
    desktop_.File(kMihoyo + "\\gamedata.dat", bytes);
    EXPECT_THAT(Scan({Signature("wren")}), IsEmpty());
  }
}

}  // namespace
}  // namespace tarnwick
