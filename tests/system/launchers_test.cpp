// Whole scans of a machine that has all launchers at once: the order of levels and strategies, the list of
// games that shrinks from level to level, and the merge of games that more than one launcher has.
#include "catalogue/game_signature.h"
#include "common/catalogue_text.h"
#include "desktop/description.h"
#include "desktop/desktop.h"
#include "support/debug_capture.h"
#include "support/guarded_buffer.h"
#include "support/library.h"
#include "support/strategy_rows.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

namespace tarnwick::tests {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::ElementsAreArray;

const std::string kRoot = R"(C:\TarnwickTest\Launchers\)";
const std::string kCatalogue = kRoot + "MasterGameList.xml";
const std::string kArcKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Perfect World Entertainment\Core\)";
const std::string kOwnKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickTest\Launchers)";

struct Finding {
  std::string strategy;
  size_t found;
  bool operator==(const Finding&) const = default;
};

void PrintTo(const Finding& finding, std::ostream* out) { *out << finding.strategy << ": " << finding.found; }

GameSignature Signature(int32_t kind, const std::string& name) {
  GameSignature signature;
  signature.SourceKind = kind;
  signature.DisplayName = name;
  return signature;
}

std::string Folder(const std::string& launcher) { return kRoot + launcher; }
std::string Exe(const std::string& launcher) { return Folder(launcher) + R"(\game.exe)"; }

class Launchers : public testing::Test {
 protected:
  void Executables(const std::vector<std::string>& launchers) {
    for (const std::string& launcher : launchers) {
      const std::string description = launcher + " Title";
      desktop_.Executable(Exe(launcher), {.versions = {{.values = {{"FileDescription", description}}}}});
    }
  }

  void Install(const json& description) { desktop::ApplyDescription(desktop_, description.dump()); }
  void Catalogue(const GameList& games) { desktop_.File(kCatalogue, common::CatalogueText(games)); }

  // "name | loc | launchUrl" for each game of the answer, in its order.
  std::vector<std::string> Scan() {
    capture_.Clear();
    const GuardedBuffer buffer(8 << 20);
    library_.IA_RunMultiPlatformGameScanJson(kCatalogue.c_str(), buffer.Data(), buffer.Size());
    std::vector<std::string> games;
    for (const json& game : json::parse(buffer.Text())) {
      games.push_back(game["name"].get<std::string>() + " | " + game["loc"].get<std::string>() + " | " +
                      game["launchUrl"].get<std::string>());
    }
    return games;
  }

  // What the last scan's driver said of each strategy, in its order; a level as "level 6" with 0 findings.
  std::vector<Finding> Findings() const {
    const std::string level = "Processing priority level: ";
    std::vector<Finding> findings;
    for (const std::string& line : capture_.Lines()) {
      const size_t finished = line.find("] finished. Found: ");
      if (line.starts_with(level)) findings.push_back({"level " + line.substr(level.size()), 0});
      if (line.starts_with("Strategy [") && finished != std::string::npos) {
        findings.push_back({line.substr(10, finished - 10), std::stoul(line.substr(finished + 19))});
      }
    }
    return findings;
  }

  size_t FoundBy(const std::string& strategy) const {
    for (const Finding& finding : Findings()) {
      if (finding.strategy == strategy) return finding.found;
    }
    ADD_FAILURE() << "no line of " << strategy;
    return 0;
  }

  desktop::Desktop desktop_;
  DebugCapture capture_;
  Library library_{TARNWICK_DLL};
};

