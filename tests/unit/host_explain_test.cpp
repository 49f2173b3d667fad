// Why a game is found or isn't: a desktop for each verdict and each outcome.
#include "host/explain/explanation.h"

#include "common/catalogue_text.h"
#include "core/scan_driver.h"
#include "desktop/description.h"
#include "desktop/steam_files.h"
#include "host/explain/explanation_json.h"
#include "host/explain/explanation_text.h"
#include "host/text_width.h"
#include "support/file_bytes.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <stdexcept>

namespace tarnwick {
namespace {

using desktop::Desktop;
using host::ExplainName;
using host::Explanation;
using host::GameExplanation;
using host::ObserveScan;
using host::Outcome;
using host::StrategyVerdict;
using host::Verdict;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr char kSampleCatalogue[] = R"(C:\TarnwickDemo\MasterGameList.xml)";
constexpr char kCatalogue[] = R"(C:\TarnwickExplain\games.xml)";

const StrategyVerdict& VerdictOf(const GameExplanation& game, const std::string& strategy) {
  for (const StrategyVerdict& verdict : game.strategies) {
    if (verdict.strategy == strategy) return verdict;
  }
  throw std::runtime_error("no verdict of " + strategy);
}

class HostExplain : public testing::Test {
 protected:
  void Sample() { ApplyDescription(desktop_, tests::ReadSource("desktop/samples/sample-desktop.json")); }
  void Build(const std::string& json) { ApplyDescription(desktop_, json); }
  void Catalogue(const GameList& games) { desktop_.File(kCatalogue, common::CatalogueText(games)); }

  Explanation Explain(const std::string& name, const std::string& catalogue = kCatalogue) {
    return ExplainName(ObserveScan(catalogue, {}), name);
  }
  GameExplanation Only(const std::string& name, const std::string& catalogue = kCatalogue) {
    const Explanation explanation = Explain(name, catalogue);
    if (explanation.records.size() != 1) throw std::runtime_error("not one game but another number");
    return explanation.records.front();
  }

  Desktop desktop_;
};

GameSignature Record(const std::string& name) {
  GameSignature record;
  record.DisplayName = name;
  return record;
}

GameSignature SteamRecord(const std::string& name, const std::string& id) {
  GameSignature record = Record(name);
  record.SourceKind = kSourceSteam;
  record.SourceExId = id;
  record.DefaultExe = "play.exe";
  return record;
}

std::string SteamDesktop(const std::string& name, const std::string& folder) {
  return R"({"steam": {"path": "C:\\TarnwickExplain\\Steam", "libraries": [
      {"path": "C:\\TarnwickExplain\\Steam", "apps": [{"appId": 9770020, "name": ")" +
         name + R"(", "installDir": ")" + folder + R"(", "uninstall": false, "installed": false}]}]}})";
}

TEST_F(HostExplain, TellsWhatFoundAGameAndWhere) {
  Sample();
  const GameExplanation game = Only("Kiteborne", kSampleCatalogue);
  EXPECT_EQ(game.outcome, Outcome::kFound);
  EXPECT_EQ(game.strategy, "Steam Games Scan");
  EXPECT_EQ(game.path, R"(C:\SteamLibrary\steamapps\common\Kiteborne\kite.exe)");
  EXPECT_THAT(game.source, HasSubstr("Steam App 9000030"));
  EXPECT_EQ(VerdictOf(game, "Steam Games Scan").verdict, Verdict::kFound);
  EXPECT_EQ(VerdictOf(game, "Steam Games Scan").reason, game.path);
}

TEST_F(HostExplain, HasAVerdictOfEachStrategyWithAReason) {
  Sample();
  for (const char* name : {"Kiteborne", "Far Beacon", "Candlemark", "Sprocket"}) {
    const GameExplanation game = Only(name, kSampleCatalogue);
    ASSERT_THAT(game.strategies, SizeIs(ScanStrategies().size()));
    for (const StrategyVerdict& verdict : game.strategies)
      EXPECT_NE(verdict.reason, "") << name << ": " << verdict.strategy;
  }
}

