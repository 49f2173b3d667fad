#include "host/console.h"

#include "host/failure.h"
#include "host/options.h"
#include "host/output_file.h"
#include "host/progress.h"
#include "support/file_bytes.h"
#include "support/standard_stream.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <new>
#include <stdexcept>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using tests::StandardStream;

// What RunReportingFailures says and answers when its body does `what`.
std::pair<int, std::string> Report(const std::function<int()>& what) {
  StandardStream errors(STD_ERROR_HANDLE);
  const int code = RunReportingFailures(what);
  return {code, errors.Text()};
}

TEST(HostConsole, APipeGetsTheBytesAsTheyStand) {
  StandardStream output(STD_OUTPUT_HANDLE);
  const std::string text = "\u6e38\u620f\xFF\n" + std::string(100000, 'x');
  WriteStandardOutput(text);
  EXPECT_EQ(output.Text(), text);
}

TEST(HostConsole, OutputWithoutAReaderIsAnError) {
  StandardStream output(STD_OUTPUT_HANDLE);
  output.LoseReader();
  try {
    WriteStandardOutput("lost");
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), StartsWith("can't write to the standard output: "));
  }
}

TEST(HostConsole, ErrorsWithoutAReaderAreNobodysToHear) {
  StandardStream errors(STD_ERROR_HANDLE);
  errors.LoseReader();
  WriteStandardError("lost");
}

TEST(HostConsole, APipeIsNoTerminal) {
  const StandardStream output(STD_OUTPUT_HANDLE);
  const StandardStream errors(STD_ERROR_HANDLE);
  EXPECT_EQ(TerminalWidth(), 0u);
  EXPECT_EQ(ErrorTerminalWidth(), 0u);
  EXPECT_FALSE(StandardErrorIsTerminal());
}

TEST(HostConsole, NoProgressIsDrawnIntoAPipe) {
  StandardStream errors(STD_ERROR_HANDLE);
  DrawProgress("Level 6: 1 of 2 strategies finished, 3 found");
  DrawProgress("");
  EXPECT_EQ(errors.Text(), "");
}

TEST(HostConsole, AFileIsWrittenAnew) {
  const std::string path =
      Narrow((std::filesystem::temp_directory_path() / L"tarnwick \u0416.txt").wstring());
  WriteResult(path, "a longer text\r\n");
  WriteResult(path, "short\n");
  EXPECT_EQ(tests::ReadBytes(path), "short\n");
  std::filesystem::remove(Widen(path));
}

TEST(HostConsole, AFileThatCanNotBeOpenedIsNamedWithTheReason) {
  try {
    WriteResult("C:\\no such folder\\x.txt", "text");
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(std::string(error.what()),
              "can't write C:\\no such folder\\x.txt: " + SystemErrorText(ERROR_PATH_NOT_FOUND));
  }
}

TEST(HostConsole, ReasonsAreOneLineWithoutAStop) {
  EXPECT_EQ(SystemErrorText(ERROR_DISK_FULL).find_first_of("\r\n"), std::string::npos);
  EXPECT_NE(SystemErrorText(ERROR_DISK_FULL).back(), '.');
  EXPECT_EQ(SystemErrorText(0x2FFFFFFF), "error 805306367");
}

TEST(HostFailure, ABodyThatEndsWellIsSilent) {
  EXPECT_EQ(Report([] { return 7; }), std::make_pair(7, std::string()));
}

TEST(HostFailure, AnExceptionBecomesOneLine) {
  EXPECT_EQ(Report([]() -> int { throw std::runtime_error("can't\nwrite\x1b[31m"); }),
            std::make_pair(kExitFailure, std::string("tarnwick: can't write [31m\n")));
}

TEST(HostFailure, SoDoMissingMemoryAndWhatIsNoException) {
  EXPECT_EQ(Report([]() -> int { throw std::bad_alloc(); }),
            std::make_pair(kExitFailure, std::string("tarnwick: out of memory\n")));
  EXPECT_EQ(Report([]() -> int { throw 42; }),
            std::make_pair(kExitFailure, std::string("tarnwick: an error of unknown kind\n")));
}

}  // namespace
}  // namespace tarnwick::host
