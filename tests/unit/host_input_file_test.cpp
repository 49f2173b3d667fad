#include "host/input_file.h"

#include "host/catalogue/check_encoding.h"

#include "desktop/desktop.h"
#include "support/locked_path.h"
#include "support/utf16_bytes.h"

#include <gmock/gmock.h>

#include <set>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using tests::Utf16Bytes;

const std::string kFolder = R"(C:\TarnwickTest\InputFile)";
const std::string kFile = kFolder + R"(\Файл.txt)";

TEST(HostInputFile, ReadsAllBytes) {
  desktop::Desktop world;
  const std::string bytes = std::string("\0\r\n\x1A<", 5) + std::string(3 << 20, 'x');
  world.File(kFile, bytes);
  const InputFile file = ReadInputFile(kFile);
  EXPECT_EQ(file.fault, FileFault::kNone);
  EXPECT_TRUE(file.bytes == bytes);
}

TEST(HostInputFile, TellsApartWhyAFileCanNotBeRead) {
  desktop::Desktop world;
  world.File(kFile);
  EXPECT_EQ(ReadInputFile(kFolder).fault, FileFault::kFolder);
  EXPECT_EQ(ReadInputFile(kFolder + R"(\none.txt)").fault, FileFault::kMissing);
  EXPECT_EQ(ReadInputFile(kFolder + R"(\none\none.txt)").fault, FileFault::kMissing);
  const tests::LockedPath locked(kFile);
  EXPECT_EQ(ReadInputFile(kFile).fault, FileFault::kInUse);
}

TEST(HostInputFile, KnowsTheNumbersOfWindows) {
  EXPECT_EQ(FaultOfWindowsError(ERROR_ACCESS_DENIED), FileFault::kDenied);
  EXPECT_EQ(FaultOfWindowsError(ERROR_LOCK_VIOLATION), FileFault::kInUse);
  EXPECT_EQ(FaultOfWindowsError(ERROR_INVALID_NAME), FileFault::kMissing);
  EXPECT_EQ(FaultOfWindowsError(ERROR_CRC), FileFault::kUnreadable);
}

TEST(HostInputFile, ExplainsEveryFaultInOneLineOfItsOwn) {
  EXPECT_EQ(ExplainFault("x", FileFault::kNone), "");
  std::set<std::string> lines;
  for (const FileFault fault : {FileFault::kMissing, FileFault::kFolder, FileFault::kInUse,
                                FileFault::kDenied, FileFault::kUnreadable}) {
    const std::string line = ExplainFault("C:\\a.txt", fault);
    EXPECT_THAT(line, StartsWith("C:\\a.txt "));
    EXPECT_THAT(line, HasSubstr("; "));  // what to do
    EXPECT_EQ(line.find('\n'), line.npos);
    EXPECT_TRUE(lines.insert(line).second) << line;
  }
}

TEST(HostInputFile, KnowsUtf16InEitherOrderWithAndWithoutAMark) {
  for (const bool bigEndian : {false, true}) {
    EXPECT_TRUE(IsUtf16(Utf16Bytes(L"\uFEFF<A/>", bigEndian)));
    EXPECT_TRUE(IsUtf16(Utf16Bytes(L"<A/>", bigEndian)));
    EXPECT_TRUE(
        IsUtf16(Utf16Bytes(L"<GameSignature>\u9752\u74F7\u4E00\u4E00\u042F</GameSignature>", bigEndian)));
    EXPECT_TRUE(IsUtf16(Utf16Bytes(L"\uFEFF", bigEndian)));
  }
}

TEST(HostInputFile, TakesNothingElseForUtf16) {
  std::string allBytes;
  for (int byte = 0; byte < 256; ++byte) allBytes += static_cast<char>(byte);
  for (const std::string& text : {std::string(), std::string("<"), std::string("<A/>"), std::string("\0", 1),
                                  std::string(64, '\0'), std::string("\xEF\xBB\xBF<A/>"), allBytes}) {
    EXPECT_FALSE(IsUtf16(text)) << text.size();
  }
}

TEST(HostInputFile, OneFileIsTheSameUnderEverySpelling) {
  desktop::Desktop world;
  world.File(kFolder + R"(\one.txt)");
  world.File(kFolder + R"(\two.txt)");
  world.Junction(kFolder + R"(\link)", kFolder);
  const std::string one = kFolder + R"(\one.txt)";
  EXPECT_TRUE(IsSameFile(one, one));
  EXPECT_TRUE(IsSameFile(one, "c:/tarnwicktest/./INPUTFILE/none/../One.TXT"));
  EXPECT_TRUE(IsSameFile(one, kFolder + R"(\link\one.txt)"));
  EXPECT_FALSE(IsSameFile(one, kFolder + R"(\two.txt)"));
  EXPECT_FALSE(IsSameFile(one, kFolder + R"(\none.txt)"));
  EXPECT_FALSE(IsSameFile(kFolder + R"(\none.txt)", kFolder + R"(\none.txt)"));
}

}  // namespace
}  // namespace tarnwick::host