TEST_F(HostExplain, TellsWhichFieldOrSourceKeepsAStrategyFromTrying) {
  Sample();
  const GameExplanation game = Only("Far Beacon", kSampleCatalogue);
  EXPECT_EQ(game.outcome, Outcome::kMissing);
  EXPECT_EQ(VerdictOf(game, "Registry Search Scan").verdict, Verdict::kNotTried);
  EXPECT_EQ(VerdictOf(game, "Registry Search Scan").reason, "the record has no RegistryKey");
  EXPECT_THAT(*VerdictOf(game, "Registry Search Scan").questions, IsEmpty());
  EXPECT_EQ(VerdictOf(game, "Steam Games Scan").reason, "wants a record of source STEAM");
}

TEST_F(HostExplain, NamesTheFirstOfThePlacesThatWereTried) {
  Sample();
  const StrategyVerdict verdict = VerdictOf(Only("Far Beacon", kSampleCatalogue), "Default Exe Search");
  EXPECT_EQ(verdict.verdict, Verdict::kMissed);
  EXPECT_THAT(verdict.reason,
              MatchesRegex(R"(C:.Games.Far Beacon.beacon.exe doesn't exist \(nor \d+ other places?\))"));
}

TEST_F(HostExplain, NamesTheValueThatAKeyLacks) {
  GameSignature record = Record("Explained");
  record.RegistryKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickExplain\Game)";
  record.RegistryPathKeyName = "Folder";
  desktop_.String(record.RegistryKey, "Other", "x");
  Catalogue({record});
  EXPECT_EQ(VerdictOf(Only("Explained"), "Registry Search Scan").reason,
            "key " + record.RegistryKey + " has no value Folder");
}

TEST_F(HostExplain, NamesTheKeyThatDoesNotExistOnceForAllViews) {
  GameSignature record = Record("Explained");
  record.GameGUID = "7A11D3C0-0000-4000-8000-00000000B001";
  Catalogue({record});
  EXPECT_THAT(VerdictOf(Only("Explained"), "Uninstall Registry Search").reason,
              MatchesRegex(R"(key HKEY_LOCAL_MACHINE.*Uninstall.\{7A11D3C0.*\} doesn't exist)"));
}

TEST_F(HostExplain, CountsTheNamesThatWereCompared) {
  GameSignature record = Record("Explained");
  const std::string products = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickExplain\Products)";
  record.RegistryKey = products + "\\";
  record.DefaultExe = "x.exe";
  for (const char* name : {"One", "Two", "Three"})
    desktop_.String(products + "\\" + name, "DisplayName", name);
  Catalogue({record});
  EXPECT_EQ(VerdictOf(Only("Explained"), "Default Registry Scan").reason,
            "no entry of " + products + " is called 'Explained' (3 asked)");
}

TEST_F(HostExplain, CallsWindowsListByItsName) {
  GameSignature record = Record("Explained");
  record.RegistryKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)";
  record.DefaultExe = "x.exe";
  desktop_.String(record.RegistryKey + "TarnwickExplain", "DisplayName", "Another");
  Catalogue({record});
  EXPECT_THAT(VerdictOf(Only("Explained"), "Default Registry Scan").reason,
              MatchesRegex(R"(no Uninstall entry is called 'Explained' \(\d+ asked\))"));
}

TEST_F(HostExplain, FollowsAManifestToTheFolderThatIsMissing) {
  const std::string steam = R"(C:\TarnwickExplain\Steam)";
  desktop_.String(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Valve\Steam)", "InstallPath", steam, desktop::View::k64);
  desktop_.Folder(steam + R"(\steamapps\common)");
  desktop_.File(steam + R"(\steamapps\appmanifest_9770020.acf)",
                desktop::AppManifestText("9770020", "Explained", "Gone"));
  Catalogue({SteamRecord("Explained", "9770020")});
  const GameExplanation game = Only("Explained");
  EXPECT_EQ(game.outcome, Outcome::kMissing);
  EXPECT_EQ(VerdictOf(game, "Steam Games Scan").reason,
            "manifest appmanifest_9770020.acf names folder 'Gone', which is missing");
}

TEST_F(HostExplain, FollowsAManifestToTheExecutableThatIsMissing) {
  Build(SteamDesktop("Other name", "Here"));
  desktop_.Folder(R"(C:\TarnwickExplain\Steam\steamapps\common\Here)");
  Catalogue({SteamRecord("Explained", "9770020")});
  EXPECT_EQ(VerdictOf(Only("Explained"), "Steam Games Scan").reason,
            "manifest appmanifest_9770020.acf names folder 'Here', which has no play.exe");
}

