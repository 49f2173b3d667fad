#include "launchers/battle_net_search_v2.h"

#include "desktop/desktop.h"
#include "desktop/launcher_files.h"
#include "foundation/machine/known_folders.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/hostile_texts.h"
#include "support/locked_path.h"

#include <gmock/gmock.h>

#include <shlobj.h>
#include <algorithm>
#include <filesystem>

namespace tarnwick {
namespace {

using desktop::BattleNetAgentLogText;
using desktop::BattleNetGame;
using desktop::ExecutableOptions;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using tests::DebugCapture;

const std::string kRoot = R"(C:\TarnwickTest\BattleNet)";
const std::string kStart = "[BattleNetSearchV2] Starting Battle.net Search V2...";
const std::string kNothing = "[BattleNetSearchV2] Scan completed! Found 0 games.";

ExecutableOptions Version(const std::map<std::string, std::string>& values) {
  ExecutableOptions options;
  options.versions = {{0x0409, 1200, values}};
  return options;
}

std::string Expected(const std::string& name, const std::string& exe, const std::string& id) {
  return name + '|' + exe + "|battle.net://launch/" + id + "|Battle.net: " + id + "||1|0|";
}

// The product "wren", with this executable below the test's folder: it has no version, so its file names it.
auto IsWren(const std::string& exe) {
  const std::filesystem::path path = exe;
  return ElementsAre(Expected(path.stem().string(), kRoot + "\\" + exe, "wren"));
}

class BattleNetSearch : public testing::Test {
 protected:
  // A log, in the agent's folder, of the given age in seconds.
  void Log(const std::string& name, const std::string& text, int age = 0) {
    desktop_.File(kAgent + "\\" + name, text);
    desktop_.ModifiedTime(kAgent + "\\" + name, 1'700'000'000 - age);
  }
  void Log(const std::vector<BattleNetGame>& games) { Log("Agent-1.log", BattleNetAgentLogText(games)); }

  std::vector<std::string> Ids() const {
    std::vector<std::string> ids;
    for (const BattleNetGameEntry& entry : GetBattleNetGamesFromLogs(kAppData)) ids.push_back(entry.gameId);
    return ids;
  }

  std::vector<std::string> Scan(const GameList& games = {}) const {
    return tests::Describe(BattleNetSearchV2(games, "S-1-5-21"));
  }

  void Files(const std::vector<std::string>& files) {
    for (const std::string& file : files) desktop_.File(kRoot + "\\" + file);
  }

  const std::string kAppData = KnownFolderPath(KnownFolder::kCommonData);
  const std::string kAgent = kAppData + "\\Battle.net\\Agent";
  desktop::Desktop desktop_;
};

GameSignature Signature(const std::string& id) {
  GameSignature signature;
  signature.DisplayName = "Of the catalogue";
  signature.SourceKind = kSourceBattleNet;
  signature.SourceExId = id;
  signature.LaunchUrl = "not used";
  return signature;
}

TEST_F(BattleNetSearch, ReportsAProductOutsideTheCatalogueAndSaysSo) {
  desktop_.Executable(kRoot + "\\Wren\\bin\\w.exe",
                      Version({{"FileDescription", "Wren® II™"}, {"ProductName", "No"}}));
  Log({{"Wren_X", kRoot + "\\Wren", "bin\\w.exe", ""}});
  DebugCapture log;
  const std::string exe = kRoot + "\\Wren\\bin\\w.exe";
  EXPECT_THAT(Scan(), ElementsAre(Expected("Wren II", exe, "Wren_X")));
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[BattleNetSearchV2] Found: Wren II -> " + exe,
                                       "[BattleNetSearchV2] Scan completed! Found 1 games."));
}

TEST_F(BattleNetSearch, WithoutTheAgentsFolderNothingIsFound) {
  DebugCapture log;
  EXPECT_THAT(Scan(), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, kNothing));
  log.Clear();
  EXPECT_THAT(GetBattleNetGamesFromLogs(""), IsEmpty()) << "the shell has no such folder";
  desktop_.File(kAgent);
  EXPECT_THAT(GetBattleNetGamesFromLogs(kAppData), IsEmpty()) << "a file of its name";
  EXPECT_THAT(log.Lines(), IsEmpty());
}

