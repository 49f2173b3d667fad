#include "steam/shortcuts_reader.h"

#include "support/hex_page.h"
#include "support/samples.h"
#include "support/steam_bytes.h"

#include <gmock/gmock.h>

namespace tarnwick {

bool operator==(const SteamShortcut& a, const SteamShortcut& b) {
  return a.appName == b.appName && a.exe == b.exe && a.startDir == b.startDir;
}

void PrintTo(const SteamShortcut& shortcut, std::ostream* out) {
  *out << "{" << shortcut.appName << ", " << shortcut.exe << ", " << shortcut.startDir << "}";
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::ShortcutField;
using tests::ShortcutRecord;
using tests::Terminated;

std::vector<SteamShortcut> Read(const std::string& bytes) {
  std::vector<SteamShortcut> shortcuts;
  ReadShortcuts(bytes, shortcuts);
  return shortcuts;
}

const SteamShortcut kGame = {"Game", "C:\\g.exe", "C:\\"};
const std::string kRecord = ShortcutRecord("Game", "C:\\g.exe", "C:\\");

TEST(ShortcutsReader, ARecordWithTheThreeKeysIsOneShortcut) {
  EXPECT_THAT(Read(kRecord), ElementsAre(kGame));
}

TEST(ShortcutsReader, AFileWithoutABoundaryIsOneRecord) {
  EXPECT_THAT(Read(kRecord.substr(0, kRecord.size() - 1)), ElementsAre(kGame));
}

TEST(ShortcutsReader, RunsOfBoundariesYieldNoRecords) {
  EXPECT_THAT(Read(std::string(1000, '\x02')), IsEmpty());
  EXPECT_THAT(Read("\x02\x02\x02" + kRecord + "\x02\x02" + kRecord), ElementsAre(kGame, kGame));
}

TEST(ShortcutsReader, WithoutAMarkerBeforeEachValueNothingIsRead) {
  const std::string bare = "\x01" + Terminated("AppName") + Terminated("Game") + "\x01" + Terminated("exe") +
                           Terminated("C:\\g.exe") + "\x01" + Terminated("StartDir") + Terminated("C:\\") +
                           "\x02";
  EXPECT_THAT(Read(bare), IsEmpty());
}

TEST(ShortcutsReader, AfterADroppedKeyTheScanGoesOnAtThatByte) {
  // The byte behind the first key's NUL is no marker; the very next field still counts.
  EXPECT_THAT(Read("\x01" + Terminated("AppName") + "x" + kRecord), ElementsAre(kGame));
  // Another marker there is the value's: the key "AppName" takes what follows it as its value.
  EXPECT_THAT(Read("\x01" + Terminated("AppName") + "\x01" + Terminated("A") + ShortcutField("exe", "e") +
                   ShortcutField("StartDir", "s")),
              ElementsAre(SteamShortcut{"A", "e", "s"}));
}

TEST(ShortcutsReader, TwoOfThreeKeysYieldNothing) {
  const std::string a = ShortcutField("AppName", "a");
  const std::string e = ShortcutField("exe", "e");
  const std::string s = ShortcutField("StartDir", "s");
  EXPECT_THAT(Read(a + e), IsEmpty());
  EXPECT_THAT(Read(a + s), IsEmpty());
  EXPECT_THAT(Read(e + s), IsEmpty());
  EXPECT_THAT(Read(s + e + a), ElementsAre(SteamShortcut{"a", "e", "s"})) << "in any order";
}

TEST(ShortcutsReader, AnEmptyFieldCountsAsMissing) {
  EXPECT_THAT(Read(ShortcutRecord("", "e", "s")), IsEmpty());
  EXPECT_THAT(Read(ShortcutRecord("a", "\"", "s")), IsEmpty()) << "a lone quote becomes empty";
  EXPECT_THAT(Read(ShortcutRecord("a", "\"\"", "s")), IsEmpty());
}

TEST(ShortcutsReader, ABoundaryInsideAValueCutsTheRecordThere) {
  const std::string cut =
      ShortcutField("AppName", "a") + ShortcutField("exe", "e\x02xe") + ShortcutField("StartDir", "s");
  EXPECT_THAT(Read(cut), IsEmpty());
  // What the record held until then is judged, and the rest is the next record.
  EXPECT_THAT(Read(kRecord.substr(0, kRecord.size() - 1) + ShortcutField("icon", "i\x02x") + kRecord),
              ElementsAre(kGame, kGame));
}

TEST(ShortcutsReader, ABoundaryInsideAKeyCutsTheRecordThere) {
  EXPECT_THAT(Read(kRecord.substr(0, kRecord.size() - 1) + "\x01ic\x02on" + kRecord),
              ElementsAre(kGame, kGame));
}

TEST(ShortcutsReader, NumbersAreScannedLikeEverythingElse) {
  // An integer field is a boundary with its type byte, and its bytes may begin a key.
  EXPECT_THAT(Read(kRecord + Terminated("IsHidden") + std::string("\0\0\0\0", 4) + kRecord),
              ElementsAre(kGame, kGame));
  EXPECT_THAT(Read("\x02" + Terminated("openvr") + std::string("\x01\0\0\0", 4) + kRecord),
              ElementsAre(kGame));
}

TEST(ShortcutsReader, OuterQuotesGoFromEveryValue) {
  EXPECT_THAT(Read(ShortcutRecord("\"a\"", "\"C:\\g.exe\"", "\"C:\\\"")),
              ElementsAre(SteamShortcut{"a", "C:\\g.exe", "C:\\"}));
  EXPECT_THAT(Read(ShortcutRecord("a\"", "\"\"e\"\"", "\"s")),
              ElementsAre(SteamShortcut{"a\"", "\"e\"", "\"s"}))
      << "one pair, and only where both are there";
}

TEST(ShortcutsReader, KeysAreCaseSensitive) {
  EXPECT_THAT(
      Read(ShortcutField("AppName", "a") + ShortcutField("Exe", "e") + ShortcutField("StartDir", "s")),
      IsEmpty());
  EXPECT_THAT(
      Read(ShortcutField("appname", "a") + ShortcutField("exe", "e") + ShortcutField("StartDir", "s")),
      IsEmpty());
  EXPECT_THAT(
      Read(ShortcutField("AppName", "a") + ShortcutField("exe", "e") + ShortcutField("startdir", "s")),
      IsEmpty());
}

TEST(ShortcutsReader, OtherKeysAreDropped) {
  EXPECT_THAT(Read(ShortcutField("icon", "i") + ShortcutField("", "x") + kRecord), ElementsAre(kGame));
}

TEST(ShortcutsReader, ALaterOccurrenceOverwritesAnEarlierOne) {
  EXPECT_THAT(Read(ShortcutField("exe", "first") + kRecord), ElementsAre(kGame));
  EXPECT_THAT(Read(kRecord.substr(0, kRecord.size() - 1) + ShortcutField("exe", "")), IsEmpty())
      << "by an empty one too";
}

TEST(ShortcutsReader, FieldsDoNotCrossRecords) {
  EXPECT_THAT(Read(ShortcutField("AppName", "a") + ShortcutField("exe", "e") + "\x02" +
                   ShortcutField("StartDir", "s")),
              IsEmpty());
}

TEST(ShortcutsReader, NonAsciiTextsPass) {
  EXPECT_THAT(Read(ShortcutRecord("Игра", "D:\\游戏\\é.exe", "D:\\游戏")),
              ElementsAre(SteamShortcut{"Игра", "D:\\游戏\\é.exe", "D:\\游戏"}));
}

TEST(ShortcutsReader, NoiseYieldsNothing) {
  EXPECT_THAT(Read(""), IsEmpty());
  for (const char byte : {'\x00', '\x01', '\x02', '\x08', '\xFF', 'x'}) {
    EXPECT_THAT(Read(std::string(1'000'000, byte)), IsEmpty());
  }
}

TEST(ShortcutsReader, HugeValuesAreReadWhole) {
  const std::string huge(3'000'000, 'x');
  EXPECT_THAT(Read(ShortcutRecord(huge, huge, huge)), ElementsAre(SteamShortcut{huge, huge, huge}));
}

TEST(ShortcutsReader, WhatWasReadIsAppended) {
  std::vector<SteamShortcut> shortcuts = {kGame};
  ReadShortcuts(ShortcutRecord("a", "e", "s"), shortcuts);
  EXPECT_THAT(shortcuts, ElementsAre(kGame, SteamShortcut{"a", "e", "s"}));
}

TEST(ShortcutsReader, EveryPrefixGivesTheFirstOfTheShortcuts) {
  const std::string file = Terminated(std::string(1, '\0') + "shortcuts") + kRecord +
                           ShortcutField("icon", "i") + ShortcutRecord("Игра", "\"D:\\g.exe\"", "D:\\");
  const std::vector<SteamShortcut> whole = Read(file);
  ASSERT_EQ(whole.size(), 2u);
  for (size_t length = 0; length <= file.size(); ++length) {
    const std::vector<SteamShortcut> part = Read(file.substr(0, length));
    ASSERT_LE(part.size(), whole.size());
    for (size_t i = 0; i < part.size(); ++i) EXPECT_EQ(part[i], whole[i]) << length;
  }
}

TEST(ShortcutsReader, TheDocumentedExampleReadsAsItsPageSays) {
  EXPECT_THAT(Read(tests::HexExample("shortcuts", 0)),
              ElementsAre(SteamShortcut{"Gämes", "D:\\g.exe", "D:\\"}));
  EXPECT_THAT(Read(tests::HexExample("shortcuts", 1)), IsEmpty()) << "the second block has no value markers";
}

TEST(ShortcutsReader, ARealCaptureHasNoValueMarkers) {
  const auto bytes = tests::Sample("steam/shortcuts_ti_shortcuts1.vdf");
  if (!bytes) GTEST_SKIP() << "skipped: no samples here";
  EXPECT_THAT(Read(*bytes), IsEmpty());
}

}  // namespace
}  // namespace tarnwick
