#include "matching/gameux_registry_search.h"

#include "foundation/windows_api.h"
#include "support/gameux_fixture.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::DebugCapture;
using tests::Describe;
using tests::kOddName;

const std::string kRoot = "C:\\TarnwickTest\\GameUxRegistry\\";
const std::string& kList = tests::kGameUxList;
const std::string kGuid = "7A9C1F40-AAAA-4000-8000-7461726E7769";
const std::string kOtherGuid = "7A9C1F40-BBBB-4000-8000-7461726E7769";
const std::string kEnumerating = "[GameUXRegistrySearch] Enumerating subkeys of: " + kList;

class GameUxRegistrySearch : public tests::GameUxTest {
 protected:
  std::string Enter(const std::string& subkey, const std::string& applicationId) {
    Set(subkey, "ApplicationId", applicationId);
    return GameUxTest::Enter(kRoot, subkey);
  }
  static GameSignature Signature(const std::string& name, const std::string& guid) {
    GameSignature signature;
    signature.DisplayName = name;
    signature.GameGUID = guid;
    return signature;
  }
  static GameUxEntries Read(const std::string& subkey) {
    GameUxEntries entries;
    ReadGameUxSubkey(kList, subkey, entries);
    return entries;
  }
};

TEST_F(GameUxRegistrySearch, LogsItsFrameForAnEmptyList) {
  EXPECT_THAT(ScanGameUxRegistry({Signature("Foo", kGuid)}), IsEmpty());
  EXPECT_THAT(
      capture_.Raw(),
      ElementsAre("[Tarnwick] [GameUXRegistrySearch] Starting GameUX Registry Search...\n",
                  "[Tarnwick] " + kEnumerating + "\n", "[Tarnwick] [GameUXRegistrySearch] Found 0 subkeys.\n",
                  "[Tarnwick] [GameUXRegistrySearch] Got 0 GameUX entries.\n",
                  "[Tarnwick] [GameUXRegistrySearch] Scan completed! Found 0 games.\n"));
}

TEST_F(GameUxRegistrySearch, ReportsAGameWithoutLaunchUrlOrIcon) {
  const std::string exe = Enter("One", "{" + kGuid + "}");
  GameSignature game = Signature(kOddName, kGuid);
  game.LaunchUrl = "foo://run";
  game.SourceKind = kSourceSteam;
  game.SourceExId = "7";
  EXPECT_THAT(Describe(ScanGameUxRegistry({game})),
              ElementsAre(kOddName + "|" + exe + "||" + kList + "One||1|0|"));
  EXPECT_THAT(capture_.Lines(), ElementsAre("[GameUXRegistrySearch] Starting GameUX Registry Search...",
                                            kEnumerating, "[GameUXRegistrySearch] Found 1 subkeys.",
                                            "[GameUXRegistrySearch] Got 1 GameUX entries.",
                                            "[GameUXRegistrySearch] Found: " + kOddName + " -> " + exe,
                                            "[GameUXRegistrySearch] Scan completed! Found 1 games."));
}

TEST_F(GameUxRegistrySearch, KeepsTheOrderOfTheCatalogue) {
  const std::string one = Enter("One", kGuid);
  const std::string two = Enter("Two", kOtherGuid);
  Set("Three", "Title", "without an id");
  ScanGameUxRegistry({Signature("B", kOtherGuid), Signature("None", "X"), Signature("A", kGuid)});
  EXPECT_THAT(
      capture_.Lines(),
      ElementsAre("[GameUXRegistrySearch] Starting GameUX Registry Search...", kEnumerating,
                  "[GameUXRegistrySearch] Found 3 subkeys.", "[GameUXRegistrySearch] Got 2 GameUX entries.",
                  "[GameUXRegistrySearch] Found: B -> " + two, "[GameUXRegistrySearch] Found: A -> " + one,
                  "[GameUXRegistrySearch] Scan completed! Found 2 games."));
}

TEST_F(GameUxRegistrySearch, PassesOverSignaturesWithoutAGuid) {
  Enter("One", "00000000-0000-0000-0000-000000000000");
  EXPECT_THAT(
      ScanGameUxRegistry({Signature("A", ""), Signature("B", "00000000-0000-0000-0000-000000000000")}),
      IsEmpty());
}

