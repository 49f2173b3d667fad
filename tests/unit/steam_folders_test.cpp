#include "steam/steam_folders.h"

#include "desktop/desktop.h"
#include "foundation/windows_api.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

const std::string kKey32 = R"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\Valve\Steam)";
const std::string kKey64 = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Valve\Steam)";
const std::string kUserKey = R"(HKEY_CURRENT_USER\SOFTWARE\Valve\Steam)";

TEST(SteamFolders, WithoutSteamAllAreEmpty) {
  EXPECT_EQ(GetSteamInstallPath(), "");
  EXPECT_EQ(GetAppInfoSteamPath(), "");
  EXPECT_EQ(GetDefaultIdSteamPath(), "");
  EXPECT_EQ(GetShortcutsSteamPath(), "");
}

TEST(SteamFolders, EveryStrategyHasItsOwnOrder) {
  desktop::Desktop d;
  d.String(kKey32, "InstallPath", "C:\\32");
  d.String(kKey64, "InstallPath", "C:\\64");
  d.String(kUserKey, "SteamPath", "c:/user");
  EXPECT_EQ(GetSteamInstallPath(), "C:\\32");
  EXPECT_EQ(GetAppInfoSteamPath(), "C:\\64");
  EXPECT_EQ(GetDefaultIdSteamPath(), "C:\\32");
  EXPECT_EQ(GetShortcutsSteamPath(), "C:\\32");
}

TEST(SteamFolders, TheSecondKeyServesWhereTheFirstIsMissing) {
  desktop::Desktop d;
  d.String(kKey64, "InstallPath", "C:\\64");
  EXPECT_EQ(GetSteamInstallPath(), "C:\\64");
  EXPECT_EQ(GetAppInfoSteamPath(), "C:\\64");
  EXPECT_EQ(GetDefaultIdSteamPath(), "C:\\64");
  EXPECT_EQ(GetShortcutsSteamPath(), "C:\\64");
}

TEST(SteamFolders, TheThirtyTwoBitKeyAloneServesAll) {
  desktop::Desktop d;
  d.String(kKey32, "InstallPath", "C:\\32");
  EXPECT_EQ(GetSteamInstallPath(), "C:\\32");
  EXPECT_EQ(GetAppInfoSteamPath(), "C:\\32");
  EXPECT_EQ(GetDefaultIdSteamPath(), "C:\\32");
  EXPECT_EQ(GetShortcutsSteamPath(), "C:\\32");
}

TEST(SteamFolders, AnEmptyValuePassesOnExceptForTheShortcuts) {
  desktop::Desktop d;
  d.String(kKey32, "InstallPath", "");
  d.String(kKey64, "InstallPath", "C:\\64");
  EXPECT_EQ(GetSteamInstallPath(), "C:\\64");
  EXPECT_EQ(GetDefaultIdSteamPath(), "C:\\64");
  EXPECT_EQ(GetShortcutsSteamPath(), "") << "the first key that opens decides";
}

TEST(SteamFolders, AKeyWithoutTheValuePassesOnExceptForTheShortcuts) {
  desktop::Desktop d;
  d.Key(kKey32);
  d.String(kKey64, "InstallPath", "C:\\64");
  EXPECT_EQ(GetSteamInstallPath(), "C:\\64");
  EXPECT_EQ(GetShortcutsSteamPath(), "");
}

TEST(SteamFolders, OnlyTheGamesScanKnowsTheUsersSteam) {
  desktop::Desktop d;
  d.String(kUserKey, "SteamPath", "c:/user");
  d.String(kUserKey, "InstallPath", "c:/other");
  EXPECT_EQ(GetSteamInstallPath(), "c:/user");
  EXPECT_EQ(GetAppInfoSteamPath(), "");
  EXPECT_EQ(GetDefaultIdSteamPath(), "");
  EXPECT_EQ(GetShortcutsSteamPath(), "");
}

TEST(SteamFolders, TheShortcutsTakeNoExpandableText) {
  desktop::Desktop d;
  d.ExpandString(kKey32, "InstallPath", "C:\\32");
  EXPECT_EQ(GetSteamInstallPath(), "C:\\32");
  EXPECT_EQ(GetShortcutsSteamPath(), "");
}

TEST(SteamFolders, TheShortcutsTakeUpTo259Bytes) {
  desktop::Desktop d;
  const std::string fits = "C:\\" + std::string(256, 'x');
  d.String(kKey32, "InstallPath", fits);
  EXPECT_EQ(GetShortcutsSteamPath(), fits);
  d.String(kKey32, "InstallPath", fits + "y");
  EXPECT_EQ(GetShortcutsSteamPath(), "");
  EXPECT_EQ(GetSteamInstallPath(), fits + "y");
}

TEST(SteamFolders, TheShortcutsEndTheTextAtItsFirstNul) {
  desktop::Desktop d;
  const std::wstring text = std::wstring(L"C:\\Steam") + L'\0' + L"rest" + L'\0';
  d.RawValue(kKey32, "InstallPath", REG_SZ,
             {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)});
  EXPECT_EQ(GetShortcutsSteamPath(), "C:\\Steam");
}

TEST(SteamFolders, AFolderThatTheAnsiCodePageHasIsUtf8Everywhere) {
  desktop::Desktop d;
  d.String(kKey32, "InstallPath", "C:\\Vapeur é");
  EXPECT_EQ(GetSteamInstallPath(), "C:\\Vapeur é");
  EXPECT_EQ(GetShortcutsSteamPath(), "C:\\Vapeur é") << "in code page " << GetACP();
}

}  // namespace
}  // namespace tarnwick
