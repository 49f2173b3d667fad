#include "matching/gameux_info_search.h"

#include "matching/gameux_registry_search.h"
#include "support/gameux_fixture.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::Describe;
using tests::kOddName;

const std::string kRoot = "C:\\TarnwickTest\\GameUxInfo\\";
const std::string& kList = tests::kGameUxList;

class GameUxInfoSearch : public tests::GameUxTest {
 protected:
  std::string Enter(const std::string& subkey) { return GameUxTest::Enter(kRoot, subkey); }
};

TEST_F(GameUxInfoSearch, LogsItsFrameForAnEmptyList) {
  EXPECT_THAT(ScanGameUxInfo(), IsEmpty());
  EXPECT_THAT(capture_.Raw(), ElementsAre("[Tarnwick] [GameUXInfoSearch] Starting GameUX Info Search...\n",
                                          "[Tarnwick] [GameUXInfoSearch] Scan completed! Found 0 games.\n"));
}

TEST_F(GameUxInfoSearch, ReportsEntriesByTheirSubkeysInTheOrderOfBytes) {
  const std::string b = Enter("b");
  const std::string a = Enter("{A}");
  const std::string odd = Enter(kOddName);
  const std::string upper = Enter("B2");
  EXPECT_THAT(Describe(ScanGameUxInfo()),
              ElementsAre("B2|" + upper + "||GameUX Info: B2||1|0|", "b|" + b + "||GameUX Info: b||1|0|",
                          kOddName + "|" + odd + "||GameUX Info: " + kOddName + "||1|0|",
                          "{A}|" + a + "||GameUX Info: {A}||1|0|"));
  EXPECT_THAT(capture_.Raw(),
              ElementsAre("[Tarnwick] [GameUXInfoSearch] Starting GameUX Info Search...\n",
                          "[Tarnwick] [GameUXInfoSearch] Found: B2 -> " + upper + "\n",
                          "[Tarnwick] [GameUXInfoSearch] Found: b -> " + b + "\n",
                          "[Tarnwick] [GameUXInfoSearch] Found: " + kOddName + " -> " + odd + "\n",
                          "[Tarnwick] [GameUXInfoSearch] Found: {A} -> " + a + "\n",
                          "[Tarnwick] [GameUXInfoSearch] Scan completed! Found 4 games.\n"));
}

TEST_F(GameUxInfoSearch, AnEntryHoldsItsFieldsAndNoPathField) {
  const std::string exe = Enter("One");
  Set("One", "ApplicationId", "{ABC}");
  Set("One", "ConfigGdfBinaryPath", "C:\\gdf.dll");
  const GameUxEntries entries = ReadGameUxInfoEntries();
  ASSERT_EQ(entries.size(), 1u);
  const GameUxEntry& entry = entries.at("One");
  EXPECT_EQ(entry.applicationId, "One");
  EXPECT_EQ(entry.appExePath, exe);
  EXPECT_EQ(entry.configGdfBinaryPath, "C:\\gdf.dll");
  EXPECT_EQ(entry.keyPath, kList + "One");
  EXPECT_EQ(entry.pathField, "");
}

TEST_F(GameUxInfoSearch, KeepsEntriesWithoutIdOrExecutable) {
  desktop_.Key(kList + "Empty", View::k32);
  Set("Missing", "AppExePath", kRoot + "missing.exe");
  const GameUxEntries entries = ReadGameUxInfoEntries();
  EXPECT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries.at("Empty").appExePath, "");
  EXPECT_THAT(ScanGameUxInfo(), IsEmpty());
  EXPECT_THAT(capture_.Lines().size(), 2u);
}

TEST_F(GameUxInfoSearch, FallsThroughToTheSecondPathByItsExactName) {
  desktop_.File(kRoot + "gdf.exe");
  Set("One", "AppExePath", kRoot + "missing.exe");
  Set("One", "ConfigGDFBinaryPath", kRoot + "gdf.exe");
  EXPECT_EQ(ReadGameUxInfoEntries().at("One").configGdfBinaryPath, "");
  EXPECT_THAT(ScanGameUxInfo(), IsEmpty());
  Set("Two", "ConfigGdfBinaryPath", kRoot + "gdf.exe");
  EXPECT_THAT(Describe(ScanGameUxInfo()), ElementsAre("Two|" + kRoot + "gdf.exe||GameUX Info: Two||1|0|"));
}

TEST_F(GameUxInfoSearch, ReportsWhatTheOtherSearchLeavesOut) {
  Enter("Marketplace");
  Set("Marketplace", "ApplicationId", "ABC");
  Set("Marketplace", "Title", "Games for Windows Marketplace");
  Enter("Own");
  Set("Own", "ApplicationId", "DEF");
  Set("Own", "ConfigGDFBinaryPath", "C:\\Program Files\\Microsoft Games\\Chess\\chess.exe");
  EXPECT_THAT(ReadGameUxEntries(), IsEmpty());
  EXPECT_EQ(ScanGameUxInfo().size(), 2u);
}

TEST_F(GameUxInfoSearch, TheSameGameHasTwoNamesAndOneExecutable) {
  const std::string exe = Enter("Subkey");
  Set("Subkey", "ApplicationId", "{ABC}");
  GameSignature game;
  game.DisplayName = "Title";
  game.GameGUID = "ABC";
  EXPECT_THAT(Describe(ScanGameUxRegistry({game})),
              ElementsAre("Title|" + exe + "||" + kList + "Subkey||1|0|"));
  EXPECT_THAT(Describe(ScanGameUxInfo()), ElementsAre("Subkey|" + exe + "||GameUX Info: Subkey||1|0|"));
}

TEST_F(GameUxInfoSearch, ReadsThe32BitViewOnly) {
  const std::string exe = Enter("One");
  Set("One", "AppExePath", kRoot + "other.exe", View::k64);
  Set("Only64", "AppExePath", exe, View::k64);
  const GameUxEntries entries = ReadGameUxInfoEntries();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries.at("One").appExePath, exe);
}

TEST_F(GameUxInfoSearch, ValuesBehindOneThatIsTooLongAreNotSeen) {
  desktop_.File(kRoot + "foo.exe");
  desktop_.Binary(kList + "One", "A", std::string(4097, 'x'), View::k32);
  Set("One", "ConfigGdfBinaryPath", kRoot + "foo.exe");
  EXPECT_THAT(ScanGameUxInfo(), IsEmpty());
}

}  // namespace
}  // namespace tarnwick
