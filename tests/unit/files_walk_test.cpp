#include "foundation/files.h"

#include "desktop/desktop.h"
#include "foundation/log.h"
#include "support/debug_capture.h"
#include "support/locked_path.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const std::string kRoot = R"(C:\TarnwickTest\Files)";

std::vector<std::string> Walk(const std::string& folder, bool recursive) {
  std::vector<std::string> files;
  ForEachFile(PathFromUtf8(folder), recursive,
              [&](const std::filesystem::path& path) { files.push_back(PathToUtf8(path)); });
  return files;
}

TEST(FilesWalk, VisitsTheFilesOfAFolderOrOfAllBelow) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "\\a");
  desktop.File(kRoot + "\\б\\в\\游戏");
  EXPECT_THAT(Walk(kRoot, false), ElementsAre(kRoot + "\\a"));
  EXPECT_THAT(Walk(kRoot, true), UnorderedElementsAre(kRoot + "\\a", kRoot + "\\б\\в\\游戏"));
  EXPECT_THROW(Walk(kRoot + "\\nowhere", true), std::filesystem::filesystem_error);
}

TEST(FilesWalk, KeepsOutOfJunctions) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "\\sub\\a");
  desktop.Junction(kRoot + "\\sub\\loop", kRoot);
  EXPECT_THAT(Walk(kRoot, true), ElementsAre(kRoot + "\\sub\\a"));
}

TEST(FilesWalk, ThrowsAtAFolderThatCannotBeListed) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "\\sub\\a");
  const tests::LockedPath lock(kRoot + "\\sub");
  EXPECT_THROW(Walk(kRoot, true), std::filesystem::filesystem_error);
  EXPECT_THAT(Walk(kRoot, false), IsEmpty()) << "a walk that doesn't enter it doesn't care";
}

TEST(FilesStatus, TellsFoldersFilesAndNothingApart) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "\\файл");
  EXPECT_TRUE(ExistsOrThrow(kRoot + "\\файл"));
  EXPECT_FALSE(IsDirectoryOrThrow(kRoot + "\\файл"));
  EXPECT_TRUE(ExistsOrThrow(kRoot));
  EXPECT_TRUE(IsDirectoryOrThrow(kRoot + "\\"));
  for (const std::string& path : {std::string(), kRoot + "\\no", kRoot + "\\no\\no", kRoot + "\\файл\\below",
                                  kRoot + "\\a<b", kRoot + "\\a\"b", kRoot + "\\*", std::string("Q:\\x")}) {
    EXPECT_FALSE(ExistsOrThrow(path)) << path;
    EXPECT_FALSE(IsDirectoryOrThrow(path)) << path;
  }
}

TEST(FilesStatus, PicksTheFirstFileThatExists) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "\\a");
  desktop.File(kRoot + "\\b");
  EXPECT_EQ(FirstExistingFile({"", kRoot + "\\no", kRoot, kRoot + "\\b", kRoot + "\\a"}), kRoot + "\\b");
  EXPECT_EQ(FirstExistingFile({kRoot}), "");
  EXPECT_EQ(FirstExistingFile({}), "");
}

TEST(FilesStatus, AnyOtherErrorThrows) {
  EXPECT_THROW(ExistsOrThrow(tests::kUnaskablePath), std::filesystem::filesystem_error);
  EXPECT_THROW(IsDirectoryOrThrow(tests::kUnaskablePath), std::filesystem::filesystem_error);
}

TEST(FilesStatus, FollowsAJunction) {
  desktop::Desktop desktop;
  desktop.Folder(kRoot + "\\target");
  desktop.Junction(kRoot + "\\link", kRoot + "\\target");
  EXPECT_TRUE(IsDirectoryOrThrow(kRoot + "\\link"));
}

TEST(FilesStatus, GivesTheTimeOfTheLastWrite) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "\\a");
  desktop.ModifiedTime(kRoot + "\\a", 1'000'000'000);
  const uint64_t earlier = LastWriteTime(PathFromUtf8(kRoot + "\\a"));
  desktop.ModifiedTime(kRoot + "\\a", 1'000'000'001);
  EXPECT_EQ(LastWriteTime(PathFromUtf8(kRoot + "\\a")), earlier + 10'000'000);
  EXPECT_THROW(LastWriteTime(PathFromUtf8(kRoot + "\\nothing")), std::filesystem::filesystem_error);
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
