#include "host/presentation.h"
#include "host/tables.h"

#include <gmock/gmock.h>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;

TEST(HostPresentation, ReadsTheLibrarysGames) {
  const std::vector<Game> games = GamesFromJson(
      R"([{"name":"A","loc":"C:\\a.exe","icon":"","launchUrl":"steam://run/7","exeName":"a.exe"}])", {});
  ASSERT_EQ(games.size(), 1u);
  EXPECT_EQ(games[0].name, "A");
  EXPECT_EQ(games[0].path, "C:\\a.exe");
  EXPECT_EQ(games[0].launcher, "Steam");
}

TEST(HostPresentation, RefusesWhatIsNoArray) {
  EXPECT_THROW(GamesFromJson("{}", {}), std::runtime_error);
  EXPECT_THROW(GamesFromJson("[{\"na", {}), std::runtime_error);
}

TEST(HostPresentation, TheLauncherComesFromTheUriAndElseFromTheStrategy) {
  EXPECT_EQ(LauncherName("uplay://launch/1/0", "Default Registry Scan"), "Ubisoft");
  EXPECT_EQ(LauncherName("shell:AppsFolder\\x!App", ""), "Microsoft Store");
  EXPECT_EQ(LauncherName("", "Epic Games Scan"), "Epic Games");
  EXPECT_EQ(LauncherName("", "Default Registry Scan"), "Installed");
}

TEST(HostPresentation, AnEmptyListSaysSo) {
  EXPECT_EQ(GamesTable({}, {}), "No games found.\n");
  EXPECT_EQ(ApplicationsTable({}), "No applications found.\n");
}

}  // namespace
}  // namespace tarnwick::host
