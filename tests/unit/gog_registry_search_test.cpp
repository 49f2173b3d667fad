#include "launchers/gog_registry_search.h"

#include "support/strategy_fixture.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kRoot = R"(HKEY_LOCAL_MACHINE\SOFTWARE\GOG.com\Games\)";
const std::string kFolder = R"(C:\TarnwickTest\Gog\)";

class GogRegistrySearchTest : public tests::StrategyTest {
 protected:
  std::string Game(const std::string& id, const std::string& name, View view = View::k32) {
    const std::string exe = kFolder + id + ".exe";
    desktop_.File(exe);
    desktop_.String(kRoot + id, "exe", exe, view);
    desktop_.String(kRoot + id, "gameName", name, view);
    return exe;
  }

  std::vector<std::string> Search() { return tests::Describe(GogRegistrySearch({}, {})); }
};

std::string Expected(const std::string& name, const std::string& exe, const std::string& id) {
  return name + "|" + exe + "|goggalaxy://openGameView/" + id + "|GOG Registry: " + kRoot + id + "||1|0|";
}

TEST_F(GogRegistrySearchTest, WritesTwoLinesWhereNothingIsInstalled) {
  EXPECT_THAT(Search(), IsEmpty());
  EXPECT_THAT(capture_.Lines(), ElementsAre("[GogRegistrySearch] Starting GOG Registry Search...",
                                            "[GogRegistrySearch] Scan completed! Found 0 games."));
}

TEST_F(GogRegistrySearchTest, ReportsARegisteredGame) {
  const std::string exe = Game("1207658924", "The Witch");
  EXPECT_THAT(Search(), ElementsAre(Expected("The Witch", exe, "1207658924")));
  EXPECT_THAT(capture_.Lines(), ElementsAre("[GogRegistrySearch] Starting GOG Registry Search...",
                                            "[GogRegistrySearch] Found: The Witch -> " + exe,
                                            "[GogRegistrySearch] Scan completed! Found 1 games."));
}

TEST_F(GogRegistrySearchTest, FillsEveryFieldOfAnEntry) {
  const std::string exe = Game("42", "Answer");
  desktop_.String(kRoot + "42", "launchParam", "-windowed", View::k32);
  const auto entries = GetGogGamesFromRegistry();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].gameId, "42");
  EXPECT_EQ(entries[0].exe, exe);
  EXPECT_EQ(entries[0].launchParam, "-windowed");
  EXPECT_EQ(entries[0].gameName, "Answer");
  EXPECT_EQ(entries[0].registryKey, kRoot + "42");
}

TEST_F(GogRegistrySearchTest, ReportsAGameOfBothViewsOnce) {
  Game("1", "One");
  const std::string exe = Game("1", "One", View::k64);
  EXPECT_THAT(Search(), ElementsAre(Expected("One", exe, "1")));
}

TEST_F(GogRegistrySearchTest, PutsThe32BitViewBeforeThe64BitView) {
  const std::string wide = Game("1", "Wide", View::k64);
  const std::string narrow = Game("2", "Narrow");
  EXPECT_THAT(Search(), ElementsAre(Expected("Narrow", narrow, "2"), Expected("Wide", wide, "1")));
}

TEST_F(GogRegistrySearchTest, ReadsTheValuesOfTheNativeViewInBothPasses) {
  Game("1", "Narrow name");
  const std::string exe = Game("1", "Wide name", View::k64);
  EXPECT_THAT(Search(), ElementsAre(Expected("Wide name", exe, "1")));
}

TEST_F(GogRegistrySearchTest, ComparesIdsOfTheViewsWithCase) {
  Game("abc", "Small");
  Game("ABC", "Big", View::k64);
  // Key names themselves have no case: both reads end in the native view's key.
  const std::string big = kFolder + "ABC.exe";
  EXPECT_THAT(Search(), ElementsAre(Expected("Big", big, "abc"), Expected("Big", big, "ABC")));
}

