#include "foundation/machine/data_files.h"

#include "desktop/desktop.h"
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "support/odd_name.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using tests::kOddName;

const std::string kRoot = "C:\\TarnwickTest\\Files\\";

TEST(DataFiles, ReadsTextWithoutCarriageReturnsAndBinaryAsItStands) {
  desktop::Desktop desktop;
  const std::string path = kRoot + kOddName + ".txt";
  desktop.File(path, "a\r\nb\n");
  const DataFile text = OpenTextFile(path);
  const DataFile binary = OpenBinaryFile(path);
  EXPECT_EQ(ReadAll(*text), "a\nb\n");
  EXPECT_EQ(ReadAll(*binary), "a\r\nb\n");
}

TEST(DataFiles, BinaryReadsGoOnBehindZerosAndTheOldEndMark) {
  desktop::Desktop desktop;
  const std::string bytes("a\0\x1A\xFFz", 5);
  desktop.File(kRoot + "binary", bytes);
  const DataFile file = OpenBinaryFile(kRoot + "binary");
  EXPECT_EQ(ReadAll(*file), bytes);
}

TEST(DataFiles, AMissingFileHasNothingToRead) {
  for (const DataFile& file : {OpenTextFile(kRoot + "missing"), OpenBinaryFile(""), OpenBinaryFile(L"")}) {
    EXPECT_FALSE(*file);
    EXPECT_EQ(ReadAll(*file), "");
  }
}

TEST(ReadWholeFile, GivesEveryByte) {
  desktop::Desktop d;
  std::string bytes;
  for (int i = 0; i < 100'000; ++i) bytes += static_cast<char>(i);
  d.File(kRoot + "\xe6\xb8\xb8.bin", bytes);
  std::string contents = "old";
  EXPECT_TRUE(ReadWholeFile(Utf8ToWide(kRoot) + L"\u6e38.bin", contents));
  EXPECT_EQ(contents, bytes);
}

TEST(ReadWholeFile, EmptyMissingAndFoldersFail) {
  desktop::Desktop d;
  d.File(kRoot + "empty", "");
  for (const wchar_t* name : {L"empty", L"missing", L""}) {
    std::string contents = "old";
    EXPECT_FALSE(ReadWholeFile(Utf8ToWide(kRoot) + name, contents));
    EXPECT_EQ(contents, "");
  }
}

TEST(ReadWholeFile, TwoGibibytesFailBeforeAnyMemoryIsTaken) {
  desktop::Desktop d;
  d.SparseFile(kRoot + "huge", 3ULL << 30);
  std::string contents;
  EXPECT_FALSE(ReadWholeFile(Utf8ToWide(kRoot) + L"huge", contents));
}

}  // namespace
}  // namespace tarnwick
