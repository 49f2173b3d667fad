// The demo's sample desktop through the exports: each way of finding games finds its game, under the name and
// with the launch URL that belong to that way, and no game stands twice.
#include "common/wide_text.h"
#include "desktop/description.h"

#include "support/file_bytes.h"
#include "support/library.h"
#include "support/process.h"
#include "support/source_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <map>
#include <set>
#include <utility>

namespace tarnwick {
namespace {

const std::string kCatalogue = R"(C:\TarnwickDemo\MasterGameList.xml)";

struct Game {
  std::string name;
  std::string loc;
  std::string launchUrl;
  bool operator==(const Game&) const = default;
};

void PrintTo(const Game& game, std::ostream* out) {
  *out << game.name << " | " << game.loc << " | " << game.launchUrl;
}

const std::vector<Game> kExpected = {
    {"Lantern Harbour", R"(C:\Games\Lantern Harbour\lantern.exe)", ""},
    {"Mosswick Hollow", R"(C:\Games\MosswickHollow\mosswick.exe)", ""},
    {"Quillfeather", R"(C:\Games\Quillfeather\quill.exe)", ""},
    {"Хроники Вьюгограда", R"(C:\Игры\Вьюгоград\вьюгоград.exe)", ""},
    {"Copper Kestrel", R"(C:\Games\Copper Kestrel\kestrel.exe)", ""},
    {"青瓷谜城", R"(C:\Games\青瓷谜城\bin\谜城.exe)", ""},
    {"Emberline Express", R"(C:\Games\Emberline Express\emberline.exe)", "emberline://start"},
    {"Nine Wicker Crowns", R"(C:\Games\Nine Wicker Crowns\Game\crowns.exe)", ""},
    {"Tidewrought", R"(C:\Games\Tidewrought\tide.exe)", ""},
    {"Sablewind Racers", R"(C:\Games\Sablewind\bin\race64.exe)", ""},
    {"Château Brumaire", R"(C:\Games\Château Brumaire\Brumaire\château.exe)", ""},
    {"Gearloft Academy", R"(C:\Games\Gearloft\Academy\gearloft.exe)", ""},
    {"Old Mill Mysteries", R"(C:\Games\Old Mill Mysteries\mill.exe)", ""},
    {"Thimble Golf", R"(C:\Games\Thimble Golf\golf.exe)", ""},
    {"Vellum Knights", R"(C:\Games\Vellum Knights\vellum.exe)", ""},
    {"Pebble Parade", R"(C:\Program Files (x86)\Pebble Parade\pebble.exe)", ""},
    {"Moonlit Post Office", R"(C:\Games\Moonlit Post Office\moonlit.exe)", ""},
    {"Jade Caravan", R"(C:\Games\Arc\Jade Caravan\caravan.exe)", "arc://launch/jadecaravan"},
    {"Thornbridge Online", R"(C:\Games\Arc\Thornbridge\thornbridge.exe)", ""},
    {"Candlemark Saga", R"(C:\Games\GOG\Candlemark Saga\candlemark.exe)",
     "goggalaxy://openGameView/1900000001"},
    // Installed under EA's launcher too, with the same executable: the earlier finding stands.
    {"Ivory Compass", R"(C:\Games\Ivory Compass\compass.exe)", "goggalaxy://openGameView/1900000002"},
    {"Rampart of Ash", R"(C:\Games\Uplay\Rampart of Ash\bin\rampart.exe)", "uplay://launch/90017/0"},
    {"Silver Paddock", R"(C:\Games\EA\Silver Paddock\paddock.exe)",
     "origin2://game/launch?offerIds={5117E400-0000-4000-8000-0000000000EA}"},
    {"Banner of Reeds", R"(C:\Riot Games\Banner of Reeds\live\reeds.exe)", "riotclient://launch/reeds"},
    {"Starloom Odyssey", R"(C:\Games\Starloom Odyssey\Starloom Game\starloom.exe)",
     "hyp-global://launchgame?gamebiz=starloom_global"},
    {"Cinder Vault", R"(C:\Games\Cinder Vault\cinder.exe)", "bethesdanet://run/41"},
    {"Wrenfall", R"(C:\Games\Epic\Wrenfall\Wrenfall\Binaries\wrenfall.exe)", ""},
    {"Glass Meridian", R"(C:\Games\Epic\Glass Meridian\meridian.exe)", ""},
    {"DriftFerry", R"(C:\Games\Epic\DriftFerry\ferry.exe)", ""},
    {"Mosaic Meadow",
     R"(C:\Program Files\WindowsApps\Tessera.MosaicMeadow_1.2.0.0_x64__tarnwickdemo\mosaic.exe)",
     R"(shell:AppsFolder\Tessera.MosaicMeadow_tarnwickdemo!App)"},
    {"Petrel Bay", R"(C:\Program Files\WindowsApps\Gannet.PetrelBay_1.2.0.0_x64__tarnwickdemo\petrel.exe)",
     R"(shell:AppsFolder\Gannet.PetrelBay_tarnwickdemo!App)"},
    {"Lumen Drops", R"(C:\Program Files\WindowsApps\Prism.LumenDrops_1.2.0.0_x64__tarnwickdemo\lumen.exe)",
     R"(shell:AppsFolder\Prism.LumenDrops_tarnwickdemo!App)"},
    {"Grimtide Frontier", R"(C:\Games\Grimtide\_retail_\grimtide.exe)", "battle.net://launch/grimtide"},
    {"Brasswater", R"(C:\Program Files (x86)\Steam\steamapps\common\Brasswater\brasswater.exe)",
     "steam://run/9000010"},
    {"Hollow Orchard", R"(C:\SteamLibrary\steamapps\common\Hollow Orchard\bin\orchard.exe)",
     "steam://run/9000020"},
    {"Kiteborne", R"(C:\SteamLibrary\steamapps\common\Kiteborne\kite.exe)", "steam://run/9000030"},
    {"Salt & Signal", R"(C:\Program Files (x86)\Steam\steamapps\common\Salt and Signal\salt.exe)",
     "steam://run/9000040"},
    {"Paperlight", R"(C:\SteamLibrary\steamapps\common\Paperlight\paperlight.exe)", "steam://run/9000050"},
};

// What the program adds to games.
struct Finder {
  std::string launcher;
  std::string strategy;
  bool operator==(const Finder&) const = default;
};

void PrintTo(const Finder& finder, std::ostream* out) { *out << finder.launcher << " | " << finder.strategy; }

const std::vector<std::pair<Finder, std::vector<std::string>>> kFound = {
    {{"Installed", "Default Registry Scan"},
     {"Lantern Harbour", "Mosswick Hollow", "Quillfeather", "Хроники Вьюгограда"}},
    {{"Installed", "Registry Search Scan"},
     {"Copper Kestrel", "青瓷谜城", "Emberline Express", "Nine Wicker Crowns"}},
    {{"Installed", "Uninstall Registry Search"},
     {"Tidewrought", "Sablewind Racers", "Château Brumaire", "Gearloft Academy"}},
    {{"Installed", "User Folder Exe Search"}, {"Dustwing"}},
    {{"Installed", "GameUX Registry Search"}, {"Old Mill Mysteries"}},
    {{"Installed", "Default Exe Search"}, {"Vellum Knights", "Pebble Parade"}},
    {{"Steam", "Steam Shortcuts Search"}, {"Moonlit Post Office"}},
    {{"Arc", "Arc Registry Search"}, {"Jade Caravan", "Thornbridge Online"}},
    {{"GOG", "GOG Registry Search"}, {"Candlemark Saga", "Ivory Compass"}},
    {{"Ubisoft", "Uplay Configuration Search"}, {"Rampart of Ash"}},
    {{"EA", "EA Registry Search"}, {"Silver Paddock"}},
    {{"Riot", "Riot Platform Search"}, {"Banner of Reeds"}},
    {{"miHoYo", "Mihoyo Platform Search"}, {"Starloom Odyssey"}},
    {{"Bethesda", "Bethesda Registry"}, {"Cinder Vault"}},
    {{"Installed", "GameUX Info Search"}, {"Thimble Golf"}},
    {{"Epic Games", "Epic Games Scan"}, {"Glass Meridian", "Wrenfall", "DriftFerry"}},
    {{"Microsoft Store", "UWP/Microsoft Store Scan"}, {"Mosaic Meadow", "Petrel Bay", "Lumen Drops"}},
    {{"Battle.net", "Battle.net Search V2"}, {"Grimtide Frontier"}},
    {{"Steam", "Steam Games Scan"}, {"Brasswater", "Hollow Orchard", "Kiteborne"}},
    {{"Steam", "Steam Default ID"}, {"Salt & Signal"}},
    {{"Steam", "Steam AppInfo Scan"}, {"Paperlight"}},
};

std::string SampleText() { return tests::ReadSource("desktop/samples/sample-desktop.json"); }

class SampleDesktop : public testing::Test {
 protected:
  void SetUp() override { desktop::ApplyDescription(standing_, SampleText()); }