constexpr char kGogWithoutFile[] = R"({"gog": {"games": [
    {"gameId": "977001", "name": "Explained", "executable": "C:\\TarnwickExplain\\gone.exe"},
    {"gameId": "977002", "name": "Another", "executable": "C:\\TarnwickExplain\\gone2.exe"}]}})";

TEST_F(HostExplain, FollowsALaunchersKeyToTheFileThatIsMissing) {
  Build(kGogWithoutFile);
  Catalogue({Record("explained")});
  EXPECT_EQ(VerdictOf(Only("EXPLAINED"), "GOG Registry Search").reason,
            R"(key HKEY_LOCAL_MACHINE\SOFTWARE\GOG.com\Games\977001 names C:\TarnwickExplain\gone.exe, )"
            "which doesn't exist");
}

TEST_F(HostExplain, CountsTheGamesOfALauncherThatListsNoSuchGame) {
  Build(kGogWithoutFile);
  Catalogue({Record("Unheard of")});
  EXPECT_EQ(VerdictOf(Only("Unheard of"), "GOG Registry Search").reason,
            "GOG lists no such game (2 looked at)");
}

TEST_F(HostExplain, NamesTheKeyOfALauncherThatIsNotThere) {
  Catalogue({Record("Explained")});
  EXPECT_EQ(VerdictOf(Only("Explained"), "GOG Registry Search").reason,
            R"(key HKEY_LOCAL_MACHINE\SOFTWARE\GOG.com\Games doesn't exist)");
}

// A folder that is nothing but a drive ends that search for all records.
TEST_F(HostExplain, ShowsTheGuardsLineOfAStrategyThatFailed) {
  GameSignature broken = Record("Broken");
  broken.DefaultExe = "x.exe";
  broken.DefaultFolder = "C:";
  GameSignature other = Record("Explained");
  other.DefaultExe = "x.exe";
  other.DefaultFolder = R"(C:\TarnwickExplain\Explained)";
  Catalogue({broken, other});
  const GameExplanation game = Only("Explained");
  EXPECT_EQ(game.outcome, Outcome::kFailed);
  EXPECT_EQ(game.sentence, "not found, and Default Exe Search failed");
  EXPECT_EQ(VerdictOf(game, "Default Exe Search").verdict, Verdict::kFailed);
  EXPECT_EQ(VerdictOf(game, "Default Exe Search").reason,
            "CRITICAL SEH ERROR in Strategy [Default Exe Search]: 0xE06D7363");
}

TEST_F(HostExplain, TellsIntoWhichEntryOfItsPathAGameWasMerged) {
  GameSignature first = Record("Explained One");
  first.DefaultExe = "x.exe";
  first.DefaultFolder = R"(C:\TarnwickExplain\Game)";
  GameSignature second = first;
  second.DisplayName = "Explained Two";
  desktop_.File(R"(C:\TarnwickExplain\Game\x.exe)");
  Catalogue({first, second});
  const GameExplanation game = Only("Explained Two");
  EXPECT_EQ(game.outcome, Outcome::kMerged);
  EXPECT_EQ(game.sentence, R"(found by Default Exe Search at C:\TarnwickExplain\Game\x.exe, and merged away )"
                           R"(into 'Explained One' at C:\TarnwickExplain\Game\x.exe: same path)");
  EXPECT_EQ(Only("Explained One").outcome, Outcome::kFound);
}

TEST_F(HostExplain, TellsIntoWhichEntryOfItsAppIdAGameWasMerged) {
  Build(R"({"steam": {"path": "C:\\TarnwickExplain\\Steam", "view": "64", "libraries": [
      {"path": "C:\\TarnwickExplain\\Steam", "apps": [
        {"appId": 9770020, "name": "Explained", "installDir": "Here"}]}],
      "appInfo": {"apps": [{"appId": 9770020, "name": "Otherwise", "executables": ["play.exe"]}]}}})");
  desktop_.File(R"(C:\TarnwickExplain\Steam\steamapps\common\Here\play.exe)");
  Catalogue({SteamRecord("Explained", "9770020")});
  const GameExplanation game = Only("Otherwise");
  EXPECT_EQ(game.outcome, Outcome::kMerged);
  EXPECT_THAT(game.sentence, HasSubstr("into 'Explained'"));
  EXPECT_THAT(game.sentence, HasSubstr("same Steam app id 9770020, and the source 'Steam AppInfo: 9770020' "
                                       "doesn't outrank 'HKEY_LOCAL_MACHINE"));
}