TEST_F(GogRegistrySearchTest, TakesTheNameFromTheFileWhereNoneIsRegistered) {
  desktop_.File(kFolder + "Old.Game.exe");
  desktop_.String(kRoot + "7", "exe", kFolder + "Old.Game.exe", View::k32);
  EXPECT_THAT(Search(), ElementsAre(Expected("Old.Game", kFolder + "Old.Game.exe", "7")));
}

TEST_F(GogRegistrySearchTest, NamesAGameUnknownWhoseFileHasNoExtension) {
  desktop_.File(kFolder + "game");
  desktop_.String(kRoot + "7", "exe", kFolder + "game", View::k32);
  EXPECT_THAT(Search(), ElementsAre(Expected("Unknown", kFolder + "game", "7")));
}

TEST_F(GogRegistrySearchTest, PassesOverAGameThatIsGone) {
  desktop_.String(kRoot + "8", "exe", kFolder + "gone.exe", View::k32);
  EXPECT_THAT(Search(), IsEmpty());
  EXPECT_EQ(capture_.Lines().size(), 2u);
}

TEST_F(GogRegistrySearchTest, PassesOverAKeyWithoutAnExecutable) {
  desktop_.String(kRoot + "9", "gameName", "Nothing", View::k32);
  desktop_.String(kRoot + "10", "exe", "", View::k64);
  EXPECT_THAT(GetGogGamesFromRegistry(), IsEmpty());
  EXPECT_THAT(Search(), IsEmpty());
}

TEST_F(GogRegistrySearchTest, RemovesNeitherQuotesNorArguments) {
  const std::string exe = Game("1", "One");
  desktop_.String(kRoot + "1", "exe", "\"" + exe + "\"", View::k32);
  Game("2", "Two");
  desktop_.String(kRoot + "2", "exe", exe + " -x", View::k32);
  EXPECT_THAT(Search(), IsEmpty());
  EXPECT_EQ(GetGogGamesFromRegistry().size(), 2u);
}

TEST_F(GogRegistrySearchTest, ShowsTheCleanedNameInTheFoundLineToo) {
  const std::string exe = Game("1", "Titan\xC2\xAE Quest\xE2\x84\xA2");
  EXPECT_THAT(Search(), ElementsAre(Expected("Titan Quest", exe, "1")));
  EXPECT_EQ(capture_.Lines()[1], "[GogRegistrySearch] Found: Titan Quest -> " + exe);
}

TEST_F(GogRegistrySearchTest, ReadsNamesOfAllLanguages) {
  const std::string name = "Вед\xD1\x8C\xD0\xBC\xD0\xB0\xD0\xBA 巫師 Zoë";
  const std::string exe = Game("Игра 游戏", name);
  EXPECT_THAT(Search(), ElementsAre(Expected(name, exe, "Игра 游戏")));
}

TEST_F(GogRegistrySearchTest, IgnoresTheCatalogue) {
  const std::string exe = Game("1", "One");
  GameSignature other;
  other.DisplayName = "Other";
  other.SourceKind = kSourceGog;
  EXPECT_EQ(tests::Describe(GogRegistrySearch({other}, "S-1-5-21")),
            std::vector<std::string>{Expected("One", exe, "1")});
}

TEST_F(GogRegistrySearchTest, KeepsWhatItReadBeforeAFailure) {
  const std::string exe = Game("1", "First");
  Game("2", std::string(3000, 'n'), View::k64);
  EXPECT_THAT(tests::WithoutMemory(3000, [&] { return Search(); }), ElementsAre(Expected("First", exe, "1")));
  EXPECT_THAT(capture_.Lines(), ElementsAre("[GogRegistrySearch] Starting GOG Registry Search...",
                                            "[GogRegistrySearch] Error reading GOG registry: std::bad_alloc",
                                            "[GogRegistrySearch] Found: First -> " + exe,
                                            "[GogRegistrySearch] Scan completed! Found 1 games."));
}

}  // namespace
}  // namespace tarnwick
