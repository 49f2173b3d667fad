#include "foundation/machine/paths.h"

#include "desktop/desktop.h"
#include "foundation/conversions.h"
#include "foundation/windows_api.h"
#include "support/locked_path.h"
#include "support/odd_name.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tarnwick {
namespace {

using tests::kOddName;

const std::string kRoot = "C:\\TarnwickTest\\Files\\";

TEST(Paths, TellsFilesFromFolders) {
  desktop::Desktop desktop;
  desktop.File(kRoot + kOddName + "\\a.exe");
  EXPECT_TRUE(FileExists(kRoot + kOddName + "\\a.exe"));
  EXPECT_FALSE(DirectoryExists(kRoot + kOddName + "\\a.exe"));
  EXPECT_FALSE(FileExists(kRoot + kOddName));
  EXPECT_TRUE(DirectoryExists(kRoot + kOddName));
}

TEST(Paths, NeitherExistsForAMissingOrEmptyPath) {
  for (const std::string path : {"", "C:\\TarnwickTest\\Files\\missing", "*", "\"C:\\\""}) {
    EXPECT_FALSE(FileExists(path)) << path;
    EXPECT_FALSE(DirectoryExists(path)) << path;
  }
}

TEST(PathStatus, TellsFoldersFilesAndNothingApart) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "файл");
  EXPECT_TRUE(ExistsOrThrow(kRoot + "файл"));
  EXPECT_FALSE(IsDirectoryOrThrow(kRoot + "файл"));
  EXPECT_TRUE(ExistsOrThrow(kRoot));
  EXPECT_TRUE(IsDirectoryOrThrow(kRoot));
  for (const std::string& path : {std::string(), kRoot + "no", kRoot + "no\\no", kRoot + "файл\\below",
                                  kRoot + "a<b", kRoot + "a\"b", kRoot + "*", std::string("Q:\\x")}) {
    EXPECT_FALSE(ExistsOrThrow(path)) << path;
    EXPECT_FALSE(IsDirectoryOrThrow(path)) << path;
  }
}

TEST(PathStatus, PicksTheFirstFileThatExists) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "a");
  desktop.File(kRoot + "b");
  EXPECT_EQ(FirstExistingFile({"", kRoot + "no", kRoot, kRoot + "b", kRoot + "a"}), kRoot + "b");
  EXPECT_EQ(FirstExistingFile({kRoot}), "");
  EXPECT_EQ(FirstExistingFile({}), "");
}

TEST(PathStatus, AnyOtherErrorThrows) {
  EXPECT_THROW(ExistsOrThrow(tests::kUnaskablePath), std::filesystem::filesystem_error);
  EXPECT_THROW(IsDirectoryOrThrow(tests::kUnaskablePath), std::filesystem::filesystem_error);
}

TEST(PathStatus, FollowsAJunction) {
  desktop::Desktop desktop;
  desktop.Folder(kRoot + "target");
  desktop.Junction(kRoot + "link", kRoot + "target");
  EXPECT_TRUE(IsDirectoryOrThrow(kRoot + "link"));
}

TEST(PathStatus, GivesTheTimeOfTheLastWrite) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "a");
  desktop.ModifiedTime(kRoot + "a", 1'000'000'000);
  const uint64_t earlier = LastWriteTime(Utf8ToWide(kRoot + "a"));
  desktop.ModifiedTime(kRoot + "a", 1'000'000'001);
  EXPECT_EQ(LastWriteTime(Utf8ToWide(kRoot + "a")), earlier + 10'000'000);
  EXPECT_THROW(LastWriteTime(Utf8ToWide(kRoot + "nothing")), std::filesystem::filesystem_error);
}

TEST(ShellPaths, TellFilesFoldersAndNothingApart) {
  desktop::Desktop d;
  d.File("C:\\TarnwickTest\\Inventory\\Paths\\a.txt");
  EXPECT_TRUE(ShellPathExists(L"C:\\TarnwickTest\\Inventory\\Paths\\a.txt"));
  EXPECT_TRUE(ShellPathExists(L"C:\\TarnwickTest\\Inventory\\Paths"));
  EXPECT_FALSE(ShellPathExists(L"C:\\TarnwickTest\\Inventory\\Paths\\b.txt"));
  EXPECT_FALSE(ShellPathExists(L""));
  EXPECT_TRUE(ShellFolderExists(L"C:\\TarnwickTest\\Inventory\\Paths"));
  EXPECT_FALSE(ShellFolderExists(L"C:\\TarnwickTest\\Inventory\\Paths\\a.txt"));
  EXPECT_FALSE(ShellFolderExists(L""));
}

TEST(FileSize, IsKnownForFilesAlone) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "three", "abc");
  desktop.File(kRoot + "none", "");
  EXPECT_EQ(FileSize(kRoot + "three"), uint64_t{3});
  EXPECT_EQ(FileSize(kRoot + "none"), uint64_t{0});
  EXPECT_EQ(FileSize(kRoot + "missing"), std::nullopt);
  EXPECT_EQ(FileSize(kRoot), std::nullopt);
}

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
