#include "launchers/game_data_reader.h"

#include "support/hex_page.h"
#include "support/hostile_texts.h"
#include "support/log_capture.h"

#include <gmock/gmock.h>

#include <sstream>

namespace tarnwick {

bool operator==(const MihoyoGameEntry& a, const MihoyoGameEntry& b) {
  return a.gameBiz == b.gameBiz && a.installPath == b.installPath && a.gameShortcutName == b.gameShortcutName;
}

void PrintTo(const MihoyoGameEntry& entry, std::ostream* out) {
  *out << "{" << entry.gameBiz << ", " << entry.installPath << ", " << entry.gameShortcutName << "}";
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::Enormous;
using tests::kHuge;

std::vector<MihoyoGameEntry> Read(const std::string& bytes) {
  std::istringstream file(bytes);
  return ReadGameData(file, "file");
}

MihoyoGameEntry Entry(const std::string& biz, const std::string& path = {}, const std::string& name = {}) {
  return {name, path, biz};
}

const std::string kBlock =
    R"({"gameBiz":"wren_global","installPath":"C:/Игры/Wren","gameShortcutName":"游戏"})";
const MihoyoGameEntry kWren = Entry("wren_global", "C:/Игры/Wren", "游戏");

TEST(GameDataReader, ReadsBlocksAmongOtherBytes) {
  EXPECT_THAT(
      Read(std::string("\x00\x01\xFF", 3) + kBlock + std::string("\x00\x10", 2) + R"({"gameBiz":"b"})"),
      ElementsAre(kWren, Entry("b")));
}

TEST(GameDataReader, StrayClosingBracesAreIgnored) {
  EXPECT_THAT(Read("}}}" + kBlock + "}}" + R"({"gameBiz":"b"})"), ElementsAre(kWren, Entry("b")));
}

TEST(GameDataReader, ABlockThatIsCutOffIsNotRead) {
  EXPECT_THAT(Read(kBlock.substr(0, kBlock.size() - 1)), IsEmpty());
  EXPECT_THAT(Read("{" + kBlock), IsEmpty()) << "nor one inside it";
}

TEST(GameDataReader, WhatStandsBeforeANestedBraceIsLost) {
  EXPECT_THAT(Read(R"({"gameBiz":"b","x":{"y":1},"installPath":"p"})"), IsEmpty())
      << "the key went with the buffer";
  EXPECT_THAT(Read(R"({"installPath":"p","x":{"y":1},"gameBiz":"b"})"), ElementsAre(Entry("b")));
  EXPECT_THAT(Read(R"({"x":{"y":1},"gameBiz":"b","installPath":"p"})"), ElementsAre(Entry("b", "p")));
  EXPECT_THAT(Read(R"({"x":{"gameBiz":"inner"},"z":{},"gameBiz":"b"})"), ElementsAre(Entry("b")));
  EXPECT_THAT(Read(R"({"x":{"gameBiz":"inner"},"gameBiz":"outer"})"), ElementsAre(Entry("inner")))
      << "the last nested block stays in the buffer";
}

TEST(GameDataReader, BracesInStringsCount) {
  EXPECT_THAT(Read(R"({"gameBiz":"b}","installPath":"p"})"), IsEmpty())
      << "the value is cut off with the block";
  EXPECT_THAT(Read(R"({"installPath":"{p","gameBiz":"b"}})"), ElementsAre(Entry("b")));
}

TEST(GameDataReader, ValuesFollowTheLooseRule) {
  EXPECT_THAT(Read(R"({"gameBiz":"a\"b"})"), ElementsAre(Entry("a\\"))) << "cut at an escaped quote";
  EXPECT_THAT(Read(R"({"gameBiz":5,"installPath":"p"})"), ElementsAre(Entry("installPath", "p")));
  EXPECT_THAT(Read(R"({"gameBiz":"b","installPath":"C:\\Games\\Wren"})"),
              ElementsAre(Entry("b", R"(C:\\Games\\Wren)")));
}

TEST(GameDataReader, WithoutAGameBizABlockIsDropped) {
  EXPECT_THAT(
      Read(R"({"installPath":"p"}{"gameBiz":""}{"GameBiz":"b"}{}{"gameBiz"}{"gameBiz":}{"gameBiz":"})"),
      IsEmpty());
}

TEST(GameDataReader, WithoutAnInstallPathABlockIsKept) {
  EXPECT_THAT(Read(R"({"gameBiz":"b"})"), ElementsAre(Entry("b")));
}

TEST(GameDataReader, TheFirstBlockOfAGameBizStands) {
  EXPECT_THAT(Read(R"({"gameBiz":"b","installPath":"1"}{"gameBiz":"c"}{"gameBiz":"b","installPath":"2"})"),
              ElementsAre(Entry("b", "1"), Entry("c")));
  EXPECT_THAT(Read(R"({"gameBiz":"b"}{"gameBiz":"B"}{"gameBiz":"b "})"),
              ElementsAre(Entry("b"), Entry("B"), Entry("b ")))
      << "compared exactly";
}

TEST(GameDataReader, AnEmptyStreamHoldsNothing) {
  EXPECT_THAT(Read(""), IsEmpty());
  std::istringstream closed(kBlock);
  closed.setstate(std::ios::failbit);
  EXPECT_THAT(ReadGameData(closed, "x"), IsEmpty());
}

TEST(GameDataReader, AFailureWhileReadingIsLogged) {
  tests::BrokenStream file(kBlock);
  const tests::LogCapture lines;
  EXPECT_THAT(ReadGameData(file, "C:\\é\\gamedata.dat"), IsEmpty())
      << "the stream is read whole before it is searched";
  EXPECT_THAT(
      lines.Lines(),
      ElementsAre(
          "[MihoyoPlatformSearch] Error parsing gamedata.dat (C:\\é\\gamedata.dat): the disk is gone"));
}

TEST(GameDataReader, ACutFileKeepsItsEarlierBlocks) {
  const std::string bytes = kBlock + "x" + R"({"gameBiz":"b"})";
  for (size_t size = 0; size <= bytes.size(); ++size) {
    const auto entries = Read(bytes.substr(0, size));
    EXPECT_THAT(entries, SizeIs(size == bytes.size() ? 2 : size >= kBlock.size() ? 1 : 0)) << size;
    if (!entries.empty()) {
      EXPECT_EQ(entries[0], kWren);
    }
  }
}

TEST(GameDataReader, MeaninglessBytesHoldNothing) {
  for (const std::string& bytes : tests::MeaninglessTexts(kBlock)) EXPECT_THAT(Read(bytes), IsEmpty());
}

TEST(GameDataReader, HugeFilesAreReadOnce) {
  for (const char* pattern : {"x", "\"", "{", "}", "{}", "{\"gameBiz\":", "{\"gameBiz\"", "\n"}) {
    EXPECT_THAT(Read(Enormous(pattern)), IsEmpty()) << pattern;
  }
  const std::string once = R"({"gameBiz":"b","installPath":")" + std::string(kHuge, 'x') + "\"}";
  EXPECT_EQ(Read(once).at(0).installPath.size(), kHuge);
}

TEST(GameDataReader, ManyDifferentGamesAreReadOnce) {
  std::string bytes;
  for (int i = 0; i < 300000; ++i) bytes += "{\"gameBiz\":\"" + std::to_string(i) + "\"}";
  EXPECT_THAT(Read(bytes), SizeIs(300000));
}

TEST(GameDataReader, TheExampleOfItsPage) {
  EXPECT_THAT(Read(tests::HexExample("gamedata")), ElementsAre(Entry("wren_global", "C:/Игры/Wren", "Wren")));
}

}  // namespace
}  // namespace tarnwick