json AllLaunchers() {
  return {
      {"arc",
       {{"games", {{{"subkey", "Arc Game"}, {"client", Exe("Arc")}, {"installPath", Folder("Arc")}}}}}},
      {"gog", {{"games", {{{"gameId", "1001"}, {"executable", Exe("Gog")}, {"name", "Gog Game"}}}}}},
      {"uplay",
       {{"path", Folder("Ubisoft")},
        {"games",
         {{{"name", "Uplay Game"},
           {"installId", "2002"},
           {"location", Folder("Uplay")},
           {"relative", "game.exe"}}}}}},
      {"ea",
       {{"games",
         {{{"subkey", "Ea Game"},
           {"productGuid", "{EA-1}"},
           {"name", "Ea Game"},
           {"executable", Exe("Ea")}}}}}},
      {"riot", {{"products", {{{"id", "riotgame"}, {"installPath", Folder("Riot")}}}}}},
      {"miHoYo", {{"games", {{{"gameBiz", "hk4e"}, {"installPath", Folder("Mihoyo")}}}}}},
      {"bethesda",
       {{"path", Folder("BethesdaNet")},
        {"games", {{{"productId", "7"}, {"name", "Bethesda Record"}, {"location", Folder("Bethesda")}}}}}},
      {"itch", true},
      {"twitch", true},
      {"epic",
       {{"items",
         {{{"appName", "EpicApp"},
           {"displayName", "Эпическая 游戏"},
           {"installLocation", Folder("Epic")},
           {"launchExecutable", "game.exe"}}}}}},
      {"store",
       {{"packages",
         {{{"fullName", "Studio.Store_1.0.0.0_x64__p"},
           {"familyName", "Studio.Store_p"},
           {"folder", Folder("Store")},
           {"displayName", "Store Game"},
           {"manifest", {{"displayName", "Store Game"}, {"executable", "game.exe"}}},
           {"productId", "9STORE"},
           {"productKind", "Game"}}}}}},
      {"battleNet",
       {{"logs",
         {{{"file", "Agent-20240101T000000.log"},
           {"games",
            {{{"gameId", "bnet"}, {"installPath", Folder("BattleNet")}, {"relativePath", "game.exe"}}}}}}}}},
      {"steam",
       {{"path", Folder("Steam")},
        {"libraries",
         {{{"path", Folder("Steam")},
           {"apps", {{{"appId", 4004}, {"name", "Steam Title"}, {"installDir", "SteamGame"}}}}}}}}},
  };
}

GameList CatalogueOfAll() {
  GameSignature arc = Signature(kSourceArc, "Arc Title");
  arc.RegistryKey = kArcKey + "Arc Game";
  arc.LaunchUrl = "arc://play";
  GameSignature riot = Signature(kSourceRiot, "Riot Title");
  riot.RunningExe = "game.exe";
  riot.LaunchUrl = "riotclient://play";
  GameSignature mihoyo = Signature(kSourceMihoyo, "Mihoyo Title");
  mihoyo.SourceExId = "hk4e";
  mihoyo.RunningExe = "game.exe";
  mihoyo.LaunchUrl = "hyp://play";
  GameSignature bethesda = Signature(kSourceBethesda, "Bethesda Title");
  bethesda.LaunchUrl = "bethesdanet://run/7";
  bethesda.DefaultExe = "game.exe";
  GameSignature battleNet = Signature(kSourceBattleNet, "BattleNet Title");
  battleNet.SourceExId = "bnet";
  battleNet.DefaultExe = "game.exe";
  GameSignature steam = Signature(kSourceSteam, "Steam Title");
  steam.SourceExId = "4004";
  steam.DefaultExe = "game.exe";
  steam.DefaultFolder = R"(D:\Steam\steamapps\common\SteamGame)";
  return {steam, battleNet, bethesda, mihoyo, riot, arc, Signature(kSourceDirect, "Not installed")};
}

const std::vector<std::string> kAllExecutables = {"Arc",
                                                  "Gog",
                                                  "Uplay",
                                                  "Ea",
                                                  "Riot",
                                                  "Mihoyo",
                                                  "Bethesda",
                                                  "Epic",
                                                  "Store",
                                                  "BattleNet",
                                                  R"(Steam\steamapps\common\SteamGame)"};

// All levels and strategies in their order, with one finding each for `successful` and none for the others.
std::vector<Finding> FindingsOf(const std::set<std::string>& successful) {
  std::vector<Finding> findings;
  for (const auto& [level, strategies] : StrategiesByLevel()) {
    findings.push_back({"level " + std::to_string(level), 0});
    for (const std::string& name : strategies) findings.push_back({name, successful.count(name)});
  }
  return findings;
}

