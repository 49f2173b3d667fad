#include "host/fleet/lines.h"

#include "host/fleet/game_sizes.h"
#include "support/standard_stream.h"
#include "tarnwick/version.h"

#include <gmock/gmock.h>

#include <regex>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;

const LineOrigin kOrigin = {"2026-01-02T03:04:05.678Z", "desk-7"};

TEST(HostFleetLines, EachLineTellsByItselfWhatWhenAndWhere) {
  const Rows rows = Rows::parse(R"([{"name":"b","loc":"a"},{"name":"c","loc":""}])");
  const std::string origin = R"("form":1,"time":"2026-01-02T03:04:05.678Z","machine":"desk-7")";
  EXPECT_EQ(LinesOfRun(rows, kGameLines, kOrigin), R"({"name":"b","loc":"a","kind":"game",)" + origin +
                                                       "}\n" + R"({"name":"c","loc":"","kind":"game",)" +
                                                       origin + "}\n" + R"({"kind":"scan",)" + origin +
                                                       R"(,"lines":2,"program":")" TARNWICK_VERSION "\"}\n");
}

TEST(HostFleetLines, AnEmptyListHasItsEnd) {
  EXPECT_EQ(LinesOfRun(Rows::array(), kApplicationLines, {kOrigin.time, ""}),
            R"({"kind":"apps","form":1,"time":"2026-01-02T03:04:05.678Z","machine":"","lines":0,)"
            R"("program":")" TARNWICK_VERSION "\"}\n");
}

TEST(HostFleetLines, ANameThatIsNoUtf8SpoilsNoLine) {
  EXPECT_THAT(LinesOfRun(Rows::array(), kGameLines, {"", "a\xFF"}),
              HasSubstr("\"machine\":\"a\xEF\xBF\xBD\""));
}

TEST(HostFleetLines, TheMachineIsWindowsNameAnotherOrNone) {
  Options options;
  const LineOrigin own = OriginOfRun(options);
  EXPECT_NE(own.machine, "");
  EXPECT_TRUE(
      std::regex_match(own.time, std::regex(R"(20\d\d-[01]\d-[0-3]\dT[0-2]\d:[0-5]\d:[0-6]\d\.\d{3}Z)")))
      << own.time;
  options.machine = "asset 12";
  EXPECT_EQ(OriginOfRun(options).machine, "asset 12");
  options.noMachine = true;
  EXPECT_EQ(OriginOfRun(options).machine, "");
}

TEST(HostFleetLines, IconsAreLeftOutUnlessTheyWereAskedFor) {
  const Rows rows = Rows::parse(R"([{"name":"b","icon":"data:"}])");
  const auto written = [&](bool icons) {
    tests::StandardStream output(STD_OUTPUT_HANDLE);
    Options options;
    options.icons = icons;
    WriteLines(options, rows, kGameLines, kOrigin);
    return output.Text();
  };
  EXPECT_THAT(written(false), HasSubstr(R"({"name":"b","icon":"","kind":"game")"));
  EXPECT_THAT(written(true), HasSubstr(R"({"name":"b","icon":"data:","kind":"game")"));
}

TEST(HostGameSizes, SteamWritesDownItsGamesBesideTheirFolders) {
  EXPECT_EQ(SteamManifestPath(R"(D:\Spiele\SteamApps\Common\Wren\bin\wren.exe)", "steam://run/70"),
            R"(D:\Spiele\SteamApps\appmanifest_70.acf)");
  EXPECT_EQ(SteamManifestPath(R"(D:\Games\Wren\wren.exe)", "steam://run/70"), "");
  EXPECT_EQ(SteamManifestPath(R"(D:\steamapps\common\Wren\wren.exe)", "uplay://launch/70/0"), "");
  EXPECT_EQ(SteamManifestPath("", "steam://run/70"), "");
  // The id comes from whatever a launcher wrote, and must not lead elsewhere.
  for (const char* uri : {"steam://run/", "steam://run/7\\..\\8", "steam://run/70/x", "steam://run/-7"})
    EXPECT_EQ(SteamManifestPath(R"(D:\steamapps\common\Wren\wren.exe)", uri), "") << uri;
}

TEST(HostGameSizes, TheSizeIsRoundedUpToKilobytes) {
  const auto manifest = [](const std::string& size) {
    return "\"AppState\"\n{\n\t\"appid\"\t\t\"70\"\n\t\"SizeOnDisk\"\t\t\"" + size + "\"\n}\n";
  };
  EXPECT_EQ(SteamSizeKb(manifest("0")), 0u);
  EXPECT_EQ(SteamSizeKb(manifest("1024")), 1u);
  EXPECT_EQ(SteamSizeKb(manifest("1025")), 2u);
  EXPECT_EQ(SteamSizeKb(manifest("18446744073709551615")), 18014398509481984u);
  for (const char* none : {"", "x", "12x", "-1", " 12", "18446744073709551616"})
    EXPECT_EQ(SteamSizeKb(manifest(none)), std::nullopt) << none;
}

TEST(HostGameSizes, AManifestThatIsCutTellsNoSize) {
  const std::string whole = "\"SizeOnDisk\"\t\t\"2048\"";
  EXPECT_EQ(SteamSizeKb(whole), 2u);
  for (size_t length = 0; length < whole.size(); ++length)
    EXPECT_EQ(SteamSizeKb(whole.substr(0, length)), std::nullopt) << length;
}

TEST(HostGameSizes, AGameWhoseSizeNothingTellsHasNull) {
  Rows games = Rows::parse(
      R"([{"name":"a","loc":"C:\\steamapps\\common\\none\\a.exe","launchUrl":"steam://run/7"},{}])");
  AddSizes(games);
  EXPECT_EQ(games[0]["sizeKB"], nullptr);
  EXPECT_EQ(games[1]["sizeKB"], nullptr);
}

}  // namespace
}  // namespace tarnwick::host
