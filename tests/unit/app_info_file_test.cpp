#include "steam/app_info_file.h"

#include "desktop/desktop.h"
#include "foundation/conversions.h"
#include "support/debug_capture.h"
#include "support/steam_bytes.h"

#include <gmock/gmock.h>

#include <filesystem>

#include <fstream>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::AppInfoBytes;
using tests::Le32;

const std::string kSteam = R"(C:\TarnwickTest\AppInfoFile\Пар 蒸)";
const std::string kFile = kSteam + R"(\appcache\appinfo.vdf)";

TEST(AppInfoFile, AFileOnDiskIsIndexedAndRead) {
  desktop::Desktop d;
  AppInfoBytes bytes;
  const std::string records =
      bytes.Record(10, bytes.App("a", "a.exe")) + bytes.Record(20, bytes.App("b", "b.exe"));
  d.File(kFile, bytes.File(records));
  SteamAppInfoReader reader;
  ASSERT_TRUE(LoadAppInfoIndex(reader, kSteam));
  EXPECT_EQ(reader.filePath, kFile);
  EXPECT_TRUE(reader.stream != nullptr);
  AppInfoDetails details;
  EXPECT_TRUE(ReadAppDetails(reader, 20, details));
  EXPECT_TRUE(ReadAppDetails(reader, 10, details));
  EXPECT_EQ(details.name, "a");
}

TEST(AppInfoFile, AMissingFileIsFalseAndLogsNothing) {
  desktop::Desktop d;
  const tests::DebugCapture log;
  SteamAppInfoReader reader;
  reader.index[1] = {};
  EXPECT_FALSE(LoadAppInfoIndex(reader, kSteam));
  EXPECT_THAT(reader.index, IsEmpty());
  d.Folder(kFile);
  EXPECT_FALSE(LoadAppInfoIndex(reader, kSteam)) << "a folder is no file";
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(AppInfoFile, AnEmptyFileIsTrueWithNothingInIt) {
  desktop::Desktop d;
  d.File(kFile, "");
  SteamAppInfoReader reader;
  EXPECT_TRUE(LoadAppInfoIndex(reader, kSteam));
  EXPECT_THAT(reader.index, IsEmpty());
}

TEST(AppInfoFile, AFileEndingWithoutTheEndMarkLoadsAndEveryReadFails) {
  desktop::Desktop d;
  AppInfoBytes bytes{40, {}};
  d.File(kFile, bytes.File(bytes.Record(10, bytes.App("a", "a.exe")), ""));
  SteamAppInfoReader reader;
  EXPECT_TRUE(LoadAppInfoIndex(reader, kSteam));
  EXPECT_THAT(reader.index, ElementsAre(testing::Key(10)));
  AppInfoDetails details;
  EXPECT_FALSE(ReadAppDetails(reader, 10, details));
}

TEST(AppInfoFile, AStringTableBeyondTheFileOrBeforeItLeavesAnEmptyIndex) {
  AppInfoBytes bytes;
  const std::string record = bytes.Record(10, bytes.App("a", "a.exe"));
  for (const uint64_t offset : {uint64_t{1} << 20, uint64_t{1} << 40, uint64_t{0x7FFFFFFFFFFFFFFF},
                                ~uint64_t{0}, uint64_t{1} << 63}) {
    desktop::Desktop d;
    d.File(kFile, Le32(41) + Le32(0) + tests::Le64(offset) + record + Le32(0));
    SteamAppInfoReader reader;
    EXPECT_TRUE(LoadAppInfoIndex(reader, kSteam)) << offset;
    EXPECT_THAT(reader.index, IsEmpty()) << offset;
  }
}

TEST(AppInfoFile, PlacesBeyondFourGigabytesAreReached) {
  desktop::Desktop d;
  AppInfoBytes bytes{40, {}};
  const uint32_t huge = 0xFFFFFFF0;
  const std::string tail = bytes.Record(20, bytes.App("far", "far.exe")) + Le32(0);
  const uint64_t tailPlace = 16 + uint64_t{huge};
  d.SparseFile(kFile, tailPlace + tail.size());
  {
    std::fstream file(std::filesystem::path(Utf8ToWide(kFile)),
                      std::ios::in | std::ios::out | std::ios::binary);
    file << Le32(40) << Le32(0) << Le32(10) << Le32(huge);
    file.seekp(static_cast<std::streamoff>(tailPlace));
    file << tail;
    ASSERT_TRUE(file.good());
  }
  SteamAppInfoReader reader;
  ASSERT_TRUE(LoadAppInfoIndex(reader, kSteam));
  EXPECT_THAT(reader.index, ElementsAre(testing::Key(10), testing::Key(20)));
  AppInfoDetails details;
  EXPECT_TRUE(ReadAppDetails(reader, 20, details));
  EXPECT_EQ(details.name, "far");
}

TEST(AppInfoFile, TheFileIsFreeWhenTheReaderIsGone) {
  desktop::Desktop d;
  AppInfoBytes bytes;
  d.File(kFile, bytes.File(""));
  {
    SteamAppInfoReader reader;
    ASSERT_TRUE(LoadAppInfoIndex(reader, kSteam));
  }
  EXPECT_TRUE(std::filesystem::remove(std::filesystem::path(Utf8ToWide(kFile))));
}

}  // namespace
}  // namespace tarnwick