TEST_F(Launchers, AnswerInTheOrderOfTheirLevelsAndStrategies) {
  Executables(kAllExecutables);
  Install(AllLaunchers());
  Catalogue(CatalogueOfAll());
  const std::vector<std::string> expected = {
      "Arc Title | " + Exe("Arc") + " | arc://play",
      "Gog Game | " + Exe("Gog") + " | goggalaxy://openGameView/1001",
      "Uplay Game | " + Exe("Uplay") + " | uplay://launch/2002/0",
      "Ea Game | " + Exe("Ea") + " | origin2://game/launch?offerIds={EA-1}",
      "Riot Title | " + Exe("Riot") + " | riotclient://play",
      "Mihoyo Title | " + Exe("Mihoyo") + " | hyp://play",
      "Bethesda Title | " + Exe("Bethesda") + " | bethesdanet://run/7",
      "Эпическая 游戏 | " + Exe("Epic") + " | ",
      "Store Game | " + Exe("Store") + R"( | shell:AppsFolder\Studio.Store_p!App)",
      "BattleNet Title | " + Exe("BattleNet") + " | battle.net://launch/bnet",
      "Steam Title | " + Exe(R"(Steam\steamapps\common\SteamGame)") + " | steam://run/4004",
  };
  EXPECT_THAT(Scan(), ElementsAreArray(expected));
  const std::vector<Finding> findings = FindingsOf(
      {"Arc Registry Search", "GOG Registry Search", "Uplay Configuration Search", "EA Registry Search",
       "Riot Platform Search", "Mihoyo Platform Search", "Bethesda Registry", "Epic Games Scan",
       "UWP/Microsoft Store Scan", "Battle.net Search V2", "Steam Games Scan", "Steam Default ID"});
  EXPECT_THAT(Findings(), ElementsAreArray(findings));
  EXPECT_THAT(capture_.LinesWith("[SQLite Stub]"), testing::SizeIs(4));
  // Nothing is kept from one scan to the next.
  EXPECT_THAT(Scan(), ElementsAreArray(expected));
  EXPECT_THAT(Findings(), ElementsAreArray(findings));
}

// The level of each strategy's own lines: none is written before the driver starts its level, nor after that
// level's first finish line.
TEST_F(Launchers, RunNoStrategyOutsideItsLevel) {
  Executables(kAllExecutables);
  Install(AllLaunchers());
  Catalogue(CatalogueOfAll());
  Scan();
  const std::vector<std::string> lines = capture_.Lines();
  const auto place = [&](const std::string& start) {
    for (size_t i = 0; i < lines.size(); ++i) {
      if (lines[i].starts_with(start)) return i;
    }
    ADD_FAILURE() << "no line " << start;
    return lines.size();
  };
  struct Span {
    std::string tag, started, joined;
  };
  const std::string level = "Processing priority level: ";
  const std::vector<Span> spans = {
      {"[ArcRegistrySearch]", level + "4", "Strategy [Steam Shortcuts Search] finished"},
      {"[GogRegistrySearch]", level + "4", "Strategy [Steam Shortcuts Search] finished"},
      {"[EARegistrySearch]", level + "3", "Strategy [EA Registry Search] finished"},
      {"[BethesdaRegistry]", level + "3", "Strategy [EA Registry Search] finished"},
      {"[ItchIoSearch]", level + "3", "Strategy [EA Registry Search] finished"},
      {"[TwitchSearch]", level + "3", "Strategy [EA Registry Search] finished"},
      {"[UWP]", level + "3", "Strategy [EA Registry Search] finished"},
      {"[Epic]", level + "3", "Strategy [EA Registry Search] finished"},
  };
  for (const Span& span : spans) {
    const size_t from = place(span.started);
    const size_t to = place(span.joined);
    size_t seen = 0;
    for (size_t i = 0; i < lines.size(); ++i) {
      if (!lines[i].starts_with(span.tag)) continue;
      ++seen;
      EXPECT_TRUE(i > from && i < to) << lines[i];
    }
    EXPECT_GE(seen, 2u) << span.tag;
  }
}

json EaTitle(const std::string& publisher, const std::string& name, const std::string& folder) {
  return {{"subkey", name},
          {"productGuid", "{" + name + "}"},
          {"name", name},
          {"executable", Exe(folder)},
          {"publisher", publisher}};
}

json Package(const std::string& id, const std::string& name, const std::string& folder) {
  return {{"fullName", id + "_1_x64__p"},
          {"familyName", id + "_p"},
          {"folder", Folder(folder)},
          {"displayName", name},
          {"manifest", {{"executable", "game.exe"}}},
          {"productId", "9" + id},
          {"productKind", "game"}};
}

