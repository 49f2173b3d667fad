#include "host/html_page.h"
#include "host/presentation.h"
#include "host/tables.h"

#include <gmock/gmock.h>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;
using testing::Not;

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

TEST(HostHtmlPage, NamesCanNotEndTheScriptTheyStandIn) {
  const std::string page =
      GamesPage({{"</script><script>alert(1)</script>", "C:\\a.exe", "", "", "", "Installed"}}, {});
  EXPECT_THAT(page, HasSubstr("\\u003c/script>\\u003cscript>alert(1)"));
  EXPECT_THAT(page, Not(HasSubstr("<script>alert(1)")));
  EXPECT_THAT(page, Not(HasSubstr("{{DATA}}")));
}

TEST(HostHtmlPage, BytesThatAreNoUtf8AreReplaced) {
  EXPECT_THAT(GamesPage({{"\xFF", "", "", "", "", ""}}, {}), HasSubstr("\"name\":\"\xEF\xBF\xBD\""));
}

TEST(HostHtmlPage, ApplicationsHaveNoReport) {
  EXPECT_THAT(ApplicationsPage({{"Tool", "Maker", "1.2", "C:\\t.exe", "20260101", 4096, ""}}),
              HasSubstr("\"report\":null"));
}

}  // namespace
}  // namespace tarnwick::host
