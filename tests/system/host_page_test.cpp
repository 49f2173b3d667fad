// The page's scan is one that the program listens to; its games are those of the library's own.
#include "desktop/description.h"

#include "support/file_bytes.h"
#include "support/process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <string_view>

namespace tarnwick {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using tests::ProgramResult;
using tests::RunProgram;

constexpr const char* kProgram = "tarnwick.exe";
constexpr const char* kCatalogue = R"(C:\TarnwickDemo\MasterGameList.xml)";

class HostPage : public testing::Test {
 protected:
  void SetUp() override {
    ApplyDescription(desktop_, tests::ReadSource("desktop/samples/sample-desktop.json"));
  }

  desktop::Desktop desktop_;
};

nlohmann::json DataOf(const std::string& page) {
  constexpr std::string_view kBegin = "id=\"data\">";
  const size_t begin = page.find(kBegin) + kBegin.size();
  return nlohmann::json::parse(page.substr(begin, page.find("</script>", begin) - begin));
}

TEST_F(HostPage, ShowsTheGamesOfTheLibrarysAnswer) {
  const auto games =
      nlohmann::json::parse(RunProgram(kProgram, {"scan", kCatalogue, "--format", "json"}).output);
  // So large that no icon is scaled.
  const ProgramResult page =
      RunProgram(kProgram, {"scan", kCatalogue, "--format", "html", "--icon-size", "256"});
  EXPECT_EQ(page.exitCode, 0u);
  EXPECT_THAT(page.errors, IsEmpty());
  const auto items = DataOf(page.output)["items"];
  ASSERT_EQ(items.size(), games.size());
  ASSERT_GT(games.size(), 30u);
  for (size_t i = 0; i < games.size(); ++i) {
    EXPECT_EQ(items[i]["name"], games[i]["name"]);
    EXPECT_EQ(items[i]["path"], games[i]["loc"]);
    EXPECT_EQ(items[i]["launch"], games[i]["launchUrl"]);
    EXPECT_EQ(items[i]["icon"], games[i]["icon"]);
    EXPECT_EQ(items[i]["group"], games[i]["launcher"]);
    EXPECT_EQ(items[i]["detail"], games[i]["foundBy"]);
  }
}

TEST_F(HostPage, TakesTheCatalogueOfTheCurrentFolderWhereNoneIsNamed) {
  const ProgramResult page = RunProgram(kProgram, {"scan", "--format", "html"}, R"(C:\TarnwickDemo)");
  EXPECT_EQ(page.exitCode, 0u) << page.errors;
  EXPECT_EQ(DataOf(page.output)["report"]["catalogueFile"], "MasterGameList.xml");
}

TEST_F(HostPage, LogsItsScanWhereAskedTo) {
  const std::vector<std::string> scan = {"scan", kCatalogue, "--format", "html"};
  EXPECT_THAT(RunProgram(kProgram, scan).errors, Not(HasSubstr("Strategy [")));
  std::vector<std::string> logged = scan;
  logged.push_back("--log");
  const ProgramResult loud = RunProgram(kProgram, logged);
  EXPECT_THAT(loud.errors, HasSubstr("Processing priority level: 6\n"));
  EXPECT_THAT(loud.errors, HasSubstr("Strategy [Steam AppInfo Scan] finished. Found: 3\n"));
}

TEST_F(HostPage, RefusesWhatHoldsNoGames) {
  desktop::Desktop made;
  made.File(R"(C:\TarnwickDemo\none.xml)", "<html></html>");
  const ProgramResult page =
      RunProgram(kProgram, {"scan", R"(C:\TarnwickDemo\none.xml)", "--format", "html"});
  EXPECT_EQ(page.exitCode, 1u);
  EXPECT_THAT(page.output, IsEmpty());
  EXPECT_THAT(page.errors, HasSubstr("not a catalogue"));
}

}  // namespace
}  // namespace tarnwick
