#include "steam/app_info_reader.h"

#include "support/hex_page.h"
#include "support/log_capture.h"
#include "support/samples.h"
#include "support/steam_bytes.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdio>
#include <sstream>

#ifdef _WIN32
#include "foundation/seh_guard.h"

#include <thread>
#endif

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::AppInfoBytes;
using tests::Le32;
using tests::Le64;
using tests::LogCapture;
using tests::Terminated;

// A whole file, indexed, and asked for apps.
struct Loaded {
  SteamAppInfoReader reader;
  std::istringstream stream;

  explicit Loaded(const std::string& file) : stream(file) { IndexAppInfo(reader, stream); }

  bool Read(uint32_t appId, AppInfoDetails& details) {
    return ReadAppDetails(reader, stream, appId, details);
  }
  AppInfoDetails Details(uint32_t appId) {
    AppInfoDetails details;
    EXPECT_TRUE(Read(appId, details)) << appId;
    return details;
  }
};

// One app's key-values in a file of their own.
AppInfoDetails Walk(const AppInfoBytes& bytes, const std::string& keyValues) {
  Loaded loaded(bytes.File(bytes.Record(7, keyValues)));
  return loaded.Details(7);
}

std::string Texts(const AppInfoDetails& details) {
  return details.name + "|" + details.installDir + "|" + details.executable + "|" + details.type;
}

class AppInfoVersions : public testing::TestWithParam<int> {
 protected:
  AppInfoBytes bytes{static_cast<uint32_t>(GetParam()), {}};
};

INSTANTIATE_TEST_SUITE_P(AppInfoReader, AppInfoVersions, testing::Values(0, 1, 39, 40, 41, 42, 255));