  nlohmann::json Scan() {
    std::string buffer(16u << 20, '\0');
    const int length = library_.IA_RunMultiPlatformGameScanJson(kCatalogue.c_str(), buffer.data(),
                                                                static_cast<int>(buffer.size()));
    return nlohmann::json::parse(buffer.substr(0, static_cast<size_t>(length)));
  }

  desktop::Desktop standing_;
  const tests::Library library_{TARNWICK_DLL};
};

std::vector<Game> Games(const nlohmann::json& scan) {
  std::vector<Game> games;
  for (const auto& game : scan) games.push_back({game.at("name"), game.at("loc"), game.at("launchUrl")});
  return games;
}

TEST_F(SampleDesktop, ShowsEveryGameOnceAndNothingElse) {
  std::vector<Game> expected = kExpected;
  // The one path that lies where this user's folders lie.
  expected.push_back(
      {"Dustwing", common::Narrow(_wgetenv(L"USERPROFILE")) + R"(\Games\Dustwing\dustwing.exe)", ""});
  auto scan = Scan();
  for (auto& game : scan)
    if (game.at("name") == "Dustwing")
      game["loc"] = expected.back().loc;  // the letter case of C:\Users may differ
  EXPECT_THAT(Games(scan), testing::UnorderedElementsAreArray(expected));
}

TEST_F(SampleDesktop, TheProgramNamesEveryGamesLauncherAndStrategy) {
  const tests::ProgramResult scan =
      tests::RunProgram("tarnwick.exe", {"scan", kCatalogue, "--format", "json"});
  EXPECT_EQ(scan.exitCode, 0u) << scan.errors;
  std::map<std::string, Finder> expected;
  for (const auto& [finder, names] : kFound) {
    for (const std::string& name : names) expected[name] = finder;
  }
  EXPECT_EQ(expected.size(), kExpected.size() + 1);
  std::map<std::string, Finder> found;
  for (const auto& game : nlohmann::json::parse(scan.output))
    found[game.at("name")] = {game.at("launcher"), game.at("foundBy")};
  EXPECT_THAT(found, testing::ElementsAreArray(expected));
}

TEST_F(SampleDesktop, GivesEveryGameAnIconOfItsOwn) {
  std::set<std::string> icons;
  for (const auto& game : Scan()) {
    const std::string icon = game.at("icon");
    EXPECT_THAT(icon, testing::StartsWith("data:image/png;base64,")) << game.at("name");
    EXPECT_TRUE(icons.insert(icon).second) << game.at("name") << " has another game's icon";
  }
  EXPECT_EQ(icons.size(), kExpected.size() + 1);
}

TEST_F(SampleDesktop, LeavesNothingToFindOnceRemoved) {
  standing_.Remove();
  desktop::Desktop catalogue;
  catalogue.File(kCatalogue,
                 "<ArrayOfGameSignature><GameSignature><DisplayName>Far Beacon</DisplayName>"
                 "</GameSignature></ArrayOfGameSignature>");
  EXPECT_THAT(Games(Scan()), testing::IsEmpty());
}

TEST_F(SampleDesktop, ListsTheOrdinaryApplications) {
  EXPECT_GT(library_.IA_RefreshCache(), 0);
  std::string buffer(16u << 20, '\0');
  library_.IA_GetAppsJsonAll(nullptr, buffer.data(), static_cast<int32_t>(buffer.size()));
  buffer.resize(buffer.find('\0'));
  for (const char* name : {"Fernpad Editor", "Sprocket Archiver", "Harbour Mail — Почта", "Paintbox Mini"})
    EXPECT_THAT(buffer, testing::HasSubstr(name));
  EXPECT_THAT(buffer, testing::Not(testing::HasSubstr("Fernpad Runtime")));
}

}  // namespace
}  // namespace tarnwick
