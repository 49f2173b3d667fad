#include "foundation/machine/folders.h"

#include "desktop/desktop.h"
#include "foundation/conversions.h"
#include "support/locked_path.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const std::string kRoot = R"(C:\TarnwickTest\Files)";

std::vector<std::string> Paths(const FolderListing& listing) {
  std::vector<std::string> paths;
  ForEach(listing, [&](const FolderEntry& entry) { paths.push_back(WideToUtf8(entry.path)); });
  return paths;
}

std::vector<std::string> Walk(const std::string& folder, bool deep) {
  return Paths(deep ? WalkFilesDeep(folder, nullptr) : WalkFiles(folder, nullptr));
}

std::string WhatOf(const FolderListing& listing) {
  try {
    ForEach(listing, [](const FolderEntry&) {});
  } catch (const std::filesystem::filesystem_error& error) {
    return error.what();
  }
  return {};
}

TEST(FolderWalk, VisitsTheFilesOfAFolderOrOfAllBelow) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "\\a");
  desktop.File(kRoot + "\\б\\в\\游戏");
  EXPECT_THAT(Walk(kRoot, false), ElementsAre(kRoot + "\\a"));
  EXPECT_THAT(Walk(kRoot, true), UnorderedElementsAre(kRoot + "\\a", kRoot + "\\б\\в\\游戏"));
  EXPECT_THROW(Walk(kRoot + "\\nowhere", true), std::filesystem::filesystem_error);
}

TEST(FolderWalk, KeepsOutOfJunctions) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "\\sub\\a");
  desktop.Junction(kRoot + "\\sub\\loop", kRoot);
  EXPECT_THAT(Walk(kRoot, true), ElementsAre(kRoot + "\\sub\\a"));
}

TEST(FolderWalk, ThrowsAtAFolderThatCannotBeListed) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "\\sub\\a");
  const tests::LockedPath lock(kRoot + "\\sub");
  EXPECT_THROW(Walk(kRoot, true), std::filesystem::filesystem_error);
  EXPECT_THAT(Walk(kRoot, false), IsEmpty()) << "a walk that doesn't enter it doesn't care";
}

TEST(FolderLists, TellFilesFromFolders) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "\\a.txt");
  desktop.File(kRoot + "\\b.yaml");
  desktop.File(kRoot + "\\sub.yaml\\c.yaml");
  const auto isYaml = [](std::wstring_view name) { return name.ends_with(L".yaml"); };
  EXPECT_THAT(Paths(ListFiles(kRoot, nullptr)), UnorderedElementsAre(kRoot + "\\a.txt", kRoot + "\\b.yaml"));
  EXPECT_THAT(Paths(ListFiles(kRoot, isYaml)), ElementsAre(kRoot + "\\b.yaml"));
  EXPECT_THAT(Paths(WalkFilesDeep(kRoot, isYaml)),
              UnorderedElementsAre(kRoot + "\\b.yaml", kRoot + "\\sub.yaml\\c.yaml"));
  EXPECT_THAT(Paths(ListFolders(kRoot)), ElementsAre(kRoot + "\\sub.yaml"));
  EXPECT_THAT(Paths(ListFoldersIfOpen(kRoot)), ElementsAre(kRoot + "\\sub.yaml"));
}

// The texts reach the log.
TEST(FolderLists, SayHowAFolderWasToBeListed) {
  const std::string missing = kRoot + "\\missing";
  EXPECT_THAT(WhatOf(ListFiles(missing, nullptr)),
              testing::StartsWith("filesystem error: directory iterator cannot open directory: "));
  EXPECT_THAT(WhatOf(ListFolders(missing)),
              testing::StartsWith("filesystem error: directory iterator cannot open directory: "));
  EXPECT_THAT(WhatOf(WalkFiles(missing, nullptr)),
              testing::StartsWith("filesystem error: recursive directory iterator cannot open directory: "));
  EXPECT_EQ(WhatOf(ListFoldersIfOpen(missing)), "");
}

TEST(FolderLists, WhatWasListedBeforeAFailureIsVisited) {
  desktop::Desktop desktop;
  desktop.File(kRoot + "\\a");
  desktop.File(kRoot + "\\sub\\b");
  const tests::LockedPath lock(kRoot + "\\sub");
  std::vector<std::wstring> visited;
  const FolderListing listing = WalkFilesDeep(kRoot, nullptr);
  EXPECT_THROW(ForEach(listing, [&](const FolderEntry& entry) { visited.push_back(entry.name); }),
               std::filesystem::filesystem_error);
  EXPECT_THAT(visited, ElementsAre(L"a"));
}

}  // namespace
}  // namespace tarnwick
