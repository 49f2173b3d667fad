#include "launchers/ea_registry_search.h"

#include "support/strategy_fixture.h"
#include "support/uninstall_key.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kSoftware = R"(HKEY_LOCAL_MACHINE\SOFTWARE\)";
const std::string& kUninstall = tests::kUninstallKey;
const std::string kFolder = R"(C:\TarnwickTest\Ea\)";

class EaRegistrySearch : public tests::StrategyTest {
 protected:
  void Publish(const std::string& publisher, const std::string& title, const std::string& guid) {
    desktop_.String(kSoftware + publisher + "\\" + title, "Product GUID", guid, View::k32);
  }

  void Uninstall(const std::string& guid, const std::string& name, const std::string& icon) {
    desktop_.String(kUninstall + guid, "DisplayName", name, View::k32);
    desktop_.String(kUninstall + guid, "DisplayIcon", icon, View::k32);
  }

  // A whole game below "EA Games".
  std::string Game(const std::string& name, const std::string& guid) {
    const std::string exe = kFolder + name + ".exe";
    desktop_.File(exe);
    Publish("EA Games", name, guid);
    Uninstall(guid, name, exe);
    return exe;
  }

  std::vector<std::string> Search() { return tests::Describe(EARegistrySearch({}, {})); }
};

std::string Expected(const std::string& name, const std::string& exe, const std::string& guid) {
  return name + "|" + exe + "|origin2://game/launch?offerIds=" + guid + "|EA Registry: " + kUninstall + guid +
         "||1|0|";
}

TEST_F(EaRegistrySearch, WritesTwoLinesWhereNothingIsInstalled) {
  EXPECT_THAT(Search(), IsEmpty());
  EXPECT_THAT(capture_.Lines(), ElementsAre("[EARegistrySearch] Starting EA Registry Search...",
                                            "[EARegistrySearch] Scan completed! Found 0 games."));
}

TEST_F(EaRegistrySearch, JoinsAPublisherKeyToItsUninstallRecord) {
  const std::string exe = Game("Mirror", "{AAAA-1}");
  EXPECT_THAT(Search(), ElementsAre(Expected("Mirror", exe, "{AAAA-1}")));
  EXPECT_THAT(capture_.Lines(), ElementsAre("[EARegistrySearch] Starting EA Registry Search...",
                                            "[EARegistrySearch] Found: Mirror -> " + exe,
                                            "[EARegistrySearch] Scan completed! Found 1 games."));
}

TEST_F(EaRegistrySearch, FillsEveryFieldOfAnEntry) {
  const std::string exe = Game("Mirror", "{AAAA-1}");
  const auto entries = GetEaGamesFromRegistry();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].displayName, "Mirror");
  EXPECT_EQ(entries[0].exePath, exe);
  EXPECT_EQ(entries[0].registryKey, kUninstall + "{AAAA-1}");
  EXPECT_EQ(entries[0].valueName, "DisplayIcon");
  EXPECT_EQ(entries[0].productGuid, "{AAAA-1}");
}

TEST_F(EaRegistrySearch, TriesThePublishersInTheirOrder) {
  const std::vector<std::string> publishers = {
      "EA Games",      "EA Sports",    "BioWare", "Crytek", "Origin", "Sims",
      "PopCap",        "PopCap Games", "Respawn", "Maxis",  "CCCP",   "Bullfrog Productions",
      "Origin Systems"};
  std::vector<std::string> expected;
  for (const std::string& publisher : publishers) {
    // Names that sort the other way round than the table does.
    const std::string name = "Game " + std::to_string(99 - expected.size());
    const std::string exe = kFolder + name + ".exe";
    desktop_.File(exe);
    Publish(publisher, name, "{" + name + "}");
    Uninstall("{" + name + "}", name, exe);
    expected.push_back(Expected(name, exe, "{" + name + "}"));
  }
  EXPECT_EQ(Search(), expected);
  EXPECT_EQ(expected.size(), 13u);
}

TEST_F(EaRegistrySearch, RemovesQuotesAroundTheIconBeforeTheFileTest) {
  const std::string exe = Game("Quoted", "{Q}");
  Uninstall("{Q}", "Quoted", "\"" + exe + "\"");
  EXPECT_THAT(Search(), ElementsAre(Expected("Quoted", exe, "{Q}")));
}

TEST_F(EaRegistrySearch, TakesALoneQuoteMarkForAnEmptyIcon) {
  Game("Lone", "{L}");
  Uninstall("{L}", "Lone", "\"");
  EXPECT_THAT(Search(), IsEmpty());
}

TEST_F(EaRegistrySearch, KeepsTheIconIndexAndSoFindsNoFile) {
  const std::string exe = Game("Indexed", "{I}");
  Uninstall("{I}", "Indexed", exe + ",0");
  EXPECT_THAT(Search(), IsEmpty());
}

TEST_F(EaRegistrySearch, ComparesGuidsWithCase) {
  Game("Case", "{abc}");
  Publish("EA Games", "Case", "{ABC}");
  EXPECT_THAT(Search(), IsEmpty());
}

TEST_F(EaRegistrySearch, ReportsATitleOfTwoPublishersTwice) {
  const std::string exe = Game("Twice", "{T}");
  Publish("Origin", "Twice", "{T}");
  EXPECT_THAT(Search(), ElementsAre(Expected("Twice", exe, "{T}"), Expected("Twice", exe, "{T}")));
}

