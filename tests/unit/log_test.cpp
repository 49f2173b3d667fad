#include "foundation/log.h"

#include "foundation/windows_api.h"
#include "support/debug_capture.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <regex>
#include <thread>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::DebugCapture;

constexpr size_t kPrefixLength = 37;  // "[Tarnwick] [2024-01-02 03:04:05.678] "

std::string Logged(const std::string& text) {
  DebugCapture capture;
  LogLine(text);
  const std::vector<std::string> texts = capture.Raw();
  EXPECT_EQ(texts.size(), 1u);
  return texts.empty() ? std::string() : texts.front();
}

std::string Minute(const SYSTEMTIME& time) {
  char text[32];
  std::snprintf(text, sizeof(text), "%04d-%02d-%02d %02d:%02d", time.wYear, time.wMonth, time.wDay,
                time.wHour, time.wMinute);
  return text;
}

TEST(LogLine, WritesPrefixLocalTimeAndLineFeedInOneCall) {
  SYSTEMTIME before;
  GetLocalTime(&before);
  const std::string line = Logged("hello %s \"world\"");
  SYSTEMTIME after;
  GetLocalTime(&after);
  std::smatch match;
  const std::regex form(R"(\[Tarnwick\] \[(\d{4}-\d\d-\d\d \d\d:\d\d):\d\d\.\d{3}\] hello %s "world"\n)");
  ASSERT_TRUE(std::regex_match(line, match, form)) << line;
  EXPECT_THAT(match[1].str(), testing::AnyOf(Minute(before), Minute(after)));
}

TEST(LogLine, WritesAnEmptyText) {
  EXPECT_TRUE(std::regex_match(Logged(""), std::regex(R"(\[Tarnwick\] \[.{23}\] \n)")));
}

TEST(LogLine, CutsALongLineAndItsLineFeedWithIt) {
  const std::string line = Logged(std::string(5000, 'x'));
  EXPECT_EQ(line.size(), 4095u);
  EXPECT_EQ(line.substr(kPrefixLength), std::string(4095 - kPrefixLength, 'x'));
}

TEST(LogLine, KeepsTheLineFeedOfALineThatJustFits) {
  const std::string fits = Logged(std::string(4095 - kPrefixLength - 1, 'x'));
  EXPECT_EQ(fits.size(), 4095u);
  EXPECT_EQ(fits.back(), '\n');
  const std::string longer = Logged(std::string(4095 - kPrefixLength, 'x'));
  EXPECT_EQ(longer.size(), 4095u);
  EXPECT_EQ(longer.back(), 'x');
}

TEST(LogLine, TakesUtf8) {
  if (GetACP() != 1252) GTEST_SKIP() << "the capture sees the machine's code page, which is not 1252";
  EXPECT_EQ(Logged("caf\xC3\xA9").substr(kPrefixLength), "caf\xE9\n");
}

TEST(LogLine, EndsATextAtItsFirstZero) {
  EXPECT_EQ(Logged(std::string("ab\0cd", 5)).substr(kPrefixLength), "ab\n");
}

TEST(LogCString, IsSilentForNull) {
  DebugCapture capture;
  LogCString(nullptr);
  EXPECT_THAT(capture.Raw(), IsEmpty());
}

TEST(LogCString, WritesWhatLogLineWrites) {
  DebugCapture capture;
  LogCString("hello");
  LogCString("");
  EXPECT_THAT(capture.Lines(), ElementsAre("hello", ""));
  EXPECT_EQ(capture.Raw()[0].size(), kPrefixLength + 6);
}

TEST(SendRawDebugText, AddsNothing) {
  DebugCapture capture;
  SendRawDebugText("as it stands\n");
  SendRawDebugText("no line feed");
  EXPECT_THAT(capture.Raw(), ElementsAre("as it stands\n", "no line feed"));
}

TEST(LogStream, WritesNothingWhenItReceivedNothing) {
  DebugCapture capture;
  {
    LogStream stream;
  }
  LogStream() << "";
  EXPECT_THAT(capture.Raw(), IsEmpty());
}

TEST(LogStream, WritesItsTextInOneCallAtTheEndOfItsScope) {
  DebugCapture capture;
  {
    LogStream stream;
    stream << "Found " << 3 << " games, " << size_t{7} << " paths" << "\n";
    EXPECT_THAT(capture.Raw(), IsEmpty());
  }
  EXPECT_THAT(capture.Raw(), ElementsAre("[Tarnwick] Found 3 games, 7 paths\n"));
}

TEST(LogStream, AddsNeitherTimeNorLineFeed) {
  DebugCapture capture;
  LogStream() << "\nno end";
  EXPECT_THAT(capture.Raw(), ElementsAre("[Tarnwick] \nno end"));
}

TEST(LogStream, PassesUtf8BytesAndLongTextsOn) {
  DebugCapture capture;
  LogStream() << "\xD0\x96\xE6\xBC\xA2";
  LogStream() << std::string(10'000, 'x');
  EXPECT_THAT(capture.Raw(),
              ElementsAre("[Tarnwick] \xD0\x96\xE6\xBC\xA2", "[Tarnwick] " + std::string(10'000, 'x')));
}

TEST(Log, LinesOfDifferentThreadsStayWhole) {
  DebugCapture capture;
  std::vector<std::thread> threads;
  for (const char letter : {'a', 'b', 'c', 'd'}) {
    threads.emplace_back([letter] {
      for (int i = 0; i < 25; ++i) {
        LogLine(std::string(200, letter));
        LogStream() << std::string(100, letter) << std::string(100, letter) << "\n";
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  const std::vector<std::string> lines = capture.Lines();
  EXPECT_EQ(lines.size(), 200u);
  for (const std::string& line : lines) EXPECT_EQ(line, std::string(200, line.front()));
}

TEST(LogExceptions, SaysWhyTheBodyEndedAndLetsOthersPass) {
  tests::DebugCapture log;
  int ran = 0;
  LogExceptions("[X] Error (é): ", [&] { ++ran; });
  EXPECT_EQ(ran, 1);
  EXPECT_THAT(log.Raw(), IsEmpty());
  LogExceptions("[X] Error (é): ", [] { throw std::runtime_error("why"); });
  EXPECT_THAT(log.Raw(), ElementsAre("[Tarnwick] [X] Error (é): why\n"));
  EXPECT_THROW(LogExceptions("x", [] { throw 7; }), int);
}

}  // namespace
}  // namespace tarnwick
