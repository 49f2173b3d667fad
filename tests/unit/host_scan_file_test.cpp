#include "host/fleet/scan_file.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace tarnwick::host {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

const std::string kWren = R"({"name":"Wren","loc":"C:\\wren.exe","launchUrl":"steam://run/70")";
const std::string kOrigin = R"("form":1,"time":"2026-01-02T03:04:05.678Z","machine":"desk-7")";
const std::string kGameLine = kWren + R"(,"launcher":"Steam","kind":"game",)" + kOrigin + "}\n";

std::string EndLine(int lines) {
  return R"({"kind":"scan",)" + kOrigin + R"(,"lines":)" + std::to_string(lines) + "}\n";
}

std::string FaultOf(const std::string& text) {
  try {
    ParseScan("old.json", text);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "none";
}

TEST(HostScanFile, AnArrayIsTheProgramsJsonOrTheLibrarys) {
  const ScanFile own =
      ParseScan("x", "[" + kWren + R"(,"icon":"","launcher":"Steam","foundBy":"y"}])" + "\n");
  ASSERT_THAT(own.games, SizeIs(1));
  EXPECT_EQ(own.games[0].name, "Wren");
  EXPECT_EQ(own.games[0].loc, "C:\\wren.exe");
  EXPECT_EQ(own.games[0].launchUrl, "steam://run/70");
  EXPECT_EQ(own.games[0].launcher, "Steam");
  EXPECT_EQ(own.machine, "");
  EXPECT_EQ(ParseScan("x", "[" + kWren + "}]").games[0].launcher, "");
  EXPECT_THAT(ParseScan("x", "[]\n").games, IsEmpty());
}

TEST(HostScanFile, LinesTellTimeAndMachine) {
  const ScanFile scan = ParseScan("x", kGameLine + kGameLine + EndLine(2));
  EXPECT_THAT(scan.games, SizeIs(2));
  EXPECT_EQ(scan.time, "2026-01-02T03:04:05.678Z");
  EXPECT_EQ(scan.machine, "desk-7");
  EXPECT_THAT(ParseScan("x", EndLine(0)).games, IsEmpty());
}

TEST(HostScanFile, LinesOfBeforeTheyToldTheirOriginAreTaken) {
  EXPECT_THAT(ParseScan("x", kWren + "}\n" + kWren + "}\n").games, SizeIs(2));
}

TEST(HostScanFile, AByteOrderMarkAndEmptyLinesAreNothing) {
  EXPECT_THAT(ParseScan("x", "\xEF\xBB\xBF\r\n" + kGameLine + "\r\n" + EndLine(1) + "\n").games, SizeIs(1));
}

TEST(HostScanFile, ACutFileIsToldAtItsEnd) {
  EXPECT_EQ(FaultOf(""), "old.json: is empty; a scan without games is [] or one line");
  EXPECT_EQ(FaultOf(" \n"), "old.json: is empty; a scan without games is [] or one line");
  EXPECT_EQ(FaultOf("[" + kWren + "},\n"), "old.json:2:1: the text ends too early; it was cut");
  EXPECT_EQ(FaultOf("[{\"name\":\"\xC3\xA9\xC3\xA9"), "old.json:1:13: the text ends too early; it was cut");
  EXPECT_EQ(FaultOf(kGameLine), "old.json:2:1: the line of the scan's end is missing; it was cut");
  EXPECT_EQ(FaultOf(kGameLine + EndLine(2)),
            "old.json:2: the end tells of 2 games, but 1 stand before it; some were lost");
}

TEST(HostScanFile, EveryCutOfLinesIsRefused) {
  const std::string whole = kGameLine + kGameLine + EndLine(2);
  EXPECT_EQ(FaultOf(whole), "none");
  // Without its last line feed the last line is whole.
  for (size_t length = 0; length + 1 < whole.size(); ++length)
    EXPECT_NE(FaultOf(whole.substr(0, length)), "none") << length;
}

TEST(HostScanFile, WhatIsNoJsonIsToldWithItsPlace) {
  EXPECT_EQ(FaultOf("name,loc\n"), "old.json:1:1: not a scan as --format json or ndjson writes it");
  EXPECT_EQ(FaultOf("[\n  {\"name\": ?}]"), "old.json:2:12: not valid JSON");
  EXPECT_EQ(FaultOf(kGameLine + "{\"name\":\"\xD0\xAF\" x}\n"), "old.json:2:13: not valid JSON");
  EXPECT_EQ(FaultOf("[] []"), "old.json:1:4: not valid JSON");
  EXPECT_EQ(FaultOf(std::string("\xFF\xFE[\0]\0", 6)),
            "old.json: is UTF-16, as PowerShell's > writes it; write scans with -o FILE");
}

TEST(HostScanFile, WhatIsNoScanIsToldApart) {
  EXPECT_EQ(FaultOf("[1]"), "old.json: item 1: no game of a scan: it is no object");
  EXPECT_EQ(FaultOf("[" + kWren + R"(},{"name":"a","loc":""}])"),
            "old.json: item 2: no game of a scan: it has no \"launchUrl\"");
  EXPECT_EQ(FaultOf(R"([{"name":1,"loc":"","launchUrl":""}])"), "old.json: item 1: \"name\" is no text");
  EXPECT_EQ(FaultOf(R"({"added":[]})"), "old.json:1: no game of a scan: it has no \"name\"");
  EXPECT_EQ(FaultOf(R"({"name":"a","kind":"application",)" + kOrigin + "}\n"),
            "old.json:1: no line of a scan: its kind is \"application\"");
  EXPECT_EQ(FaultOf("{}\n1\n"), "old.json:1: no game of a scan: it has no \"name\"");
}

TEST(HostScanFile, ASecondScanOrAnotherFormIsRefused) {
  const std::string second = "a second list begins here; compare one scan with one";
  EXPECT_EQ(FaultOf(kGameLine + EndLine(1) + kGameLine), "old.json:3: " + second);
  std::string other = kGameLine;
  other.replace(other.find("desk-7"), 6, "desk-8");
  EXPECT_EQ(FaultOf(kGameLine + other), "old.json:2: " + second);
  EXPECT_EQ(FaultOf(kGameLine + kWren + "}\n"), "old.json:2: a line of another form than those before");
  EXPECT_EQ(FaultOf(kWren + "}\n" + kGameLine), "old.json:2: a line of another form than those before");
  other = kGameLine;
  other.replace(other.find("\"form\":1"), 8, "\"form\":2");
  EXPECT_EQ(FaultOf(other), "old.json:1: a form of line that this program doesn't know");
}

}  // namespace
}  // namespace tarnwick::host