TEST_F(GameUxRegistrySearch, TheGuidMustAgreeInCaseAndHasNoBraces) {
  Enter("One", "{ABC}");
  EXPECT_EQ(ScanGameUxRegistry({Signature("A", "ABC")}).size(), 1u);
  EXPECT_THAT(ScanGameUxRegistry({Signature("A", "abc"), Signature("B", "{ABC}")}), IsEmpty());
}

TEST_F(GameUxRegistrySearch, BracesAreRemovedWhereverTheyStand) {
  Enter("One", "}A{{B}C{");
  EXPECT_EQ(ScanGameUxRegistry({Signature("A", "ABC")}).size(), 1u);
}

TEST_F(GameUxRegistrySearch, AnEntryHoldsAllItsFields) {
  const std::string exe = Enter("One", "{ABC}");
  Set("One", "ConfigGDFBinaryPath", "C:\\gdf.dll");
  const GameUxEntries entries = ReadGameUxEntries();
  ASSERT_EQ(entries.size(), 1u);
  const auto& [id, entry] = *entries.begin();
  EXPECT_EQ(id, "ABC");
  EXPECT_EQ(entry.applicationId, "ABC");
  EXPECT_EQ(entry.appExePath, exe);
  EXPECT_EQ(entry.configGdfBinaryPath, "C:\\gdf.dll");
  EXPECT_EQ(entry.keyPath, kList + "One");
  EXPECT_EQ(entry.pathField, "AppExePath");
}

TEST_F(GameUxRegistrySearch, FallsThroughToTheSecondPath) {
  Set("One", "ApplicationId", "ABC");
  Set("One", "AppExePath", kRoot + "missing.exe");
  Set("One", "ConfigGDFBinaryPath", kRoot + "gdf.exe");
  EXPECT_THAT(ReadGameUxEntries(), IsEmpty());
  desktop_.File(kRoot + "gdf.exe");
  EXPECT_EQ(ReadGameUxEntries().at("ABC").pathField, "ConfigGDFBinaryPath");
  EXPECT_THAT(Describe(ScanGameUxRegistry({Signature("Foo", "ABC")})),
              ElementsAre("Foo|" + kRoot + "gdf.exe||" + kList + "One||1|0|"));
}

TEST_F(GameUxRegistrySearch, AnEntryWithoutAnExecutableIsLeftOut) {
  Set("One", "ApplicationId", "ABC");
  Set("One", "AppExePath", kRoot + "missing.exe");
  EXPECT_THAT(ScanGameUxRegistry({Signature("Foo", "ABC")}), IsEmpty());
  EXPECT_THAT(capture_.LinesWith("[GameUXRegistrySearch] Got"),
              ElementsAre("[GameUXRegistrySearch] Got 0 GameUX entries."));
}

TEST_F(GameUxRegistrySearch, AnExtensionInAFolderNameIsEnough) {
  desktop_.File(kRoot + "Foo.exe.d\\game.dat");
  Set("One", "ApplicationId", "ABC");
  Set("One", "AppExePath", kRoot + "Foo.exe.d\\game.dat");
  EXPECT_EQ(ScanGameUxRegistry({Signature("Foo", "ABC")}).size(), 1u);
}

TEST_F(GameUxRegistrySearch, AnEntryWithoutAnIdIsLeftOut) {
  Enter("NoId", "");
  Enter("Braces", "{}");
  EXPECT_THAT(Read("NoId"), IsEmpty());
  EXPECT_THAT(Read("Braces"), IsEmpty());
}

TEST_F(GameUxRegistrySearch, TheMarketplaceIsLeftOutByItsExactTitle) {
  Enter("One", "ABC");
  Set("One", "Title", "Games for Windows Marketplace");
  EXPECT_THAT(Read("One"), IsEmpty());
  Set("One", "Title", "Games for Windows marketplace");
  EXPECT_EQ(Read("One").size(), 1u);
}

TEST_F(GameUxRegistrySearch, TheSystemsOwnGamesAreLeftOutByTheirSecondPath) {
  Enter("One", "ABC");
  for (const std::string path :
       {"C:\\Program Files\\Microsoft Games\\Chess\\chess.exe",
        "%SystemDrive%\\PROGRAM FILES\\microsoft games", "program files\\microsoft games"}) {
    Set("One", "ConfigGDFBinaryPath", path);
    EXPECT_THAT(Read("One"), IsEmpty()) << path;
  }
  for (const std::string path :
       {"C:\\Program Files (x86)\\Microsoft Games\\x", "C:\\Microsoft Games\\x", ""}) {
    Set("One", "ConfigGDFBinaryPath", path);
    EXPECT_EQ(Read("One").size(), 1u) << path;
  }
}