TEST_F(Launchers, ShowAGameOfTwoLaunchersOnce) {
  Executables({"Twin", "Shared", "One", "Two"});
  const json gog = {{"gameId", "1"}, {"executable", Exe("Twin")}, {"name", "Twin of GOG"}};
  Install(
      {{"gog", {{"games", {gog}}}},
       {"ea",
        {{"games",
          {EaTitle("EA Games", "Twin", "Twin"), EaTitle("Origin", "Twin", "Twin"),
           EaTitle("Respawn", "Shared of EA", "Shared"), EaTitle("Maxis", "One name", "One")}}}},
       {"store",
        {{"packages", {Package("A", "Shared of the Store", "Shared"), Package("B", "One name", "Two")}}}}});
  Catalogue({Signature(kSourceDirect, "Not installed")});
  // One executable is one game, whatever it is called, and the earlier finding stands. Two executables are
  // two games, even of one name.
  EXPECT_THAT(Scan(), ElementsAre("Twin of GOG | " + Exe("Twin") + " | goggalaxy://openGameView/1",
                                  "Shared of EA | " + Exe("Shared") +
                                      " | origin2://game/launch?offerIds={Shared of EA}",
                                  "One name | " + Exe("One") + " | origin2://game/launch?offerIds={One name}",
                                  "One name | " + Exe("Two") + R"( | shell:AppsFolder\B_p!App)"));
  EXPECT_EQ(FoundBy("GOG Registry Search"), 1u);
  EXPECT_EQ(FoundBy("EA Registry Search"), 4u);
  EXPECT_EQ(FoundBy("UWP/Microsoft Store Scan"), 2u);
  EXPECT_THAT(capture_.LinesWith("Total raw results: "), ElementsAre("Total raw results: 7"));
  EXPECT_THAT(capture_.LinesWith("Unique results after deduplication: "),
              ElementsAre("Unique results after deduplication: 4"));
}

// Kept: paths are compared as the launchers spell them, and Epic's files spell them with doubled backslashes
// (docs/decisions/scan-answer.md).
TEST_F(Launchers, ShowAGameTwiceWhosePathTwoLaunchersSpellDifferently) {
  Executables({"Shared"});
  const json epic = {{"appName", "Epic"},
                     {"displayName", "Shared of Epic"},
                     {"installLocation", Folder("Shared")},
                     {"launchExecutable", "game.exe"}};
  Install({{"epic", {{"items", {epic}}}},
           {"store", {{"packages", {Package("A", "Shared of the Store", "Shared")}}}}});
  Catalogue({Signature(kSourceDirect, "Not installed")});
  EXPECT_THAT(Scan(),
              ElementsAre("Shared of Epic | " + Exe("Shared") + " | ",
                          "Shared of the Store | " + Exe("Shared") + R"( | shell:AppsFolder\A_p!App)"));
}

TEST_F(Launchers, LookForNoGameThatAnEarlierLevelFound) {
  Executables({"Bethesda"});
  Install({{"bethesda", AllLaunchers()["bethesda"]}});
  GameSignature game = Signature(kSourceBethesda, "Known");
  game.RegistryKey = kOwnKey;
  game.DefaultExe = "game.exe";
  game.LaunchUrl = "bethesdanet://run/7";
  Catalogue({game});
  const std::vector<std::string> expected = {"Known | " + Exe("Bethesda") + " | bethesdanet://run/7"};
  {
    desktop::Desktop registered;
    registered.String(kOwnKey, "InstallLocation", Folder("Bethesda"));
    EXPECT_EQ(Scan(), expected);
    EXPECT_EQ(FoundBy("Default Registry Scan"), 1u);
    EXPECT_EQ(FoundBy("Bethesda Registry"), 0u);
    EXPECT_EQ(capture_.LinesWith("[BethesdaRegistry]").back(),
              "[BethesdaRegistry] Scan completed! Found 0 games.");
  }
  EXPECT_EQ(Scan(), expected);
  EXPECT_EQ(FoundBy("Default Registry Scan"), 0u);
  EXPECT_EQ(FoundBy("Bethesda Registry"), 1u);
}

}  // namespace
}  // namespace tarnwick::tests
