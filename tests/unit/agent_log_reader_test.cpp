#include "launchers/agent_log_reader.h"

#include "support/hex_page.h"
#include "support/hostile_texts.h"
#include "support/log_capture.h"

#include <gmock/gmock.h>

#include <sstream>

namespace tarnwick {

bool operator==(const BattleNetGameEntry& a, const BattleNetGameEntry& b) {
  return a.gameId == b.gameId && a.installPath == b.installPath && a.relativePath == b.relativePath &&
         a.relativePath64 == b.relativePath64;
}

void PrintTo(const BattleNetGameEntry& entry, std::ostream* out) {
  *out << "{" << entry.gameId << ", " << entry.installPath << ", " << entry.relativePath << ", "
       << entry.relativePath64 << "}";
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::Enormous;
using tests::kHuge;
using tests::Repeated;

std::vector<BattleNetGameEntry> Read(const std::string& text) {
  std::istringstream log(text);
  return ReadAgentLog(log, "log");
}

std::string Request(const std::string& gameId) {
  return "[I 2025-05-17 17:48:43.0042] Request GET /game/" + gameId + " HTTP/1.1\n";
}

const std::string kBlock = R"(Response 200 (0.1760 ms): {
  "binaries": { "game": { "relative_path": "x86\\w.exe", "relative_path_64": "x64\\w.exe" } },
  "installPath": "C:\\Games\\Wren"
}
)";
const BattleNetGameEntry kWren = {"wren", "C:\\Games\\Wren", "x86\\w.exe", "x64\\w.exe"};

// A block on one line with these members beside "binaries".
std::string Block(const std::string& members) { return "{\"binaries\":0," + members + "}\n"; }

TEST(AgentLogReader, ReadsAProduct) { EXPECT_THAT(Read(Request("wren") + kBlock), ElementsAre(kWren)); }

TEST(AgentLogReader, ReadsEveryProductInOrderDuplicatesIncluded) {
  const auto entries = Read("noise\n" + Request("wren") + kBlock + "noise {}\n" + Request("Owl") +
                            Block(R"("installPath":"C:/Сова")") + Request("wren") + kBlock);
  EXPECT_THAT(entries, ElementsAre(kWren, BattleNetGameEntry{"Owl", "C:/Сова", "", ""}, kWren));
}

TEST(AgentLogReader, TheIdEndsAtABlankATabOrTheLinesEnd) {
  const std::string block = Block(R"("installPath":"x")");
  EXPECT_EQ(Read("Request GET /game/a b\n" + block).at(0).gameId, "a");
  EXPECT_EQ(Read("Request GET /game/a\tb\n" + block).at(0).gameId, "a");
  EXPECT_EQ(Read("Request GET /game/a/b?c\n" + block).at(0).gameId, "a/b?c");
  EXPECT_EQ(Read("Request GET /game/\n" + block).at(0).gameId, "");
  EXPECT_EQ(Read("Request GET /game/a Request GET /game/b\n" + block).at(0).gameId, "a");
}

TEST(AgentLogReader, OnlyThisRequestCounts) {
  for (const char* line :
       {"Request POST /game/a\n", "request GET /game/a\n", "Request GET /games/a\n", "GET /game/a\n"}) {
    EXPECT_THAT(Read(line + kBlock), IsEmpty()) << line;
  }
}

TEST(AgentLogReader, TheBlockBeginsOnALaterLine) {
  EXPECT_THAT(Read("Request GET /game/wren " + Block(R"("installPath":"x")") + kBlock), ElementsAre(kWren))
      << "a brace on the request's own line is not looked at";
}

TEST(AgentLogReader, LinesWithoutABraceArePassedOverOtherRequestsToo) {
  EXPECT_THAT(Read(Request("wren") + "\n\nx\n" + Request("lost") + "y\n" + kBlock), ElementsAre(kWren));
}

TEST(AgentLogReader, WithoutABlockTheProductIsDropped) {
  EXPECT_THAT(Read(Request("wren")), IsEmpty());
  EXPECT_THAT(Read(Request("wren") + "x\ny\n"), IsEmpty());
}

TEST(AgentLogReader, AnUnfinishedBlockCountsAsItStands) {
  EXPECT_THAT(Read(Request("wren") + R"({"binaries":0,"installPath":"x","relative_path":"w.exe")"),
              ElementsAre(BattleNetGameEntry{"wren", "x", "w.exe", ""}));
}