TEST_F(HostExplain, TellsThatAnEarlierLevelKeptALaterOneFromTheRecord) {
  Build(R"({"gog": {"games": [
      {"gameId": "977001", "name": "Explained", "executable": "C:\\TarnwickExplain\\gog.exe"}]},
      "files": [{"path": "C:\\TarnwickExplain\\gog.exe"}]})");
  Catalogue({SteamRecord("Explained", "9770020")});
  const GameExplanation game = Only("Explained");
  EXPECT_EQ(game.outcome, Outcome::kEarlier);
  EXPECT_EQ(game.strategy, "GOG Registry Search");
  EXPECT_THAT(
      game.sentence,
      testing::EndsWith("that is level 4, so Steam Games Scan and Steam Default ID never got the record"));
  EXPECT_EQ(VerdictOf(game, "Steam Default ID").verdict, Verdict::kNotTried);
  EXPECT_EQ(VerdictOf(game, "Steam Games Scan").reason, "found by an earlier level: GOG Registry Search");
}

TEST_F(HostExplain, ExplainsWhatOnlyALauncherNames) {
  Build(kGogWithoutFile);
  Catalogue({Record("Unheard of")});
  const GameExplanation game = Only("explained");
  EXPECT_FALSE(game.inCatalogue);
  EXPECT_EQ(game.outcome, Outcome::kMissing);
  EXPECT_EQ(game.sentence, "not found: GOG names it, the catalogue doesn't");
  EXPECT_EQ(VerdictOf(game, "Default Exe Search").reason, "no catalogue record has this name");
  EXPECT_THAT(VerdictOf(game, "GOG Registry Search").reason, HasSubstr("gone.exe, which doesn't exist"));
}

TEST_F(HostExplain, ExplainsWhatALauncherReportsWithoutARecord) {
  Sample();
  const GameExplanation game = Only("candlemark", kSampleCatalogue);
  EXPECT_FALSE(game.inCatalogue);
  EXPECT_EQ(game.name, "Candlemark Saga");
  EXPECT_EQ(game.outcome, Outcome::kFound);
  EXPECT_EQ(game.strategy, "GOG Registry Search");
}

TEST_F(HostExplain, ExplainsAnInstalledProgramThatNoRecordNames) {
  Sample();
  const GameExplanation game = Only("sprocket", kSampleCatalogue);
  EXPECT_EQ(game.sentence, "not found: Windows' list of programs names it, the catalogue doesn't");
}

TEST_F(HostExplain, ShowsNamesThatDifferByLittle) {
  Build(R"({"gog": {"games": [
      {"gameId": "977001", "name": "Explained II", "executable": "C:\\TarnwickExplain\\gone.exe"},
      {"gameId": "977002", "name": "Explained 3", "executable": "C:\\TarnwickExplain\\gone.exe"}]}})");
  Catalogue({Record("Explained 2")});
  EXPECT_THAT(Only("Explained 2").nearMisses,
              ElementsAre("the catalogue says 'Explained 2', GOG says 'Explained II'"));
  EXPECT_THAT(Only("Explained II").nearMisses,
              ElementsAre("the catalogue says 'Explained 2', GOG says 'Explained II'"));
}

TEST_F(HostExplain, FindsNamesWithoutTheirAccentsAndCase) {
  Sample();
  EXPECT_EQ(Only("CHATEAU", kSampleCatalogue).name, "Château Brumaire");
}

