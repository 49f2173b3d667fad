#include "steam/steam_shortcuts_search.h"

#include "foundation/conversions.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/steam_bytes.h"
#include "support/steam_world.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::DebugCapture;
using tests::ShortcutRecord;
using tests::SteamWorld;

const std::string kRoot = R"(C:\TarnwickTest\SteamShortcuts)";
const std::string kSteam = kRoot + R"(\Steam)";
const std::string kStart = "[SteamShortcutsSearch] Starting Steam Shortcuts Search...";

std::string Completed(int count) {
  return "[SteamShortcutsSearch] Scan completed! Found " + std::to_string(count) + " games.";
}

std::vector<std::string> Scan() { return tests::Describe(ScanSteamShortcuts()); }

std::string Expected(const std::string& name, const std::string& exe) {
  return name + '|' + exe + "||Steam Shortcuts||1|0|";
}

struct World : SteamWorld {
  World() : SteamWorld{kSteam} { RegisterSteam(); }
  void Shortcuts(const std::string& user, const std::string& bytes) {
    d.File(kSteam + "\\userdata\\" + user + "\\config\\shortcuts.vdf", bytes);
  }
};

TEST(SteamShortcutsSearch, AShortcutWhoseProgramExistsIsFound) {
  World world;
  const std::string exe = kRoot + "\\Игра 门\\é.exe";
  world.d.File(exe);
  world.Shortcuts("12345", ShortcutRecord("Игра", "\"" + exe + "\"", kRoot));
  const DebugCapture log;
  EXPECT_THAT(Scan(), ElementsAre(Expected("Игра", exe)));
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[SteamShortcutsSearch] Found: Игра -> " + exe, Completed(1)));
}