TEST_F(EaRegistrySearch, SkipsAPublisherKeyWithoutAProductGuid) {
  desktop_.String(kSoftware + R"(EA Games\Bare)", "Install Dir", kFolder, View::k32);
  desktop_.String(kSoftware + R"(EA Games\Bare)", "DisplayName", "Bare", View::k32);
  EXPECT_THAT(Search(), IsEmpty());
}

TEST_F(EaRegistrySearch, LooksOnlyAtTheFirstLevelBelowAPublisher) {
  Game("Deep", "{D}");
  desktop_.Remove();
  desktop_.File(kFolder + "Deep.exe");
  Uninstall("{D}", "Deep", kFolder + "Deep.exe");
  Publish(R"(EA Games\Series)", "Deep", "{D}");
  EXPECT_THAT(Search(), IsEmpty());
}

TEST_F(EaRegistrySearch, SkipsRecordsWithoutIconNameOrFile) {
  Publish("EA Games", "No record", "{1}");
  Publish("EA Games", "No icon", "{2}");
  desktop_.String(kUninstall + "{2}", "DisplayName", "No icon", View::k32);
  desktop_.File(kFolder + "a.exe");
  Publish("EA Games", "No name", "{3}");
  desktop_.String(kUninstall + "{3}", "DisplayIcon", kFolder + "a.exe", View::k32);
  Publish("EA Games", "Empty name", "{4}");
  Uninstall("{4}", "", kFolder + "a.exe");
  Publish("EA Games", "No file", "{5}");
  Uninstall("{5}", "No file", kFolder + "gone.exe");
  Publish("EA Games", "Folder", "{6}");
  Uninstall("{6}", "Folder", kFolder);
  EXPECT_THAT(Search(), IsEmpty());
  EXPECT_EQ(capture_.Lines().size(), 2u);
}

TEST_F(EaRegistrySearch, NeverReadsUninstallRecordsOrPublishersOfThe64BitView) {
  const std::string exe = kFolder + "Wide.exe";
  desktop_.File(exe);
  Publish("EA Games", "Wide", "{W}");
  desktop_.String(kUninstall + "{W}", "DisplayName", "Wide", View::k64);
  desktop_.String(kUninstall + "{W}", "DisplayIcon", exe, View::k64);
  desktop_.String(kSoftware + R"(EA Games\Other)", "Product GUID", "{O}", View::k64);
  Uninstall("{O}", "Other", exe);
  EXPECT_THAT(Search(), IsEmpty());
}

TEST_F(EaRegistrySearch, ReadsTheGuidFromTheNativeViewFirst) {
  // The key is listed by the 32-bit view, but its value is read without a view, which means 64 bits here.
  const std::string exe = Game("Both", "{32}");
  Uninstall("{64}", "Both of 64", exe);
  desktop_.String(kSoftware + R"(EA Games\Both)", "Product GUID", "{64}", View::k64);
  EXPECT_THAT(Search(), ElementsAre(Expected("Both of 64", exe, "{64}")));
}

TEST_F(EaRegistrySearch, RemovesTrademarkSignsFromTheName) {
  const std::string exe = Game("Speed", "{S}");
  Uninstall("{S}", "Need\xE2\x84\xA2 for Speed\xC2\xAE 2", exe);
  EXPECT_THAT(Search(), ElementsAre(Expected("Need for Speed 2", exe, "{S}")));
  EXPECT_EQ(capture_.Lines()[1], "[EARegistrySearch] Found: Need for Speed 2 -> " + exe);
}

TEST_F(EaRegistrySearch, ReadsNamesOfAllLanguages) {
  std::vector<std::string> expected;
  for (const std::string name : {"Spiele f\xC3\xBCr \xC3\x84ltere", "\xD0\x98\xD0\xB3\xD1\x80\xD0\xB0",
                                 "\xE6\xA8\xA1\xE6\x8B\x9F\xE5\xB8\x82"}) {
    expected.push_back(Expected(name, Game(name, "{" + name + "}"), "{" + name + "}"));
  }
  EXPECT_THAT(Search(), testing::UnorderedElementsAreArray(expected));
}

TEST_F(EaRegistrySearch, IgnoresTheCatalogue) {
  const std::string exe = Game("Own", "{N}");
  GameSignature other;
  other.DisplayName = "Other";
  other.SourceKind = kSourceEa;
  EXPECT_EQ(tests::Describe(EARegistrySearch({other}, "S-1-5-21")),
            std::vector<std::string>{Expected("Own", exe, "{N}")});
}

TEST_F(EaRegistrySearch, KeepsWhatItReadBeforeAFailure) {
  const std::string exe = Game("First", "{F}");
  Publish("Origin Systems", "Last", std::string(3000, 'g'));
  EXPECT_THAT(tests::WithoutMemory(3000, [&] { return Search(); }),
              ElementsAre(Expected("First", exe, "{F}")));
  EXPECT_THAT(capture_.Lines(), ElementsAre("[EARegistrySearch] Starting EA Registry Search...",
                                            "[EARegistrySearch] Error reading EA registry: std::bad_alloc",
                                            "[EARegistrySearch] Found: First -> " + exe,
                                            "[EARegistrySearch] Scan completed! Found 1 games."));
}

}  // namespace
}  // namespace tarnwick