TEST_P(AppInfoVersions, AnAppIsReadWhole) {
  const std::string one = bytes.App("Игра 一", "bin\\game.exe");
  const std::string two = bytes.App("Bücher", "b.exe");
  Loaded loaded(bytes.File(bytes.Record(10, one) + bytes.Record(4'000'000'000u, two)));
  EXPECT_EQ(loaded.reader.version, static_cast<uint32_t>(GetParam()));
  EXPECT_THAT(loaded.reader.index, SizeIs(2));
  const AppInfoDetails details = loaded.Details(10);
  EXPECT_EQ(details.appId, 10u);
  EXPECT_EQ(Texts(details), "Игра 一|Игра 一 Folder|bin\\game.exe|Game");
  EXPECT_EQ(Texts(loaded.Details(4'000'000'000u)), "Bücher|Bücher Folder|b.exe|Game");
  EXPECT_EQ(Texts(loaded.Details(10)), Texts(details)) << "any number of times";
}

TEST_P(AppInfoVersions, ARecordWithNothingBehindItsHeaderGetsNoEntry) {
  const std::string bare = bytes.Record(1, "");
  const std::string one = bytes.Record(2, std::string(1, '\0'));
  const std::string less = Le32(3) + Le32(bytes.HeaderSize() - 1) + std::string(bytes.HeaderSize() - 1, '\0');
  const std::string none = Le32(4) + Le32(0);
  Loaded loaded(bytes.File(bare + one + less + none + bytes.Record(5, "\x08")));
  EXPECT_THAT(loaded.reader.index, ElementsAre(testing::Key(2), testing::Key(5)));
  EXPECT_EQ(loaded.reader.index[2].length, 1u);
  const uint64_t start = bytes.version < 41 ? 8 : 16;
  EXPECT_EQ(loaded.reader.index[2].offset, start + bare.size() + 8 + bytes.HeaderSize());
}

TEST_P(AppInfoVersions, EveryPrefixLoadsAndGivesNothingThatTheFileDoesNotSay) {
  const std::string app = bytes.App("Game", "g.exe");
  const std::string file = bytes.File(bytes.Record(10, app) + bytes.Record(20, app));
  for (size_t length = 0; length < file.size(); ++length) {
    Loaded loaded(file.substr(0, length));
    EXPECT_LE(loaded.reader.index.size(), 2u);
    AppInfoDetails details;
    // Either the list of records has lost its end, or the string table has: both leave the stream failed.
    EXPECT_FALSE(loaded.Read(10, details)) << length;
    EXPECT_FALSE(loaded.Read(20, details)) << length;
    EXPECT_EQ(Texts(details), "|||");
  }
}

TEST_P(AppInfoVersions, KeyValuesCutAnywhereKeepWhatCameUntilThen) {
  bytes.Key("appinfo");  // entry 0, which a cut key name stands for, is no field's name
  const std::string app = bytes.App("Game", "g.exe");
  const AppInfoDetails whole = Walk(bytes, app);
  for (size_t length = 1; length < app.size(); ++length) {
    const AppInfoDetails part = Walk(bytes, app.substr(0, length));
    EXPECT_TRUE(whole.name.starts_with(part.name)) << length;
    EXPECT_TRUE(whole.installDir.starts_with(part.installDir)) << length;
    EXPECT_TRUE(whole.executable.starts_with(part.executable)) << length;
    EXPECT_TRUE(whole.type.starts_with(part.type)) << length;
  }
}

// --- Header and log lines

TEST(AppInfoReader, VersionsBelowFortyOneLogThreeLines) {
  const LogCapture log;
  AppInfoBytes bytes{39, {}};
  Loaded loaded(bytes.File(bytes.Record(10, bytes.App("a", "b"))));
  EXPECT_THAT(log.Lines(),
              ElementsAre("[SteamAppInfo] Header Magic: 0x75644, Version: 39",
                          "[SteamAppInfo] Indexing appinfo.vdf...", "[SteamAppInfo] Indexed 1 apps."));
  EXPECT_THAT(loaded.reader.stringTable, IsEmpty());
}

TEST(AppInfoReader, FromFortyOneOnTheStringTableHasALineOfItsOwn) {
  const LogCapture log;
  AppInfoBytes bytes;
  Loaded loaded(bytes.File(bytes.Record(10, bytes.App("a", "b"))));
  EXPECT_THAT(log.Lines(),
              ElementsAre("[SteamAppInfo] Header Magic: 0x75644, Version: 41",
                          "[SteamAppInfo] Loaded String Table with 9 entries.",
                          "[SteamAppInfo] Indexing appinfo.vdf...", "[SteamAppInfo] Indexed 1 apps."));
  EXPECT_THAT(loaded.reader.stringTable,
              testing::UnorderedElementsAre("appinfo", "common", "name", "type", "config", "installdir",
                                            "launch", "0", "executable"));
}

TEST(AppInfoReader, AnyMagicIsTakenAndLoggedInLowerCaseHexadecimal) {
  const LogCapture log;
  for (const uint32_t magic : {0xABCDEF27u, 0x00000127u}) {
    const Loaded loaded(Le32(magic) + Le32(9) + Le32(0));
  }
  EXPECT_EQ(log.Lines()[0], "[SteamAppInfo] Header Magic: 0xabcdef, Version: 39");
  EXPECT_EQ(log.Lines()[3], "[SteamAppInfo] Header Magic: 0x1, Version: 39");
}

TEST(AppInfoReader, AnEmptyFileLoadsAsNothing) {
  const LogCapture log;
  Loaded loaded("");
  EXPECT_THAT(log.Lines(),
              ElementsAre("[SteamAppInfo] Header Magic: 0x0, Version: 0",
                          "[SteamAppInfo] Indexing appinfo.vdf...", "[SteamAppInfo] Indexed 0 apps."));
}

TEST(AppInfoReader, NoiseLoadsAsNothing) {
  for (int byte = 0; byte < 256; ++byte) {
    Loaded loaded(std::string(10'000, static_cast<char>(byte)));
    EXPECT_LE(loaded.reader.index.size(), 1u) << byte;
    AppInfoDetails details;
    EXPECT_FALSE(loaded.Read(static_cast<uint32_t>(byte) * 0x01010101u, details)) << byte;
  }
}

// --- The index

TEST(AppInfoReader, OfTwoRecordsWithOneIdTheLaterIsUsed) {
  AppInfoBytes bytes;
  const std::string first = bytes.App("first", "1.exe");
  const std::string second = bytes.App("second", "2.exe");
  Loaded loaded(bytes.File(bytes.Record(10, first) + bytes.Record(10, second)));
  EXPECT_THAT(loaded.reader.index, SizeIs(1));
  EXPECT_EQ(loaded.Details(10).name, "second");
}

TEST(AppInfoReader, ALaterRecordWithNothingInItLeavesTheEarlierEntry) {
  AppInfoBytes bytes;
  const std::string first = bytes.App("first", "1.exe");
  Loaded loaded(bytes.File(bytes.Record(10, first) + bytes.Record(10, "")));
  EXPECT_EQ(loaded.Details(10).name, "first");
}

TEST(AppInfoReader, AnAppIdOfZeroEndsTheListWhateverFollows) {
  AppInfoBytes bytes;
  const std::string app = bytes.App("a", "a.exe");
  Loaded loaded(bytes.File(bytes.Record(10, app) + Le32(0) + bytes.Record(20, app)));
  EXPECT_THAT(loaded.reader.index, ElementsAre(testing::Key(10)));
  EXPECT_EQ(loaded.Details(10).name, "a");
}

TEST(AppInfoReader, AFileThatEndsWithoutAnAppIdOfZeroLoadsButNoAppCanBeRead) {
  const LogCapture log;
  AppInfoBytes bytes{40, {}};
  Loaded loaded(bytes.File(bytes.Record(10, bytes.App("a", "a.exe")), ""));
  EXPECT_THAT(loaded.reader.index, SizeIs(1));
  AppInfoDetails details;
  EXPECT_FALSE(loaded.Read(10, details));
  EXPECT_EQ(log.Lines().back(), "[SteamAppInfo] Indexed 1 apps.");
}

TEST(AppInfoReader, ASizeBeyondTheFileEndsTheListThere) {
  AppInfoBytes bytes{40, {}};
  const std::string app = bytes.App("a", "a.exe");
  Loaded loaded(bytes.File(bytes.Record(10, app) + Le32(20) + Le32(0xFFFFFFFF) + bytes.Record(30, app)));
  EXPECT_THAT(loaded.reader.index, ElementsAre(testing::Key(10), testing::Key(20)));
  EXPECT_EQ(loaded.reader.index[20].length, 0xFFFFFFFFu - 60u);
  AppInfoDetails details;
  EXPECT_FALSE(loaded.Read(10, details));
}

TEST(AppInfoReader, LoadingAgainStartsFromNothing) {
  AppInfoBytes bytes;
  Loaded loaded(bytes.File(bytes.Record(10, bytes.App("a", "a.exe"))));
  AppInfoBytes other{40, {}};
  std::istringstream stream(other.File(other.Record(20, other.App("b", "b.exe"))));
  IndexAppInfo(loaded.reader, stream);
  EXPECT_THAT(loaded.reader.index, ElementsAre(testing::Key(20)));
  EXPECT_THAT(loaded.reader.stringTable, testing::Not(IsEmpty()))
      << "replaced by a load of version 41 or more only";
}

// --- The string table

std::string WithTable(const std::string& records, const std::string& table) {
  return Le32(41) + Le32(0) + Le64(16 + records.size()) + records + table;
}

TEST(AppInfoReader, TableTextsMayBeEmpty) {
  Loaded loaded(WithTable(Le32(0), Le32(3) + Terminated("") + Terminated("b") + Terminated("")));
  EXPECT_THAT(loaded.reader.stringTable, ElementsAre("", "b", ""));
}

TEST(AppInfoReader, AnEmptyTableMeansInlineKeys) {
  const AppInfoBytes inlineKeys{40, {}};
  AppInfoBytes builder = inlineKeys;
  const std::string record = inlineKeys.Record(10, builder.App("a", "a.exe"));
  Loaded loaded(WithTable(record + Le32(0), Le32(0)));
  EXPECT_EQ(Texts(loaded.Details(10)), "a|a Folder|a.exe|Game");
}

TEST(AppInfoReader, ATableOffsetBeyondTheFileLeavesAnEmptyIndex) {
  const AppInfoBytes bytes;
  for (const uint64_t offset : {uint64_t{1'000}, uint64_t{0x7FFFFFFFFFFFFFFF}, uint64_t{0xFFFFFFFFFFFFFFFF},
                                uint64_t{0x8000000000000000}, uint64_t{0xFFFFFFFF00000000}}) {
    const LogCapture log;
    Loaded loaded(Le32(41) + Le32(0) + Le64(offset) + bytes.Record(10, "\x08") + Le32(0));
    EXPECT_THAT(loaded.reader.index, IsEmpty());
    EXPECT_THAT(log.Lines(),
                ElementsAre("[SteamAppInfo] Header Magic: 0x0, Version: 41",
                            "[SteamAppInfo] Loaded String Table with 0 entries.",
                            "[SteamAppInfo] Indexing appinfo.vdf...", "[SteamAppInfo] Indexed 0 apps."));
  }
}

TEST(AppInfoReader, ACountThatIsCutShortCountsAsZero) {
  const LogCapture log;
  Loaded loaded(WithTable(Le32(0), std::string("\x05\0\0", 3)));
  EXPECT_EQ(log.Lines()[1], "[SteamAppInfo] Loaded String Table with 0 entries.");
}

TEST(AppInfoReader, ACountBeyondTheTextsIsCarriedOutAndSpoilsTheStream) {
  const LogCapture log;
  const AppInfoBytes bytes;
  Loaded loaded(WithTable(bytes.Record(10, "\x08") + Le32(0), Le32(1'000'000) + Terminated("a") + "b"));
  EXPECT_EQ(log.Lines()[1], "[SteamAppInfo] Loaded String Table with 1000000 entries.");
  EXPECT_THAT(loaded.reader.index, IsEmpty());
  EXPECT_THAT(loaded.reader.stringTable, ElementsAre("a", "b"))
      << "the missing ones are empty, and not stored";
  AppInfoDetails details;
  EXPECT_FALSE(loaded.Read(10, details));
}

TEST(AppInfoReader, ALastTextWithoutItsNulSpoilsTheStream) {
  const AppInfoBytes bytes;
  Loaded loaded(WithTable(bytes.Record(10, "\x08") + Le32(0), Le32(2) + Terminated("a") + "b"));
  EXPECT_THAT(loaded.reader.stringTable, ElementsAre("a", "b"));
  EXPECT_THAT(loaded.reader.index, IsEmpty());
}

TEST(AppInfoReader, AHostileCountCostsNoTimeAndNoMemoryThatStays) {
  const auto start = std::chrono::steady_clock::now();
  Loaded loaded(WithTable(Le32(0), Le32(20'000'000) + Terminated("a")));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  EXPECT_LT(loaded.reader.stringTable.capacity(), 100u);
}

#ifdef _WIN32
TEST(AppInfoReader, ACountBeyondMemoryIsAnAllocationFailureOrAnEmptyIndex) {
  // 4,294,967,295 texts are 128 GiB of address range. A machine that grants even that must come out all the
  // same.
  SteamAppInfoReader reader;
  std::istringstream stream(WithTable(Le32(0), Le32(0xFFFFFFFF) + Terminated("a")));
  try {
    IndexAppInfo(reader, stream);
    RecordProperty("granted", "yes");
  } catch (const std::bad_alloc&) {
    RecordProperty("granted", "no");
  }
  EXPECT_THAT(reader.index, IsEmpty());
}
#endif

// --- One app

TEST(AppInfoReader, AnAppThatIsNotInTheIndexIsNotRead) {
  Loaded loaded(Le32(39) + Le32(0) + Le32(0));
  AppInfoDetails details;
  EXPECT_FALSE(loaded.Read(10, details));
  EXPECT_EQ(details.appId, 0u);
}

TEST(AppInfoReader, AReaderWithoutAnOpenFileReadsNothing) {
  SteamAppInfoReader reader;
  reader.index[10] = {0, 1};
  AppInfoDetails details;
  EXPECT_FALSE(ReadAppDetails(reader, 10, details));
}

TEST(AppInfoReader, AShortReadFailsAndSpoilsAllLaterReads) {
  AppInfoBytes bytes{40, {}};
  Loaded loaded(bytes.File(bytes.Record(10, bytes.App("a", "a.exe"))));
  EXPECT_EQ(loaded.Details(10).name, "a");
  loaded.reader.index[20] = {loaded.reader.index[10].offset, 5'000};
  AppInfoDetails details;
  EXPECT_FALSE(loaded.Read(20, details));
  EXPECT_EQ(details.appId, 0u);
  EXPECT_FALSE(loaded.Read(10, details)) << "the stream stays failed";
}

TEST(AppInfoReader, AnEntryOfNoBytesIsLoggedAndTrue) {
  Loaded loaded(Le32(39) + Le32(0) + Le32(0));
  loaded.reader.index[10] = {8, 0};
  const LogCapture log;
  EXPECT_EQ(loaded.Details(10).appId, 10u);
  EXPECT_THAT(log.Lines(), ElementsAre("  [Debug] Reader EOF at start."));
}

TEST(AppInfoReader, ARootThatIsNoSectionIsLoggedAndTrue) {
  AppInfoBytes bytes;
  const std::string app = bytes.Text("name", "x");
  for (const int type : {1, 2, 8, 200}) {
    Loaded loaded(bytes.File(bytes.Record(10, static_cast<char>(type) + app)));
    const LogCapture log;
    const AppInfoDetails details = loaded.Details(10);
    EXPECT_EQ(details.appId, 10u);
    EXPECT_EQ(Texts(details), "|||");
    EXPECT_THAT(log.Lines(), ElementsAre("  [Debug] Unexpected Root Type: " + std::to_string(type)));
  }
}

TEST(AppInfoReader, ReadingAnAppLogsNothingElse) {
  AppInfoBytes bytes;
  Loaded loaded(bytes.File(bytes.Record(10, bytes.App("a", "a.exe"))));
  const LogCapture log;
  loaded.Details(10);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

// --- Key names

TEST(AppInfoReader, AKeyNameIsATableEntry) {
  const std::vector<std::string> table = {"zero", "one"};
  const std::string data = Le32(1) + Le32(0) + Le32(2) + Le32(1234) + Le32(0xFFFFFFFF);
  ByteCursor cursor{data.data(), data.size(), 0};
  AppInfoDetails details;
  KeyValueContext context{cursor, details, table};
  std::string number;
  EXPECT_EQ(ReadKeyName(context, number), "one");
  EXPECT_EQ(ReadKeyName(context, number), "zero");
  EXPECT_EQ(ReadKeyName(context, number), "2") << "an index at the table's size";
  EXPECT_EQ(ReadKeyName(context, number), "1234");
  EXPECT_EQ(ReadKeyName(context, number), "4294967295");
}

TEST(AppInfoReader, WithFewerThanFourBytesLeftTheFirstEntryIsMeantAndNothingConsumed) {
  const std::vector<std::string> table = {"zero", "one"};
  const std::string data("\x01\0\0", 3);
  ByteCursor cursor{data.data(), data.size(), 0};
  AppInfoDetails details;
  KeyValueContext context{cursor, details, table};
  std::string number;
  EXPECT_EQ(ReadKeyName(context, number), "zero");
  EXPECT_EQ(cursor.position, 0u);
}

TEST(AppInfoReader, WithoutATableAKeyNameIsInline) {
  const std::string data = Terminated("Ключ") + Terminated("") + "rest";
  ByteCursor cursor{data.data(), data.size(), 0};
  AppInfoDetails details;
  const std::vector<std::string> none;
  KeyValueContext context{cursor, details, none};
  std::string number;
  EXPECT_EQ(ReadKeyName(context, number), "Ключ");
  EXPECT_EQ(ReadKeyName(context, number), "");
  EXPECT_EQ(ReadKeyName(context, number), "rest") << "a text that runs to the end is taken as it stands";
  EXPECT_EQ(cursor.position, data.size());
}

TEST(AppInfoReader, AnInlineStringEndsBehindItsNul) {
  const std::string data = Terminated("a") + "b";
  ByteCursor cursor{data.data(), data.size(), 0};
  EXPECT_EQ(ReadInlineString(cursor), "a");
  EXPECT_EQ(cursor.position, 2u);
  EXPECT_EQ(ReadInlineString(cursor), "b");
  EXPECT_EQ(ReadInlineString(cursor), "");
}

TEST(AppInfoReader, AnEntryUnderAnIndexBeyondTheTableIsReadAndDropped) {
  AppInfoBytes bytes;
  std::string body = '\x01' + Le32(1234) + Terminated("dropped");
  body += bytes.Text("name", "kept");
  EXPECT_EQ(Walk(bytes, bytes.Section("a", bytes.Section("common", body))).name, "kept");
}

TEST(AppInfoReader, ASectionNamedByAnIndexBeyondTheTableIsASectionLikeAnother) {
  AppInfoBytes bytes;
  const std::string entry = bytes.Text("executable", "g.exe");
  const std::string numbered = '\0' + Le32(99'999) + entry + '\x08';
  EXPECT_EQ(Walk(bytes, bytes.Section("a", bytes.Section("launch", numbered))).executable, "g.exe");
}

// --- Types

struct TypeCase {
  int type;
  size_t skipped;
};

class AppInfoTypes : public testing::TestWithParam<TypeCase> {};

INSTANTIATE_TEST_SUITE_P(AppInfoReader, AppInfoTypes,
                         testing::Values(TypeCase{2, 4}, TypeCase{3, 4}, TypeCase{4, 0}, TypeCase{5, 0},
                                         TypeCase{6, 0}, TypeCase{7, 8}, TypeCase{9, 0}, TypeCase{10, 8},
                                         TypeCase{11, 0}, TypeCase{127, 0}, TypeCase{255, 0}));

TEST_P(AppInfoTypes, ThePayloadIsSkippedByItsWidth) {
  AppInfoBytes bytes{40, {}};
  // The payload ends the section wherever one of its bytes is taken for a type.
  const std::string odd =
      bytes.Entry(static_cast<unsigned char>(GetParam().type), "k", std::string(GetParam().skipped, '\x08'));
  EXPECT_EQ(Walk(bytes, bytes.Section("a", bytes.Section("common", odd + bytes.Text("name", "n")))).name,
            "n");
}

TEST_P(AppInfoTypes, NothingBeyondThePayloadIsSkipped) {
  AppInfoBytes bytes{40, {}};
  const std::string odd = bytes.Entry(static_cast<unsigned char>(GetParam().type), "k",
                                      std::string(GetParam().skipped, '\x08') + '\x08');
  EXPECT_EQ(Walk(bytes, bytes.Section("a", bytes.Section("common", odd + bytes.Text("name", "n")))).name, "");
}

TEST(AppInfoReader, AfterATypeOfFiveTheNextByteIsATypeAgain) {
  AppInfoBytes bytes{40, {}};
  const std::string wide =
      bytes.Entry(5, "k", '\x01' + Terminated("name") + Terminated("the payload itself"));
  EXPECT_EQ(Walk(bytes, bytes.Section("a", bytes.Section("common", wide))).name, "the payload itself");
}

// The tail behind a key at the buffer's end: what does a walk make of bytes that are too few for the payload?
AppInfoDetails WalkTail(char type, const std::string& tail) {
  AppInfoBytes bytes{40, {}};
  return Walk(bytes, '\0' + Terminated("common") + bytes.Entry(static_cast<unsigned char>(type), "k", tail));
}

TEST(AppInfoReader, EightBytesThatWouldPassTheEndAreNotSkipped) {
  const std::string entry = '\x01' + Terminated("name") + "n";  // seven bytes, and an entry of their own
  EXPECT_EQ(WalkTail(7, entry).name, "n");
  EXPECT_EQ(WalkTail(10, entry).name, "n");
}

// With a string table a key name at the very end is entry 0 and consumes nothing, so three bytes can still be
// an entry.
std::string NameFromThreeBytes(char type) {
  const std::vector<std::string> table = {"name"};
  const std::string data = type + Le32(0) + "\x01" + "ab";
  ByteCursor cursor{data.data(), data.size(), 0};
  AppInfoDetails details;
  KeyValueContext context{cursor, details, table};
  ParseKeyValueSection(context, 0, "common", "");
  EXPECT_EQ(cursor.position, cursor.size);
  return details.name;
}

TEST(AppInfoReader, TypeTwoStaysWhereItIsAndTypeThreeGoesToTheEnd) {
  EXPECT_EQ(NameFromThreeBytes(2), "ab") << "the bytes are read as the next entry";
  EXPECT_EQ(NameFromThreeBytes(3), "");
  EXPECT_EQ(NameFromThreeBytes(7), "ab");
  EXPECT_EQ(NameFromThreeBytes(10), "ab");
}

TEST(AppInfoReader, APayloadThatJustFitsIsSkipped) {
  for (const char type : {'\x02', '\x03'}) EXPECT_EQ(WalkTail(type, "\x01\x01\x01\x01").name, "");
  for (const char type : {'\x07', '\x0A'}) EXPECT_EQ(WalkTail(type, std::string("\x01name\0nn", 8)).name, "");
}

// --- Fields

TEST(AppInfoReader, CommonAndConfigCountAtAnyDepthAndTheLaterWins) {
  AppInfoBytes bytes;
  const std::string near = bytes.Section("common", bytes.Text("name", "near") + bytes.Text("type", "Game"));
  const std::string deep = bytes.Section(
      "depots",
      bytes.Section("1", bytes.Section("x", bytes.Section("common", bytes.Text("name", "deep")) +
                                                bytes.Section("config", bytes.Text("installdir", "d")))));
  EXPECT_EQ(Texts(Walk(bytes, bytes.Section("appinfo", near + deep))), "deep|d||Game");
  EXPECT_EQ(Texts(Walk(bytes, bytes.Section("appinfo", deep + near))), "near|d||Game");
}

TEST(AppInfoReader, TheRootsOwnNameCountsToo) {
  AppInfoBytes bytes;
  EXPECT_EQ(Walk(bytes, bytes.Section("common", bytes.Text("name", "n"))).name, "n");
}

TEST(AppInfoReader, FieldsAreCaseSensitiveAndBelongToTheirSection) {
  AppInfoBytes bytes;
  const std::string body = bytes.Section("Common", bytes.Text("name", "1")) +
                           bytes.Section("common", bytes.Text("Name", "2") + bytes.Text("installdir", "3")) +
                           bytes.Section("config", bytes.Text("name", "4") + bytes.Text("type", "5")) +
                           bytes.Text("name", "6") + bytes.Section("launch", bytes.Text("executable", "7"));
  EXPECT_EQ(Texts(Walk(bytes, bytes.Section("appinfo", body))), "|||")
      << "executable lies one section below launch";
}

TEST(AppInfoReader, OnlyTextsCount) {
  AppInfoBytes bytes{40, {}};
  const std::string body = bytes.Entry(2, "name", "abcd") + bytes.Section("type", "");
  EXPECT_EQ(Texts(Walk(bytes, bytes.Section("a", bytes.Section("common", body)))), "|||");
}

TEST(AppInfoReader, ALaunchEntryNamedCommonOrConfigIsNone) {
  AppInfoBytes bytes;
  for (const std::string name : {"common", "config"}) {
    const std::string launch =
        bytes.Section("launch", bytes.Section(name, bytes.Text("executable", "g.exe")));
    EXPECT_EQ(Walk(bytes, bytes.Section("appinfo", launch)).executable, "") << name;
  }
}

TEST(AppInfoReader, AfterANestedSectionTheOuterNamesAreBack) {
  AppInfoBytes bytes;
  const std::string body =
      bytes.Section("common", bytes.Section("assets", bytes.Text("name", "no")) + bytes.Text("name", "yes"));
  EXPECT_EQ(Walk(bytes, bytes.Section("appinfo", body)).name, "yes");
}

std::string ExecutableOf(const std::vector<std::string>& executables) {
  AppInfoBytes bytes;
  std::string entries;
  for (size_t i = 0; i < executables.size(); ++i) {
    entries += bytes.Section(std::to_string(i), bytes.Text("executable", executables[i]));
  }
  return Walk(bytes, bytes.Section("appinfo", bytes.Section("config", bytes.Section("launch", entries))))
      .executable;
}

TEST(AppInfoReader, TheFirstExecutableCountsUntilALaterOneIsAnExe) {
  EXPECT_EQ(ExecutableOf({"run.sh", "game.exe"}), "game.exe");
  EXPECT_EQ(ExecutableOf({"game.exe", "other.exe"}), "game.exe");
  EXPECT_EQ(ExecutableOf({"run.sh", "start.sh"}), "run.sh");
  EXPECT_EQ(ExecutableOf({"run.sh", "a.exe", "b.exe"}), "a.exe") << "replaced once";
}

TEST(AppInfoReader, TheTestForExeIsCaseSensitiveAndMatchesAnywhere) {
  EXPECT_EQ(ExecutableOf({"GAME.EXE", "game.exe"}), "game.exe");
  EXPECT_EQ(ExecutableOf({"run.sh", "GAME.EXE"}), "run.sh");
  EXPECT_EQ(ExecutableOf({"a.exe.config", "game.exe"}), "a.exe.config");
  EXPECT_EQ(ExecutableOf({"run", ".exe"}), ".exe") << "four bytes are enough";
  EXPECT_EQ(ExecutableOf({"run", "exe"}), "run");
}

TEST(AppInfoReader, AnEmptyExecutableIsReplacedByWhateverComes) {
  EXPECT_EQ(ExecutableOf({"", "run.sh", "start.sh"}), "run.sh");
  EXPECT_EQ(ExecutableOf({""}), "");
}

TEST(AppInfoReader, ASectionWithoutItsEndMarkEndsWithTheBuffer) {
  AppInfoBytes bytes;
  EXPECT_EQ(
      Walk(bytes, '\0' + bytes.Key("appinfo") + '\0' + bytes.Key("common") + bytes.Text("name", "n")).name,
      "n");
}

TEST(AppInfoReader, AnEndMarkTooManyEndsTheWalk) {
  AppInfoBytes bytes;
  const std::string late = bytes.Section("common", bytes.Text("name", "late"));
  EXPECT_EQ(Walk(bytes, bytes.Section("appinfo", "") + late).name, "");
}

TEST(AppInfoReader, AHugeTextIsReadWhole) {
  AppInfoBytes bytes;
  const std::string huge(5'000'000, 'n');
  EXPECT_EQ(Walk(bytes, bytes.Section("common", bytes.Text("name", huge))).name, huge);
}

TEST(AppInfoReader, ALongKeyNameUsedOftenIsNotCopied) {
  // 100,000 entries under one key of a megabyte: copying the key each time would move 100 GB.
  AppInfoBytes bytes;
  const std::string key(1'000'000, 'k');
  std::string entries;
  for (int i = 0; i < 100'000; ++i) entries += bytes.Entry(4, key, "");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Walk(bytes, bytes.Section("common", entries + bytes.Text("name", "n"))).name, "n");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

std::string NestedSections(AppInfoBytes& bytes, int depth) {
  std::string nested;
  for (int i = 0; i < depth; ++i) nested += '\0' + bytes.Key("s");
  return nested;
}

TEST(AppInfoReader, DeepNestingIsWalkedToItsEnd) {
  AppInfoBytes bytes;
  const std::string common = bytes.Section("common", bytes.Text("name", "n"));
  EXPECT_EQ(Walk(bytes, bytes.Section("appinfo", NestedSections(bytes, 1'000) + common)).name, "n");
}

#ifdef _WIN32
TEST(AppInfoReader, EndlessNestingOverflowsItsThreadsStackAloneAndLeavesTheHeapUsable) {
  AppInfoBytes bytes;
  const std::string nested = NestedSections(bytes, 200'000);
  for (int round = 0; round < 20; ++round) {
    Loaded loaded(bytes.File(bytes.Record(10, nested)));
    uint32_t code = 0;
    std::thread walk([&] {
      code = RunGuarded([&] {
        AppInfoDetails details;
        ReadAppDetails(loaded.reader, loaded.stream, 10, details);
      });
    });
    walk.join();
    EXPECT_EQ(code, 0xC00000FDu);
  }
}
#endif

// --- Pages and captures

TEST(AppInfoReader, TheDocumentedExampleReadsAsItsPageSays) {
  Loaded loaded(tests::HexExample("appinfo"));
  EXPECT_EQ(loaded.reader.version, 41u);
  EXPECT_THAT(loaded.reader.index, ElementsAre(testing::Key(4242)));
  EXPECT_EQ(Texts(loaded.Details(4242)), "Hi|hi|hi.exe|Game");
}

TEST(AppInfoReader, ARealCaptureWithoutAnEndMarkTakesItsStringTableForARecordAndReadsNone) {
  const auto file = tests::Sample("steam/appinfo_v41_10apps.vdf");
  if (!file) GTEST_SKIP() << "skipped: no samples here";
  Loaded loaded(*file);
  EXPECT_EQ(loaded.reader.version, 41u);
  EXPECT_THAT(loaded.reader.index, SizeIs(11)) << "the table's count is the eleventh app id";
  for (const auto& [appId, entry] : loaded.reader.index) {
    AppInfoDetails details;
    EXPECT_FALSE(loaded.Read(appId, details)) << appId;
  }
}

TEST(AppInfoReader, ARealCaptureWithAnEndMarkIsReadWhole) {
  const auto file = tests::Sample("steam/appinfo_v41_with_terminator_DERIVED.vdf");
  if (!file) GTEST_SKIP() << "skipped: no samples here";
  Loaded loaded(*file);
  EXPECT_THAT(loaded.reader.index, SizeIs(10));
  size_t named = 0;
  for (const auto& [appId, entry] : loaded.reader.index) {
    const AppInfoDetails details = loaded.Details(appId);
    std::printf("  app %u: %s\n", appId, Texts(details).c_str());
    named += details.name.empty() ? 0 : 1;
  }
  EXPECT_GE(named, 8u);
}

}  // namespace
}  // namespace tarnwick