TEST(SteamShortcutsSearch, WithoutSteamTheScanEndsWithoutItsCompletionLine) {
  const DebugCapture log;
  EXPECT_THAT(Scan(), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[SteamShortcutsSearch] Steam path not found."));
}

TEST(SteamShortcutsSearch, ASteamFolderThatIsGoneIsNotFound) {
  SteamWorld world{kSteam};
  world.NameMissingSteam();
  const DebugCapture log;
  EXPECT_THAT(Scan(), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[SteamShortcutsSearch] Steam path not found."));
}

TEST(SteamShortcutsSearch, ASteamKnownToTheUserAloneIsNotFound) {
  SteamWorld world{kSteam};
  world.d.String(R"(HKEY_CURRENT_USER\SOFTWARE\Valve\Steam)", "SteamPath", kSteam);
  world.d.Folder(kSteam);
  const DebugCapture log;
  ScanSteamShortcuts();
  EXPECT_EQ(log.Lines().back(), "[SteamShortcutsSearch] Steam path not found.");
}

TEST(SteamShortcutsSearch, AnExpandableInstallPathCountsAsNotFound) {
  SteamWorld world{kSteam};
  world.d.ExpandString(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Valve\Steam)", "InstallPath", kSteam);
  world.d.Folder(kSteam);
  const DebugCapture log;
  ScanSteamShortcuts();
  EXPECT_EQ(log.Lines().back(), "[SteamShortcutsSearch] Steam path not found.");
}

TEST(SteamShortcutsSearch, AProgramThatIsGoneOrAFolderIsSilent) {
  World world;
  world.d.Folder(kRoot + "\\folder.exe");
  world.Shortcuts("1", ShortcutRecord("Gone", kRoot + "\\gone.exe", kRoot) +
                           ShortcutRecord("Folder", kRoot + "\\folder.exe", kRoot));
  const DebugCapture log;
  EXPECT_THAT(Scan(), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, Completed(0)));
}

TEST(SteamShortcutsSearch, ARecordWithoutItsStartFolderYieldsNothingThoughItsProgramExists) {
  World world;
  world.d.File(kRoot + "\\g.exe");
  world.Shortcuts("1", tests::ShortcutField("AppName", "a") + tests::ShortcutField("exe", kRoot + "\\g.exe"));
  EXPECT_THAT(Scan(), IsEmpty());
}

TEST(SteamShortcutsSearch, QuotesInsideQuotesNameNothing) {
  World world;
  world.d.File(kRoot + "\\g.exe");
  world.Shortcuts("1", ShortcutRecord("a", "\"\"" + kRoot + "\\g.exe\"\"", kRoot));
  EXPECT_THAT(Scan(), IsEmpty()) << "the file's own quotes go, and what is left must exist";
}

TEST(SteamShortcutsSearch, TheSameShortcutOfTwoUsersIsReportedTwice) {
  World world;
  world.d.File(kRoot + "\\g.exe");
  world.Shortcuts("1", ShortcutRecord("a", kRoot + "\\g.exe", kRoot));
  world.Shortcuts("anonymous 门", ShortcutRecord("b", kRoot + "\\g.exe", kRoot));
  EXPECT_THAT(Scan(), ElementsAre(Expected("a", kRoot + "\\g.exe"), Expected("b", kRoot + "\\g.exe")));
}

TEST(SteamShortcutsSearch, UsersWithoutShortcutsAndPlainFilesArePassedOver) {
  World world;
  world.d.Folder(kSteam + "\\userdata\\1\\config");
  world.d.Folder(kSteam + "\\userdata\\2");
  world.d.File(kSteam + "\\userdata\\3");
  world.d.File(kSteam + "\\userdata\\config\\shortcuts.vdf", ShortcutRecord("a", "e", "s"));
  world.Shortcuts("4", ShortcutRecord("b", "e", "s"));
  const DebugCapture log;
  const std::vector<SteamShortcut> shortcuts = GetSteamShortcuts(kSteam);
  ASSERT_THAT(shortcuts, SizeIs(1)) << "a folder named config is a user without a config folder";
  EXPECT_EQ(shortcuts[0].appName, "b");
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(SteamShortcutsSearch, UserdataIsBelowSteamWithOrWithoutASeparator) {
  World world;
  world.Shortcuts("1", ShortcutRecord("a", "e", "s"));
  EXPECT_THAT(GetSteamShortcuts(kSteam), SizeIs(1));
  EXPECT_THAT(GetSteamShortcuts(kSteam + "\\"), SizeIs(1));
  EXPECT_THAT(GetSteamShortcuts("C:/TarnwickTest/SteamShortcuts/Steam/"), SizeIs(1));
}

TEST(SteamShortcutsSearch, WithoutUserdataThereIsNothing) {
  World world;
  const DebugCapture log;
  EXPECT_THAT(GetSteamShortcuts(kSteam), IsEmpty());
  world.d.File(kSteam + "\\userdata");
  EXPECT_THAT(GetSteamShortcuts(kSteam), IsEmpty()) << "a file is no folder";
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(SteamShortcutsSearch, AFileThatCannotBeOpenedOrIsEmptyGivesNothing) {
  desktop::Desktop d;
  const DebugCapture log;
  EXPECT_THAT(ParseShortcutsVdf(kRoot + "\\gone.vdf"), IsEmpty());
  EXPECT_THAT(ParseShortcutsVdf(""), IsEmpty());
  d.Folder(kRoot + "\\folder.vdf");
  EXPECT_THAT(ParseShortcutsVdf(kRoot + "\\folder.vdf"), IsEmpty());
  d.File(kRoot + "\\empty.vdf", "");
  EXPECT_THAT(ParseShortcutsVdf(kRoot + "\\empty.vdf"), IsEmpty());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(SteamShortcutsSearch, TheFileIsReadWithItsCarriageReturnsAndControlZ) {
  desktop::Desktop d;
  d.File(kRoot + "\\s.vdf", ShortcutRecord("a\r\n\x1A"
                                           "b",
                                           "e", "s"));
  const std::vector<SteamShortcut> shortcuts = ParseShortcutsVdf(kRoot + "\\s.vdf");
  ASSERT_THAT(shortcuts, SizeIs(1));
  EXPECT_EQ(shortcuts[0].appName,
            "a\r\n\x1A"
            "b");
}

TEST(SteamShortcutsSearch, AFileBeyondMemoryIsLoggedAndTheNextUserTaken) {
  World world;
  const std::string huge = kSteam + "\\userdata\\1\\config\\shortcuts.vdf";
  world.d.SparseFile(huge, uint64_t{4} << 40);
  world.Shortcuts("2", ShortcutRecord("a", "e", "s"));
  const DebugCapture log;
  EXPECT_THAT(GetSteamShortcuts(kSteam), SizeIs(1));
  EXPECT_THAT(log.Lines(), ElementsAre("[SteamShortcutsSearch] Error parsing shortcuts.vdf (" + huge +
                                       "): std::bad_alloc"));
}

TEST(SteamShortcutsSearch, AFolderThatCannotBeListedGivesNothing) {
  World world;
  world.d.Folder(kRoot + "\\Target");
  world.d.Junction(kSteam + "\\userdata", kRoot + "\\Target");
  std::filesystem::remove(std::filesystem::path(Utf8ToWide(kRoot + "\\Target")));
  EXPECT_THAT(GetSteamShortcuts(kSteam), IsEmpty());
  // The desktop can't take a link away that leads nowhere.
  std::filesystem::create_directory(std::filesystem::path(Utf8ToWide(kRoot + "\\Target")));
}

}  // namespace
}  // namespace tarnwick
