// The table of what strategies want of a record, held against what they ask: with the fields a question about
// the record is asked, without one of them none.
#include "core/strategy_wants.h"

#include "core/strategy_table.h"
#include "desktop/description.h"
#include "host/explain/observed_scan.h"
#include "support/describe.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace tarnwick {
namespace {

using host::ObserveStrategy;
using host::StrategyRun;
using testing::HasSubstr;
using testing::SizeIs;

using Field = std::string GameSignature::*;

// Every launcher is there and has one game, which is the record's.
constexpr char kDesktop[] = R"({
  "registry": [
    {"key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickWants\\Core", "view": "32",
     "values": {"InstallLocation": "C:\\TarnwickWants\\Nowhere", "Folder": "C:\\TarnwickWants\\Nowhere"}}
  ],
  "gameUx": {"games": [{"subkey": "{A}", "executable": "C:\\TarnwickWants\\ux.exe",
                        "applicationId": "7A11D3C0-0000-4000-8000-00000000A001"}]},
  "executables": [{"path": "C:\\TarnwickWants\\ux.exe"}],
  "folders": ["C:\\TarnwickWants\\Riot", "C:\\TarnwickWants\\Bethesda"],
  "riot": {"products": [{"id": "wants.live", "installPath": "C:\\TarnwickWants\\Riot"}]},
  "miHoYo": {"games": [{"gameBiz": "wants_global", "installPath": "C:\\TarnwickWants\\Hyp"}]},
  "bethesda": {"path": "C:\\TarnwickWants\\Launcher",
               "games": [{"productId": "77", "name": "Wants", "location": "C:\\TarnwickWants\\Bethesda"}]},
  "steam": {"path": "C:\\TarnwickWants\\Steam",
            "libraries": [{"path": "C:\\TarnwickWants\\Steam",
                           "apps": [{"appId": 9770010, "name": "Wants", "installDir": "Wants"}]}]}
})";

GameSignature FullRecord(const StrategyWants& wants) {
  GameSignature record;
  record.DisplayName = "Tarnwick Wants";
  record.RegistryKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickWants\Core)";
  record.RegistryPathKeyName = "Folder";
  record.DefaultExe = "wants.exe";
  record.DefaultFolder = R"(%userprofile%\TarnwickWants\steamapps\Wants)";
  record.GameGUID = "7A11D3C0-0000-4000-8000-00000000A001";
  record.RunningExe = "run.exe";
  record.SourceKind = wants.source == kAnySource ? kSourceNone : wants.source;
  record.SourceExId = wants.source == kSourceMihoyo ? "wants_global" : "9770010";
  record.LaunchUrl = "bethesdanet://run/77";
  if (wants.leftToOthersWith != nullptr) (record.*wants.leftToOthersWith).clear();
  return record;
}

ScanStrategy RowOf(const std::string& name) {
  for (const ScanStrategy& row : ScanStrategies()) {
    if (row.name == name) return row;
  }
  throw std::runtime_error("no strategy " + name);
}

size_t Questions(const StrategyWants& wants, const GameList& games) {
  return ObserveStrategy(RowOf(wants.strategy), games).heard.size();
}

class StrategyWantsTest : public testing::Test {
 protected:
  void SetUp() override { ApplyDescription(desktop_, kDesktop); }

  // Fails where the record has more, or no more, questions than an empty catalogue.
  void ExpectAsked(const StrategyWants& wants, const GameSignature& record, bool asked) {
    const size_t without = Questions(wants, {});
    const size_t with = Questions(wants, {record});
    EXPECT_EQ(with > without, asked) << wants.strategy << ": " << with << " questions, " << without
                                     << " without the record";
    EXPECT_EQ(WhyNotTaken(wants, record).empty(), asked) << WhyNotTaken(wants, record);
  }

  // What is wanted later: something is asked, but less than with it, and nothing is found.
  void ExpectStopped(const StrategyWants& wants, const GameSignature& record, const GameSignature& full) {
    EXPECT_LT(Questions(wants, {record}), Questions(wants, {full})) << wants.strategy;
    EXPECT_NE(WhyNotTaken(wants, record), "") << wants.strategy;
  }

  desktop::Desktop desktop_;
};

bool AsksForRecords(const StrategyWants& wants) {
  return wants.use == CatalogueUse::kEachRecord || wants.use == CatalogueUse::kLookup;
}

GameSignature Without(GameSignature record, const std::vector<Field>& fields) {
  for (const Field field : fields) (record.*field).clear();
  return record;
}

TEST(StrategyWants, HasARowForEachStrategyInTheOrderOfTheTable) {
  const std::vector<ScanStrategy> strategies = ScanStrategies();
  ASSERT_THAT(AllStrategyWants(), SizeIs(strategies.size()));
  for (size_t i = 0; i < strategies.size(); ++i)
    EXPECT_EQ(AllStrategyWants()[i].strategy, strategies[i].name);
  EXPECT_THROW(WantsOf("No Such Search"), std::out_of_range);
}

TEST_F(StrategyWantsTest, AQuestionIsAskedAboutARecordThatHasItAll) {
  for (const StrategyWants& wants : AllStrategyWants()) {
    if (AsksForRecords(wants)) ExpectAsked(wants, FullRecord(wants), true);
  }
}