// The logs

std::string LogOf(const std::string& id) { return BattleNetAgentLogText({{id, "C:\\x", "", ""}}); }

TEST_F(BattleNetSearch, TheThreeNewestLogsAreReadNewestFirst) {
  Log("Agent-a.log", LogOf("oldest"), 40);
  Log("Agent-b.log", LogOf("newest"), 10);
  Log("Agent-c.log", LogOf("third"), 30);
  Log("sub\\Agent-d.log", LogOf("second"), 20);
  EXPECT_THAT(Ids(), ElementsAre("newest", "second", "third"));
}

TEST_F(BattleNetSearch, ALogThatCannotBeOpenedStillTakesItsPlace) {
  Log("Agent-a.log", LogOf("a"), 1);
  Log("Agent-b.log", LogOf("b"), 2);
  Log("Agent-c.log", LogOf("c"), 3);
  Log("Agent-d.log", LogOf("d"), 4);
  const tests::LockedPath lock(kAgent + "\\Agent-b.log");
  DebugCapture log;
  EXPECT_THAT(Ids(), ElementsAre("a", "c"));
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(BattleNetSearch, ALogIsKnownByItsName) {
  Log("Agent-1.log.bak", LogOf("bak"), 1);
  Log("Agent-игра 游戏.log", LogOf("letters"), 2);
  Log("sub\\deep\\Agent-.log", LogOf("deep"), 3);
  EXPECT_THAT(Ids(), ElementsAre("bak", "letters", "deep"));
  desktop_.Remove();
  Log("agent-1.log", LogOf("lower"));
  Log("xAgent-1.log", LogOf("inside"));
  Log("Agent1.log", LogOf("dash"));
  Log("Agent-1.LOG", LogOf("upper"));
  Log("Agent-1.txt", LogOf("text"));
  desktop_.Folder(kAgent + "\\Agent-2.log");
  EXPECT_THAT(Ids(), IsEmpty());
}

TEST_F(BattleNetSearch, AProductCountsOnceInAnyCase) {
  Log("Agent-1.log", BattleNetAgentLogText({{"WTCG", "C:\\new", "", ""}, {"wtcg", "C:\\same", "", ""}}), 1);
  Log("Agent-2.log", BattleNetAgentLogText({{"Wtcg", "C:\\old", "", ""}, {"other", "C:\\o", "", ""}}), 2);
  const auto entries = GetBattleNetGamesFromLogs(kAppData);
  ASSERT_THAT(entries, SizeIs(2));
  EXPECT_EQ(entries[0].gameId, "WTCG");
  EXPECT_EQ(entries[0].installPath, "C:\\new");
  EXPECT_EQ(entries[1].gameId, "other");
}

TEST_F(BattleNetSearch, TheNewerLogsCaseGoesIntoTheLaunchAddress) {
  Files({"Wren\\w.exe"});
  Log("Agent-1.log", BattleNetAgentLogText({{"WReN", kRoot + "\\Wren", "w.exe", ""}}), 1);
  Log("Agent-2.log", BattleNetAgentLogText({{"wren", kRoot + "\\Wren", "w.exe", ""}}), 2);
  EXPECT_THAT(Scan(), ElementsAre(Expected("w", kRoot + "\\Wren\\w.exe", "WReN")));
}

TEST_F(BattleNetSearch, TheTwentyFirstProductIsDroppedBeforeAnyTest) {
  std::vector<BattleNetGame> games;
  for (int i = 1; i <= 21; ++i) games.push_back({"p" + std::to_string(i), "C:\\nowhere", "", ""});
  games.back().installPath = kRoot + "\\Wren";
  games.back().relativePath = "w.exe";
  Files({"Wren\\w.exe"});
  Log(games);
  EXPECT_THAT(GetBattleNetGamesFromLogs(kAppData), SizeIs(20));
  EXPECT_THAT(Scan(), IsEmpty());
  games.erase(games.begin());
  Log(games);
  EXPECT_THAT(Scan(), ElementsAre(Expected("w", kRoot + "\\Wren\\w.exe", "p21")))
      << "the same product as the twentieth";
}

TEST_F(BattleNetSearch, AJunctionIsNotEntered) {
  Log("sub\\Agent-1.log", LogOf("once"));
  desktop_.Junction(kAgent + "\\sub\\loop", kAgent);
  desktop_.File(kRoot + "\\Elsewhere\\Agent-2.log", LogOf("elsewhere"));
  desktop_.Junction(kAgent + "\\out", kRoot + "\\Elsewhere");
  EXPECT_THAT(Ids(), ElementsAre("once"));
}

TEST_F(BattleNetSearch, AFolderThatCannotBeListedIsAnError) {
  Log("Agent-1.log", LogOf("a"));
  desktop_.Folder(kAgent + "\\locked");
  const tests::LockedPath lock(kAgent + "\\locked");
  DebugCapture log;
  EXPECT_THAT(Scan(), IsEmpty()) << "no log was read yet";
  EXPECT_THAT(
      log.Lines(),
      ElementsAre(kStart, StartsWith("[BattleNetSearchV2] Error getting Battle.net games: "), kNothing));
}

TEST_F(BattleNetSearch, AFolderThatCannotBeAskedForIsAnError) {
  DebugCapture log;
  EXPECT_THAT(GetBattleNetGamesFromLogs(tests::kUnaskablePath), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(StartsWith("[BattleNetSearchV2] Error getting Battle.net games: ")));
}

TEST_F(BattleNetSearch, LogsWithoutMeaningHoldNoProduct) {
  for (const std::string& text : tests::MeaninglessTexts(LogOf("a"))) {
    Log("Agent-1.log", text);
    EXPECT_THAT(Ids(), IsEmpty());
  }
}

TEST_F(BattleNetSearch, ALogIsReadAsText) {
  Log("Agent-1.log",
      "Request GET /game/a\r\n{\"binaries\":0,\"installPath\":\"C:\\\\x\"}\r\n\x1A" + LogOf("b"));
  EXPECT_THAT(Ids(), ElementsAre("a"))
      << "no carriage return at the id's end, and nothing behind the byte 0x1A";
}

// What is reported

TEST_F(BattleNetSearch, TheLaunchersOwnProductsAreExcluded) {
  Files({"Wren\\w.exe"});
  std::vector<BattleNetGame> games;
  for (const char* id : {"bna", "AGENT", "Clnt", "Battle.Net", "prometheus", "agent2"}) {
    games.push_back({id, kRoot + "\\Wren", "w.exe", ""});
  }
  Log(games);
  EXPECT_THAT(Scan({Signature("AGENT")}), ElementsAre(Expected("w", kRoot + "\\Wren\\w.exe", "agent2")));
}

TEST_F(BattleNetSearch, TheInstallPathMustExist) {
  Files({"Wren\\w.exe", "file"});
  Log({{"gone", kRoot + "\\gone", "..\\Wren\\w.exe", ""}});
  EXPECT_THAT(Scan(), IsEmpty());
  Log({{"file", kRoot + "\\file", "..\\Wren\\w.exe", ""}});
  EXPECT_THAT(Scan(), ElementsAre(Expected("w", kRoot + "\\Wren\\w.exe", "file"))) << "a file will do";
}

TEST_F(BattleNetSearch, AnInstallPathThatCannotBeAskedForEndsTheSearch) {
  Log({{"odd", tests::kUnaskablePath, "w.exe", ""}});
  DebugCapture log;
  EXPECT_THROW(BattleNetSearchV2({}, ""), std::filesystem::filesystem_error);
  EXPECT_THAT(log.Lines(), ElementsAre(kStart));
}

TEST_F(BattleNetSearch, ThePlainPathStandsInForAMissing64BitOne) {
  Files({"Wren\\w32.exe"});
  Log({{"wren", kRoot + "\\Wren", "w32.exe", "w64.exe"}});
  EXPECT_THAT(Scan(), IsWren("Wren\\w32.exe"));
  Files({"Wren\\w64.exe"});
  EXPECT_THAT(Scan(), IsWren("Wren\\w64.exe")) << "where both are there the 64-bit one comes first";
}

TEST_F(BattleNetSearch, WithoutAnExecutableNothingIsReportedOrLogged) {
  Files({"Wren\\readme.txt"});
  desktop_.Folder(kRoot + "\\Wren\\folder.exe");
  Log({{"both", kRoot + "\\Wren", "w32.exe", "w64.exe"},
       {"none", kRoot + "\\Wren", "", ""},
       {"folder", kRoot + "\\Wren", "folder.exe", ""}});
  DebugCapture log;
  EXPECT_THAT(Scan({Signature("both")}), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, kNothing));
}

