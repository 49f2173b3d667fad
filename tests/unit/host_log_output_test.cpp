#include "host/log_output.h"

#include "foundation/log.h"
#include "host/console.h"
#include "support/file_bytes.h"
#include "support/standard_stream.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <regex>
#include <sstream>
#include <thread>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using tests::ReadBytes;
using tests::StandardStream;

LogEntry Entry(const std::string& text) { return {{}, 1, text, "2026-01-02 03:04:05.678"}; }

// A log file of a test's own, gone with it.
struct LogFile {
  std::string path = Narrow((std::filesystem::temp_directory_path() / L"tarnwick \u0416.log").wstring());
  Options options;

  LogFile() { options.logFile = path; }
  ~LogFile() {
    std::error_code error;
    std::filesystem::remove(Widen(path), error);
  }
};

TEST(HostLogOutput, ALineBearsItsStampInBrackets) {
  EXPECT_EQ(StampedLine(Entry("Loaded 5 games")), "[2026-01-02 03:04:05.678] Loaded 5 games\n");
}

TEST(HostLogOutput, AnEntryIsOneLineAndActsOnNoTerminal) {
  EXPECT_EQ(StampedLine(Entry("a\nb\r\x1b[2J\u009b\u202e")), "[2026-01-02 03:04:05.678] a b  [2J  \n");
}

TEST(HostLogOutput, TheFileHasTheLinesAsTheLibrarySentThem) {
  const LogFile file;
  {
    LogOutput log(file.options);
    const LogCapture capture([&](const LogEntry& entry) { log.Write(entry); });
    SendRawDebugText("[Tarnwick] [2026-01-02 03:04:05.678] Loaded 5 games\n");
    LogStream() << "\u041c\u0438\u0440\n";
    // It can be read while it is written.
    EXPECT_THAT(ReadBytes(file.path), StartsWith("[2026-01-02 03:04:05.678] Loaded 5 games\n"));
  }
  EXPECT_TRUE(std::regex_match(
      ReadBytes(file.path),
      std::regex("\\[2026-01-02 03:04:05\\.678\\] Loaded 5 games\n\\[.{23}\\] \u041c\u0438\u0440\n")));
}

TEST(HostLogOutput, TheStandardErrorGetsTheSameLines) {
  StandardStream errors(STD_ERROR_HANDLE);
  Options options;
  LogOutput(options).Write(Entry("not asked for"));
  options.log = true;
  LogOutput(options).Write(Entry("asked for"));
  EXPECT_EQ(errors.Text(), "[2026-01-02 03:04:05.678] asked for\n");
}

TEST(HostLogOutput, LinesOfManyThreadsStayWhole) {
  const LogFile file;
  {
    LogOutput log(file.options);
    std::vector<std::thread> threads;
    for (char letter = 'a'; letter < 'i'; ++letter) {
      threads.emplace_back([&log, letter] {
        for (int i = 0; i < 50; ++i) log.Write(Entry(std::string(500, letter)));
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
  std::istringstream lines(ReadBytes(file.path));
  size_t count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    EXPECT_EQ(line, "[2026-01-02 03:04:05.678] " + std::string(500, line.back()));
  }
  EXPECT_EQ(count, 400u);
}

TEST(HostLogOutput, AFileThatCanNotBeOpenedIsAnError) {
  Options options;
  options.logFile = "C:\\no such folder\\x.log";
  EXPECT_THROW(LogOutput{options}, std::runtime_error);
}

TEST(HostLogOutput, AFileThatCanNotBeWrittenIsToldOnceAtTheEnd) {
  // A pipe whose reader goes away is a file that can't be written any more.
  const HANDLE pipe = CreateNamedPipeW(LR"(\\.\pipe\tarnwick-log-test)", PIPE_ACCESS_INBOUND,
                                       PIPE_TYPE_BYTE | PIPE_WAIT, 1, 4096, 4096, 0, nullptr);
  ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
  StandardStream errors(STD_ERROR_HANDLE);
  {
    Options options;
    options.logFile = R"(\\.\pipe\tarnwick-log-test)";
    LogOutput log(options);
    CloseHandle(pipe);
    for (int i = 0; i < 3; ++i) log.Write(Entry("lost"));
  }
  const std::string text = errors.Text();
  EXPECT_THAT(text, StartsWith("tarnwick: the log is incomplete: can't write "
                               R"(\\.\pipe\tarnwick-log-test: )"));
  EXPECT_EQ(text.find('\n'), text.size() - 1);
}

TEST(HostLogOutput, AStandardErrorThatHasGoneEndsNothing) {
  StandardStream errors(STD_ERROR_HANDLE);
  errors.LoseReader();
  Options options;
  options.log = true;
  LogOutput log(options);
  log.Write(Entry("lost"));
}

}  // namespace
}  // namespace tarnwick::host