TEST(AgentLogReader, BracesInStringsCount) {
  EXPECT_THAT(Read(Request("a") + Block(R"("x":"{","installPath":"x")") + Request("b") +
                   Block(R"("installPath":"y")")),
              ElementsAre(BattleNetGameEntry{"a", "x", "", ""}))
      << "the block never closes, so the next request is inside it";
  EXPECT_THAT(Read(Request("a") + "{\"x\":\"}\"\n" + R"("binaries":0,"installPath":"x"})" + "\n"), IsEmpty())
      << "the first line is balanced, and the block is over";
}

TEST(AgentLogReader, BracesAreCountedAtTheEndsOfLines) {
  EXPECT_THAT(Read(Request("a") + "{}}\n" + R"({"binaries":0,"installPath":"x")" + "\n"),
              ElementsAre(BattleNetGameEntry{"a", "x", "", ""}))
      << "one brace too many, and the next line makes it even";
}

TEST(AgentLogReader, ABlockWithoutBinariesIsNoGame) {
  EXPECT_THAT(Read(Request("a") + R"({"installPath":"C:\\x"})" + "\n"), IsEmpty());
  EXPECT_THAT(Read(Request("a") + R"({"Binaries":0,"binaries_":0,"installPath":"C:\\x"})" + "\n"), IsEmpty());
}

TEST(AgentLogReader, TheInstallDirStandsInForTheInstallPath) {
  EXPECT_EQ(Read(Request("a") + Block(R"("install_dir":"d")")).at(0).installPath, "d");
  EXPECT_EQ(Read(Request("a") + Block(R"("install_dir":"d","installPath":"p")")).at(0).installPath, "p");
  EXPECT_EQ(Read(Request("a") + Block(R"("install_dir":"d","installPath":"")")).at(0).installPath, "d");
  EXPECT_EQ(Read(Request("a") + Block(R"("installPath":17,"install_dir":"d")")).at(0).installPath, "d")
      << "a number is no text";
  EXPECT_THAT(Read(Request("a") + Block(R"("relative_path":"w.exe")")), IsEmpty()) << "neither";
}

TEST(AgentLogReader, APathThatEndsInABackslashRunsOn) {
  EXPECT_EQ(Read(Request("a") + Block(R"("installPath":"C:\\Wren\\","x":"y")")).at(0).installPath,
            R"(C:\Wren\",)");
}

TEST(AgentLogReader, BackslashesOfTheIdStay) {
  EXPECT_EQ(Read("Request GET /game/a\\\\b\n" + Block(R"("installPath":"x")")).at(0).gameId, "a\\\\b");
}

TEST(AgentLogReader, TheStrictRuleForStringsHolds) {
  EXPECT_EQ(ExtractJsonStringValue(R"({"a" : "x"})", "a"), "x");
  EXPECT_EQ(ExtractJsonStringValue(R"({"a":5,"b":"y"})", "a"), "");
  EXPECT_EQ(ExtractJsonStringValue(R"({"a":"C:\\x"})", "a"), R"(C:\\x)") << "nothing is unescaped here";
}

TEST(AgentLogReader, AFailureWhileReadingKeepsWhatWasRead) {
  tests::BrokenStream log(Request("wren") + kBlock + Request("owl") + "{\n");
  const tests::LogCapture lines;
  EXPECT_THAT(ReadAgentLog(log, "C:\\Лог\\Agent-1.log"), ElementsAre(kWren));
  EXPECT_THAT(
      lines.Lines(),
      ElementsAre("[BattleNetSearchV2] Error parsing log file (C:\\Лог\\Agent-1.log): the disk is gone"));
}

TEST(AgentLogReader, AStreamThatIsNotOpenHoldsNothing) {
  std::istringstream log(Request("wren") + kBlock);
  log.setstate(std::ios::failbit);
  const tests::LogCapture lines;
  EXPECT_THAT(ReadAgentLog(log, "x"), IsEmpty());
  EXPECT_THAT(lines.Lines(), IsEmpty());
}

TEST(AgentLogReader, ACutLogKeepsItsEarlierProducts) {
  const std::string first = Request("wren") + kBlock;
  const std::string text = first + Request("owl") + kBlock;
  for (size_t size = 0; size <= text.size(); ++size) {
    const auto entries = Read(text.substr(0, size));
    ASSERT_LE(entries.size(), 2u);
    if (size >= first.size()) {
      ASSERT_GE(entries.size(), 1u) << size;
      EXPECT_EQ(entries[0], kWren) << size;
    }
    for (const BattleNetGameEntry& entry : entries) EXPECT_EQ(entry.installPath, "C:\\Games\\Wren") << size;
  }
}

TEST(AgentLogReader, MeaninglessTextsHoldNoProduct) {
  for (const std::string& text : tests::MeaninglessTexts(Request("wren") + kBlock)) {
    EXPECT_THAT(Read(text), IsEmpty());
    EXPECT_THAT(Read(Request("a") + text), IsEmpty());
  }
}

TEST(AgentLogReader, HugeTextsAreReadOnce) {
  for (const char* pattern :
       {"x", "\"", "{", "}", "Request GET /game/", "Request GET /game/a\n", "{\n", "{}}\n"}) {
    EXPECT_THAT(Read(Request("a") + Enormous(pattern)), IsEmpty()) << pattern;
  }
  const std::string request = Request("wren") + kBlock;
  EXPECT_THAT(Read(Repeated(request, request.size() * 20000)), SizeIs(20000));
}

TEST(AgentLogReader, AHugePathIsCollapsedOnce) {
  const auto entries = Read(Request("a") + Block("\"installPath\":\"" + Repeated("\\", kHuge) + "x\""));
  ASSERT_THAT(entries, SizeIs(1));
  EXPECT_EQ(entries[0].installPath.size(), kHuge / 2 + 1);
}

TEST(AgentLogReader, TheExampleOfItsPage) {
  EXPECT_THAT(Read(tests::HexExample("agent-log")),
              ElementsAre(BattleNetGameEntry{"wren", "C:\\Игры\\Wren", "wren.exe", "x64\\wren.exe"}));
}

}  // namespace
}  // namespace tarnwick