TEST_F(BattleNetSearch, TheLogsPathIsMadeFull) {
  Files({"Wren\\w.exe"});
  std::string slashes = kRoot + "\\Wren";
  std::replace(slashes.begin(), slashes.end(), '\\', '/');
  Log({{"wren", slashes, "x/../w.exe", ""}});
  EXPECT_THAT(Scan(), IsWren("Wren\\w.exe"));
}

TEST_F(BattleNetSearch, NonAsciiPathsAreFound) {
  Files({"Игры 游戏 é\\w.exe"});
  Log({{"wren", kRoot + "\\Игры 游戏 é", "w.exe", ""}});
  EXPECT_THAT(Scan(), ElementsAre(Expected("w", kRoot + "\\Игры 游戏 é\\w.exe", "wren")));
}

// The catalogue's help

TEST_F(BattleNetSearch, ASignatureIsFoundByTheExactCode) {
  Files({"Wren\\chosen.exe", "Wren\\log.exe"});
  Log({{"wren", kRoot + "\\Wren", "log.exe", ""}});
  GameSignature signature = Signature("wren");
  signature.DefaultExe = "chosen.exe";
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\chosen.exe")) << "without the catalogue's name or address";
  GameSignature upper = signature;
  upper.SourceExId = "WREN";
  EXPECT_THAT(Scan({upper}), IsWren("Wren\\log.exe"));
  GameSignature ofAnotherKind = signature;
  ofAnotherKind.SourceKind = kSourceEa;
  EXPECT_THAT(Scan({ofAnotherKind}), IsWren("Wren\\log.exe"));
  GameSignature later = signature;
  later.DefaultExe = "missing.exe";
  EXPECT_THAT(Scan({signature, later}), IsWren("Wren\\log.exe")) << "of two the later one counts";
}

