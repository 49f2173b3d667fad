#include "desktop/launcher_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnwick::desktop {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(DesktopLauncherFiles, WritesEpicItems) {
  EpicGame game{.appName = "Wren",
                .displayName = "Игра",
                .installLocation = R"(C:\Games\Wren)",
                .launchExecutable = R"(bin\wren.exe)"};
  const std::string text = EpicItemText(game);
  EXPECT_THAT(text, HasSubstr(R"("AppName": "Wren")"));
  EXPECT_THAT(text, HasSubstr(R"("MainGameAppName": "Wren")"));
  EXPECT_THAT(text, HasSubstr(R"("DisplayName": "Игра")"));
  EXPECT_THAT(text, HasSubstr(R"("InstallLocation": "C:\\Games\\Wren")"));
  EXPECT_THAT(text, HasSubstr(R"("LaunchExecutable": "bin\\wren.exe")"));
  EXPECT_THAT(text, HasSubstr(R"("bIsIncompleteInstall": false)"));
  game.mainGameAppName = "Main";
  game.incomplete = true;
  EXPECT_THAT(EpicItemText(game), HasSubstr(R"("MainGameAppName": "Main")"));
  EXPECT_THAT(EpicItemText(game), HasSubstr(R"("bIsIncompleteInstall": true)"));
}

TEST(DesktopLauncherFiles, ListsEpicGamesInOneArray) {
  const std::string text = EpicLauncherInstalledText(
      {{.appName = "A", .installLocation = "C:/A"}, {.appName = "B", .installLocation = "C:/B"}});
  EXPECT_THAT(text, HasSubstr(R"("InstallationList": [)"));
  EXPECT_LT(text.find(R"("AppName": "A")"), text.find(R"("AppName": "B")"));
  EXPECT_THAT(text, HasSubstr(R"("InstallLocation": "C:/B")"));
}

TEST(DesktopLauncherFiles, WritesUplayRecordsAmongOtherBytes) {
  const std::string text = UplayConfigurationsText(
      {{"Wren", "123", "sub", R"(bin\wren.exe)", true}, {"Owl", "", "", "o.exe", false}});
  EXPECT_FALSE(text.starts_with("root:"));
  EXPECT_THAT(text, HasSubstr("\nroot:\n  name: \"Wren\"\n"));
  EXPECT_THAT(text, HasSubstr("\n    online:\n"));
  EXPECT_THAT(text, HasSubstr("\n    offline:\n"));
  EXPECT_THAT(text,
              HasSubstr(R"(register: HKEY_LOCAL_MACHINE\SOFTWARE\Ubisoft\Launcher\Installs\123\InstallDir)"));
  EXPECT_THAT(text, HasSubstr("relative: bin\\wren.exe\n"));
  EXPECT_THAT(text, HasSubstr("append: sub\n"));
  const std::string second = text.substr(text.find("Owl"));
  EXPECT_THAT(second, Not(HasSubstr("offline:")));
  EXPECT_THAT(second, Not(HasSubstr("register:")));
}

TEST(DesktopLauncherFiles, WritesAgentLogsWithABlockForEachGame) {
  const std::string text =
      BattleNetAgentLogText({{"wren", R"(C:\Wren)", "w.exe", "w64.exe"}, {"owl", "C:/Owl", "", ""}});
  const size_t request = text.find("Request GET /game/wren ");
  ASSERT_NE(request, std::string::npos);
  const std::string block = text.substr(text.find('{', request), text.find("Request", request + 1) - request);
  EXPECT_THAT(block, HasSubstr(R"("binaries")"));
  EXPECT_THAT(block, HasSubstr(R"("installPath": "C:\\Wren")"));
  EXPECT_THAT(block, HasSubstr(R"("relative_path": "w.exe")"));
  EXPECT_THAT(block, HasSubstr(R"("relative_path_64": "w64.exe")"));
  EXPECT_THAT(text.substr(text.find("/game/owl")), Not(HasSubstr("relative_path")));
}

TEST(DesktopLauncherFiles, WritesRiotFiles) {
  EXPECT_THAT(RiotClientInstallsText("C:/Riot/helper.exe"), HasSubstr(R"("rc_live": "C:/Riot/helper.exe")"));
  EXPECT_THAT(RiotProductSettingsText("C:/Riot/Wren"),
              HasSubstr("\nproduct_install_full_path: \"C:/Riot/Wren\"\n"));
}

TEST(DesktopLauncherFiles, WritesGameDataWithBlocksAmongOtherBytes) {
  const std::string bytes =
      MihoyoGameDataBytes({{"wren_global", "C:/Wren", "Wren"}, {"owl_cn", "C:/游戏", "游戏"}});
  EXPECT_FALSE(bytes.starts_with("{"));
  EXPECT_THAT(bytes,
              HasSubstr(R"({"gameBiz":"wren_global","installPath":"C:/Wren","gameShortcutName":"Wren"})"));
  EXPECT_THAT(bytes, HasSubstr(R"("installPath":"C:/游戏")"));
  // The text mode of the C runtime ends a file at this byte.
  EXPECT_EQ(bytes.find('\x1A'), std::string::npos);
}

TEST(DesktopLauncherFiles, WritesPackageManifests) {
  const std::string text = AppxManifestText({"Wren.Game", "1.2.3.4", "Wren & Owl", "Nest", "wren.exe"});
  EXPECT_THAT(text, HasSubstr("<DisplayName>Wren &amp; Owl</DisplayName>"));
  EXPECT_THAT(text, HasSubstr("<PublisherDisplayName>Nest</PublisherDisplayName>"));
  EXPECT_THAT(text, HasSubstr("<Application Id=\"App\" Executable=\"wren.exe\"/>"));
  EXPECT_THAT(text, HasSubstr("<Identity Name=\"Wren.Game\" Version=\"1.2.3.4\"/>"));
  EXPECT_THAT(AppxManifestText({}), Not(HasSubstr("<DisplayName>")));
  EXPECT_THAT(AppxManifestText({}), Not(HasSubstr("Executable")));
}

TEST(DesktopLauncherFiles, WritesStoreCaches) {
  const std::string text = StoreEntitlementsText({{"9WREN", "Game"}, {"9APP", "Application"}});
  EXPECT_LT(text.find("\"Entitlements\""), text.find("9WREN"));
  EXPECT_THAT(text, HasSubstr(R"("ProductKind": "Application")"));
  EXPECT_EQ(StoreFulfillmentText("9WREN", "Wren_1"),
            R"({"FulfillmentData":{"ProductId":"9WREN","PackageFamilyName":"Wren_1"}})");
}

}  // namespace
}  // namespace tarnwick::desktop