TEST_F(GameUxRegistrySearch, AFirstPathBelowMicrosoftGamesDoesNotCount) {
  const std::string exe = "C:\\Program Files\\Microsoft Games\\TarnwickTest\\foo.exe";
  desktop_.File(exe);
  Set("One", "ApplicationId", "ABC");
  Set("One", "AppExePath", exe);
  EXPECT_EQ(Read("One").at("ABC").appExePath, exe);
}

TEST_F(GameUxRegistrySearch, ALaterSubkeyOfTheSameIdReplacesEveryField) {
  GameUxEntries entries;
  Enter("A", "ABC");
  Set("A", "ConfigGDFBinaryPath", kRoot + "a.gdf");
  const std::string second = Enter("B", "{ABC}");
  ReadGameUxSubkey(kList, "A", entries);
  ReadGameUxSubkey(kList, "B", entries);
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries.at("ABC").appExePath, second);
  EXPECT_EQ(entries.at("ABC").configGdfBinaryPath, "");
  EXPECT_EQ(entries.at("ABC").keyPath, kList + "B");
  EXPECT_THAT(Describe(ScanGameUxRegistry({Signature("Foo", "ABC")})),
              ElementsAre("Foo|" + second + "||" + kList + "B||1|0|"));
}

TEST_F(GameUxRegistrySearch, ListsTheSubkeysOfThe32BitViewOnly) {
  desktop_.File(kRoot + "a.exe");
  Set("Only64", "ApplicationId", "ABC", View::k64);
  Set("Only64", "AppExePath", kRoot + "a.exe", View::k64);
  EXPECT_THAT(ReadGameUxEntries(), IsEmpty());
  EXPECT_EQ(Read("Only64").size(), 1u);
}

// The subkey is named by the 32-bit view, but its values are read from the native one where that has the key
// too.
TEST_F(GameUxRegistrySearch, ReadsTheValuesOfTheNativeViewWhereItHasTheSubkey) {
  if (sizeof(void*) != 8) GTEST_SKIP() << "the native view is the 32-bit one";
  Enter("One", "IN32");
  desktop_.File(kRoot + "native.exe");
  Set("One", "ApplicationId", "IN64", View::k64);
  Set("One", "AppExePath", kRoot + "native.exe", View::k64);
  const GameUxEntries entries = ReadGameUxEntries();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries.at("IN64").appExePath, kRoot + "native.exe");
}

TEST_F(GameUxRegistrySearch, SubkeysMayHaveAnyName) {
  Enter(kOddName, "ABC");
  EXPECT_EQ(ReadGameUxEntries().at("ABC").keyPath, kList + kOddName);
}

TEST_F(GameUxRegistrySearch, AMissingSubkeyAddsNothing) { EXPECT_THAT(Read("Missing"), IsEmpty()); }

TEST(GuardGameUxSubkey, IsSilentForAReadThatEnds) {
  DebugCapture capture;
  int read = 0;
  GuardGameUxSubkey("{ABC}", [&] { ++read; });
  EXPECT_EQ(read, 1);
  EXPECT_THAT(capture.Raw(), IsEmpty());
}

TEST(GuardGameUxSubkey, SurvivesAStructuredExceptionWithARawLine) {
  DebugCapture capture;
  GuardGameUxSubkey("{ABC}", [] { RaiseException(0xC0000005, 0, 0, nullptr); });
  GuardGameUxSubkey(kOddName, [] { RaiseException(0x1A, 0, 0, nullptr); });
  EXPECT_THAT(
      capture.Raw(),
      ElementsAre("[GameUXRegistrySearch] SEH Error processing subkey: {ABC} (Exception Code: 0xC0000005)\n",
                  "[GameUXRegistrySearch] SEH Error processing subkey: " + kOddName +
                      " (Exception Code: 0x0000001A)\n"));
}

TEST(GuardGameUxSubkey, CutsTheLineToItsBuffer) {
  DebugCapture capture;
  GuardGameUxSubkey(std::string(600, 'x'), [] { RaiseException(0xC0000005, 0, 0, nullptr); });
  const std::string start = "[GameUXRegistrySearch] SEH Error processing subkey: ";
  EXPECT_THAT(capture.Raw(), ElementsAre(start + std::string(511 - start.size(), 'x')));
}

}  // namespace
}  // namespace tarnwick