TEST_F(BattleNetSearch, TheDefaultExeIsTriedInItsFoldersToo) {
  Files({"Wren\\sub\\a.exe", "Wren\\log.exe"});
  Log({{"wren", kRoot + "\\Wren", "log.exe", ""}});
  GameSignature signature = Signature("wren");
  signature.DefaultExe = "a.exe";
  signature.DefaultFolderExe = "other\\b.exe||sub\\a.exe";
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\sub\\a.exe"));
  signature.DefaultFolderExe = "";
  signature.DefaultFolderExe32 = "sub\\a.exe";
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\sub\\a.exe")) << "the picker falls back to the 32-bit field";
  Files({"Wren\\a.exe"});
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\a.exe")) << "the folder itself comes first";
}

TEST_F(BattleNetSearch, The32BitExeGoesWithThe32BitFolders) {
  Files({"Wren\\sub\\a.exe", "Wren\\log.exe"});
  Log({{"wren", kRoot + "\\Wren", "log.exe", ""}});
  GameSignature signature = Signature("wren");
  signature.DefaultExe32 = "b.exe";
  signature.DefaultFolderExe = "sub\\a.exe";
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\log.exe")) << "not with the plain ones";
  signature.DefaultFolderExe32 = "sub\\a.exe";
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\sub\\a.exe"));
}

TEST_F(BattleNetSearch, The64BitExeGoesWithThePlainFolders) {
  Files({"Wren\\sub\\a.exe", "Wren\\log.exe"});
  Log({{"wren", kRoot + "\\Wren", "log.exe", ""}});
  GameSignature signature = Signature("wren");
  signature.DefaultExe64 = "b.exe";
  signature.DefaultFolderExe64 = "sub\\a.exe";
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\log.exe")) << "its own folders are never looked at";
  signature.DefaultFolderExe = "sub\\a.exe";
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\sub\\a.exe"));
}

