#include "foundation/files.h"

#include "desktop/desktop.h"
#include "foundation/conversions.h"
#include "foundation/windows_api.h"

#include <gtest/gtest.h>
#include <shlobj.h>

namespace tarnwick {
namespace {

const std::string kRoot = "C:\\TarnwickTest\\Files\\";
const std::string kOddName = "caf\xC3\xA9 \xD0\x98\xD0\xB3\xD1\x80\xD0\xB0 \xE6\xBC\xA2\xE5\xAD\x97";

TEST(Files, PathsKeepUtf8BothWays) {
  EXPECT_EQ(PathToUtf8(PathFromUtf8(kRoot + kOddName)), kRoot + kOddName);
  EXPECT_EQ(PathToUtf8(PathFromUtf8("")), "");
}

TEST(Files, ALoneSurrogateInAPathIsReplaced) {
  EXPECT_EQ(PathToUtf8(std::filesystem::path(L"C:\\a\xD83C")), "C:\\a\xEF\xBF\xBD");
}

TEST(Files, TellsFilesFromFolders) {
  desktop::Desktop desktop;
  desktop.File(kRoot + kOddName + "\\a.exe");
  EXPECT_TRUE(FileExists(kRoot + kOddName + "\\a.exe"));
  EXPECT_FALSE(DirectoryExists(kRoot + kOddName + "\\a.exe"));
  EXPECT_FALSE(FileExists(kRoot + kOddName));
  EXPECT_TRUE(DirectoryExists(kRoot + kOddName));
}

TEST(Files, NeitherExistsForAMissingOrEmptyPath) {
  for (const std::string path : {"", "C:\\TarnwickTest\\Files\\missing", "*", "\"C:\\\""}) {
    EXPECT_FALSE(FileExists(path)) << path;
    EXPECT_FALSE(DirectoryExists(path)) << path;
  }
}

TEST(Files, ReadsTextWithoutCarriageReturnsAndBinaryAsItStands) {
  desktop::Desktop desktop;
  const std::string path = kRoot + kOddName + ".txt";
  desktop.File(path, "a\r\nb\n");
  std::ifstream text = OpenTextFile(path);
  std::ifstream binary = OpenBinaryFile(path);
  EXPECT_EQ(ReadAll(text), "a\nb\n");
  EXPECT_EQ(ReadAll(binary), "a\r\nb\n");
}

TEST(Files, BinaryReadsGoOnBehindZerosAndTheOldEndMark) {
  desktop::Desktop desktop;
  const std::string bytes("a\0\x1A\xFFz", 5);
  desktop.File(kRoot + "binary", bytes);
  std::ifstream file = OpenBinaryFile(kRoot + "binary");
  EXPECT_EQ(ReadAll(file), bytes);
}

TEST(Files, ReadAllGivesTheRestOfAStream) {
  std::istringstream stream("first\nsecond\nthird");
  std::string line;
  std::getline(stream, line);
  EXPECT_EQ(ReadAll(stream), "second\nthird");
  EXPECT_EQ(ReadAll(stream), "");
}

TEST(Files, AStreamOfAMissingFileIsClosed) {
  EXPECT_FALSE(OpenTextFile(kRoot + "missing").is_open());
  EXPECT_FALSE(OpenBinaryFile("").is_open());
}

TEST(Files, KnowsJunctions) {
  desktop::Desktop desktop;
  desktop.Folder(kRoot + "target");
  desktop.Junction(kRoot + "junction", kRoot + "target");
  EXPECT_TRUE(IsReparsePoint(PathFromUtf8(kRoot + "junction")));
  EXPECT_FALSE(IsReparsePoint(PathFromUtf8(kRoot + "target")));
  EXPECT_FALSE(IsReparsePoint(PathFromUtf8(kRoot + "missing")));
}

TEST(Files, ShellFoldersAreWholePaths) {
  const std::string folder = ShellFolder(CSIDL_PROGRAM_FILES);
  EXPECT_TRUE(DirectoryExists(folder)) << folder;
  EXPECT_EQ(folder.substr(1), ":\\Program Files");
}

TEST(Files, AShellFolderThatDoesNotExistIsEmpty) { EXPECT_EQ(ShellFolder(0x7F), ""); }

TEST(FullPath, CleansDotsSlashesAndDoubledBackslashes) {
  EXPECT_EQ(FullPath("C:\\\\Program Files\\\\Foo\\.\\bar\\..\\a.exe"), "C:\\Program Files\\Foo\\a.exe");
  EXPECT_EQ(FullPath("C:/Games/a.exe"), "C:\\Games\\a.exe");
  EXPECT_EQ(FullPath("C:\\missing\\.."), "C:\\");
}

TEST(FullPath, StartsARelativePathAtTheCurrentFolder) {
  wchar_t current[MAX_PATH];
  ASSERT_NE(GetCurrentDirectoryW(MAX_PATH, current), 0u);
  EXPECT_EQ(FullPath("a.exe"), WideToUtf8(current) + "\\a.exe");
}

TEST(FullPath, IsTheTextItselfWhereTheCallHasNoAnswer) {
  EXPECT_EQ(FullPath(""), "");
  const std::string tooLong = "C:\\a\\..\\" + std::string(300, 'x');
  EXPECT_EQ(FullPath(tooLong), tooLong);
}

TEST(FullPath, HasRoomFor259Bytes) {
  const std::string drive = FullPath("\\").substr(0, 2);
  const std::string fits = "\\" + std::string(256, 'x');
  const std::string tooLong = "\\" + std::string(257, 'x');
  EXPECT_EQ(FullPath(fits), drive + fits);
  EXPECT_EQ(FullPath(tooLong), tooLong);
}

// The call takes the bytes for ANSI characters and gives the same bytes back; the list holds those that code
// page 1252 leaves undefined.
TEST(FullPath, PassesUtf8BytesThrough) {
  if (GetACP() != 1252 && GetACP() != CP_UTF8) GTEST_SKIP() << "the machine's code page has double bytes";
  EXPECT_EQ(FullPath("C:\\.\\" + kOddName), "C:\\" + kOddName);
  EXPECT_EQ(FullPath("C:\\.\\\xD0\x81\xD0\x8D\xD0\x8F\xD0\x90\xD0\x9D"),
            "C:\\\xD0\x81\xD0\x8D\xD0\x8F\xD0\x90\xD0\x9D");
}

}  // namespace
}  // namespace tarnwick