TEST_F(HostExplain, ExplainsTenGamesAtMostAndTheExactNameFirst) {
  GameList games;
  for (int i = 0; i < 20000; ++i) games.push_back(Record("Nothing " + std::to_string(i)));
  for (int i = 0; i < 14; ++i) games.push_back(Record("Explained " + std::to_string(i)));
  games.push_back(Record("Explained"));
  Catalogue(games);
  const Explanation explanation = Explain("explained");
  ASSERT_THAT(explanation.records, SizeIs(10));
  EXPECT_EQ(explanation.records.front().name, "Explained");
  EXPECT_EQ(explanation.records.back().name, "Explained 8");
  EXPECT_EQ(explanation.further, 5u);
  EXPECT_THAT(ExplanationText(explanation, {}),
              StartsWith("15 games have 'explained' in their name; these are "
                         "10 of them."));
}

TEST_F(HostExplain, OffersSimilarNamesWhereNothingHasTheName) {
  Sample();
  const Explanation explanation = Explain("Kiteborn3", kSampleCatalogue);
  EXPECT_THAT(explanation.records, IsEmpty());
  EXPECT_THAT(explanation.similar, IsEmpty());
  EXPECT_THAT(Explain("Kitebrone", kSampleCatalogue).similar, ElementsAre("Kiteborne"));
}

TEST_F(HostExplain, ChangesNothingInWhatTheLibraryAnswers) {
  Sample();
  const auto answer = [] {
    std::string text(4u << 20, '\0');
    text.resize(
        static_cast<size_t>(RunScanGuarded(kSampleCatalogue, text.data(), static_cast<int>(text.size()))));
    return text;
  };
  const std::string before = answer();
  Explain("a", kSampleCatalogue);
  EXPECT_EQ(answer(), before);
}

TEST_F(HostExplain, AsksAgainOnlyAboutTheOneRecord) {
  Sample();
  const StrategyVerdict verdict = VerdictOf(Only("Far Beacon", kSampleCatalogue), "Default Exe Search");
  for (const host::Heard& heard : *verdict.questions)
    EXPECT_THAT(heard.question.subject, Not(HasSubstr("Vellum")));
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

TEST_F(HostExplain, TheTextKeepsTheTerminalsWidth) {
  Sample();
  const Explanation explanation = Explain("a", kSampleCatalogue);
  for (const size_t width : {30u, 50u, 79u, 120u}) {
    for (const bool verbose : {false, true}) {
      for (const std::string& line : LinesOf(ExplanationText(explanation, {width, verbose})))
        EXPECT_LE(host::DisplayColumns(line), width) << line;
    }
  }
}

TEST_F(HostExplain, TheTextShowsQuestionsWhereItIsAskedTo) {
  Sample();
  const Explanation explanation = Explain("Far Beacon", kSampleCatalogue);
  const std::string question = R"(       - look for C:\Games\Far Beacon\beacon.exe: error)";
  EXPECT_THAT(ExplanationText(explanation, {0, true}), HasSubstr(question));
  EXPECT_THAT(ExplanationText(explanation, {0, false}), Not(HasSubstr("look for")));
}

TEST_F(HostExplain, TheTextHasOneLineForEachStrategyWhereTheyFit) {
  Sample();
  const std::vector<std::string> lines =
      LinesOf(ExplanationText(Explain("Far Beacon", kSampleCatalogue), {}));
  ASSERT_THAT(lines, SizeIs(2 + 1 + 23 + 2));
  EXPECT_EQ(lines[0], "Far Beacon");
  EXPECT_EQ(lines[1], "  Not found.");
  EXPECT_EQ(lines[3], "  6  Default Registry Scan       not tried  the record has no RegistryKey");
}

TEST_F(HostExplain, TheJsonHasEveryQuestionAndNoFileWhole) {
  Sample();
  const auto json = nlohmann::json::parse(host::ExplanationJson(Explain("Far Beacon", kSampleCatalogue)));
  EXPECT_EQ(json["subject"], "Far Beacon");
  const auto& game = json["records"][0];
  EXPECT_EQ(game["outcome"], "missing");
  ASSERT_THAT(game["strategies"], SizeIs(23));
  size_t files = 0;
  for (const auto& strategy : game["strategies"]) {
    for (const auto& question : strategy["questions"]) {
      if (question["kind"] != "read text file" || question["ok"] != true) continue;
      ++files;
      EXPECT_THAT(question["answer"].get<std::string>(), MatchesRegex("\\d+ bytes"));
    }
  }
  EXPECT_GT(files, 3u);
}

}  // namespace
}  // namespace tarnwick