TEST_F(BattleNetSearch, FoldersWithoutAnExeAreNotTried) {
  Files({"Wren\\sub\\a.exe", "Wren\\log.exe"});
  Log({{"wren", kRoot + "\\Wren", "log.exe", ""}});
  GameSignature signature = Signature("wren");
  signature.DefaultFolderExe = signature.DefaultFolderExe32 = signature.DefaultFolderExe64 = "sub\\a.exe";
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\log.exe"));
}

TEST_F(BattleNetSearch, TheThreeExesAreTriedInOrder) {
  Log({{"wren", kRoot + "\\Wren", "", ""}});
  GameSignature signature = Signature("wren");
  signature.DefaultExe = "a.exe";
  signature.DefaultExe32 = "b.exe";
  signature.DefaultExe64 = "c.exe";
  Files({"Wren\\c.exe"});
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\c.exe"));
  Files({"Wren\\b.exe"});
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\b.exe"));
  Files({"Wren\\a.exe"});
  EXPECT_THAT(Scan({signature}), IsWren("Wren\\a.exe"));
}

// Names

class ExeProductName : public testing::Test {
 protected:
  std::string Name(const ExecutableOptions& options) {
    desktop_.Executable(kRoot + "\\v.exe", options);
    return GetExeProductName(kRoot + "\\v.exe");
  }
  desktop::Desktop desktop_;
};

TEST_F(ExeProductName, IsTheFileDescription) {
  EXPECT_EQ(Name(Version({{"FileDescription", "Foo"}, {"ProductName", "Bar"}})), "Foo");
  EXPECT_EQ(Name(Version({{"ProductName", "Bar"}})), "") << "a product name alone is not used";
  EXPECT_EQ(Name({}), "");
  EXPECT_EQ(GetExeProductName(kRoot + "\\nothing.exe"), "");
  EXPECT_EQ(GetExeProductName(""), "");
}

TEST_F(ExeProductName, ASetupProgramIsNamedByItsProduct) {
  EXPECT_EQ(Name(Version({{"FileDescription", "Foo Setup"}, {"ProductName", "Foo"}})), "Foo");
  EXPECT_EQ(Name(Version({{"FileDescription", "foo setUP program"}, {"ProductName", "Foo"}})), "Foo");
  EXPECT_EQ(Name(Version({{"FileDescription", "Setup"}, {"ProductName", "Setup Tool"}})), "Setup");
  EXPECT_EQ(Name(Version({{"FileDescription", "Foo Setup"}})), "Foo Setup");
}

TEST_F(ExeProductName, IsReadFromTheFirstTranslation) {
  ExecutableOptions options;
  options.versions = {{0x0407, 1200, {{"FileDescription", "Erster"}}},
                      {0x0409, 1200, {{"FileDescription", "Second"}}}};
  EXPECT_EQ(Name(options), "Erster");
  options.versions[0].values = {{"ProductName", "x"}};
  EXPECT_EQ(Name(options), "") << "the second is not asked";
}

TEST_F(ExeProductName, IsGivenAsUtf8) {
  EXPECT_EQ(Name(Version({{"FileDescription", "Pokémon® – Ünïcode"}})), "Pokémon® – Ünïcode")
      << "the narrow call answers in the ANSI code page";
}

TEST_F(BattleNetSearch, AnExeWithoutVersionIsNamedByItsFile) {
  Files({"Wren\\run.me.exe"});
  Log({{"wren", kRoot + "\\Wren", "run.me.exe", ""}});
  EXPECT_THAT(Scan(), ElementsAre(Expected("run.me", kRoot + "\\Wren\\run.me.exe", "wren")));
}

TEST_F(BattleNetSearch, AnExeWithoutANameOrDotIsUnknown) {
  Files({"Wren\\plain"});
  Log({{"wren", kRoot + "\\Wren", "plain", ""}});
  EXPECT_THAT(Scan(), ElementsAre(Expected("Unknown", kRoot + "\\Wren\\plain", "wren")));
}

}  // namespace
}  // namespace tarnwick