TEST_F(StrategyWantsTest, NoneIsAskedWithoutOneOfTheTexts) {
  for (const StrategyWants& wants : AllStrategyWants()) {
    if (!AsksForRecords(wants)) continue;
    const GameSignature full = FullRecord(wants);
    for (const WantedText& text : wants.texts) {
      const GameSignature record = Without(full, text.anyOf);
      if (text.later)
        ExpectStopped(wants, record, full);
      else
        ExpectAsked(wants, record, false);
    }
  }
}

TEST_F(StrategyWantsTest, EachOfSeveralTextsWillDo) {
  for (const StrategyWants& wants : AllStrategyWants()) {
    if (!AsksForRecords(wants)) continue;
    for (const WantedText& text : wants.texts) {
      for (const Field field : text.anyOf) {
        const GameSignature none = Without(FullRecord(wants), text.anyOf);
        GameSignature record = none;
        record.*field = (FullRecord(wants).*field).empty() ? std::string(text.mark) + "\\only.exe"
                                                           : FullRecord(wants).*field;
        EXPECT_GT(Questions(wants, {record}), Questions(wants, {none}))
            << wants.strategy << " with " << NameOfField(field);
        EXPECT_EQ(WhyNotTaken(wants, record), "") << wants.strategy << " with " << NameOfField(field);
      }
    }
  }
}

TEST_F(StrategyWantsTest, NoneIsAskedWhereATextLacksItsMark) {
  for (const StrategyWants& wants : AllStrategyWants()) {
    for (const WantedText& text : wants.texts) {
      if (*text.mark == '\0' || !AsksForRecords(wants)) continue;
      const GameSignature full = FullRecord(wants);
      GameSignature record = full;
      record.*text.anyOf.front() = R"(C:\Elsewhere)";
      if (text.later)
        ExpectStopped(wants, record, full);
      else
        ExpectAsked(wants, record, false);
    }
  }
}

TEST_F(StrategyWantsTest, SourcesAreTakenAndPassedOverAsTheTableSays) {
  for (const StrategyWants& wants : AllStrategyWants()) {
    if (!AsksForRecords(wants)) continue;
    for (int32_t kind = kSourceNone; kind <= kSourceBethesda; ++kind) {
      const bool refused =
          std::find(wants.passedOver.begin(), wants.passedOver.end(), kind) != wants.passedOver.end();
      GameSignature record = FullRecord(wants);
      record.SourceKind = kind;
      ExpectAsked(wants, record, wants.source == kAnySource ? !refused : wants.source == kind);
      if (wants.passedOverWith == nullptr || !refused) continue;
      (record.*wants.passedOverWith).clear();
      ExpectAsked(wants, record, true);
    }
  }
}

TEST_F(StrategyWantsTest, ARecordIsLeftToOthersWhereTheTableSaysSo) {
  for (const StrategyWants& wants : AllStrategyWants()) {
    if (wants.leftToOthersWith == nullptr) continue;
    GameSignature record = FullRecord(wants);
    record.*wants.leftToOthersWith = "Folder";
    ExpectAsked(wants, record, false);
  }
}

TEST_F(StrategyWantsTest, StrategiesWithoutTheCatalogueAskTheSameWhateverItHolds) {
  for (const StrategyWants& wants : AllStrategyWants()) {
    if (wants.use != CatalogueUse::kNone) continue;
    EXPECT_EQ(Questions(wants, {}), Questions(wants, {FullRecord(wants)})) << wants.strategy;
    EXPECT_EQ(WhyNotTaken(wants, {}), "") << wants.strategy;
  }
}

// Those report games that no record names.
TEST_F(StrategyWantsTest, StrategiesThatARecordHelpsNeedNone) {
  for (const StrategyWants& wants : AllStrategyWants()) {
    if (wants.use != CatalogueUse::kHelp) continue;
    EXPECT_EQ(WhyNotTaken(wants, {}), "") << wants.strategy;
  }
}

TEST(StrategyWants, TellsWhatARecordLacks) {
  GameSignature record;
  EXPECT_EQ(WhyNotTaken(WantsOf("Default Registry Scan"), record), "the record has no RegistryKey");
  EXPECT_EQ(WhyNotTaken(WantsOf("Riot Platform Search"), record),
            "takes records of source RIOT alone, and this one has none");
  record.DefaultExe = "a.exe";
  EXPECT_EQ(WhyNotTaken(WantsOf("Default Exe Search"), record),
            "the record has no DefaultFolder or DefaultFolder32");
  record.DefaultFolder = "C:\\A";
  EXPECT_EQ(WhyNotTaken(WantsOf("User Folder Exe Search"), record),
            "the record's DefaultFolder has no 'userprofile' in it");
  record.SourceKind = kSourceEpic;
  EXPECT_EQ(WhyNotTaken(WantsOf("Default Exe Search"), record), "passes over records of source EPIC");
  EXPECT_THAT(WhyNotTaken(WantsOf("Steam Games Scan"), record), HasSubstr("this one is of EPIC"));
}

// The zero GUID is none.
TEST(StrategyWants, KnowsTheGuidOfNoProduct) {
  GameSignature record;
  record.GameGUID = "00000000-0000-0000-0000-000000000000";
  EXPECT_EQ(WhyNotTaken(WantsOf("Uninstall Registry Search"), record), "the record has no GameGUID");
}

}  // namespace
}  // namespace tarnwick
