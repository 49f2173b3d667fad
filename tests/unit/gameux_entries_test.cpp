#include "matching/gameux_entries.h"

#include "desktop/desktop.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

const std::string kRoot = "C:\\TarnwickTest\\GameUxEntries\\";

class GameUxEntriesTest : public testing::Test {
 protected:
  desktop::Desktop desktop_;
};

TEST_F(GameUxEntriesTest, AnExecutableExistsAndHoldsItsExtensionInAnyCase) {
  desktop_.File(kRoot + "Foo.ExE");
  EXPECT_TRUE(IsGameUxExecutable(kRoot + "Foo.ExE"));
  EXPECT_FALSE(IsGameUxExecutable(kRoot + "Missing.exe"));
  EXPECT_FALSE(IsGameUxExecutable(""));
  desktop_.File(kRoot + "Foo.dll");
  EXPECT_FALSE(IsGameUxExecutable(kRoot + "Foo.dll"));
}

TEST_F(GameUxEntriesTest, TheExtensionMayStandInAFolderName) {
  desktop_.File(kRoot + "Foo.exe.d\\game.dat");
  EXPECT_TRUE(IsGameUxExecutable(kRoot + "Foo.exe.d\\game.dat"));
}

TEST_F(GameUxEntriesTest, AFolderIsNoExecutable) {
  desktop_.Folder(kRoot + "Folder.exe");
  EXPECT_FALSE(IsGameUxExecutable(kRoot + "Folder.exe"));
}

TEST_F(GameUxEntriesTest, TheFirstPathThatPassesIsTheExecutable) {
  GameUxEntry entry;
  entry.appExePath = kRoot + "a.exe";
  entry.configGdfBinaryPath = kRoot + "b.exe";
  EXPECT_EQ(FindGameUxExecutable(entry), "");
  desktop_.File(kRoot + "b.exe");
  EXPECT_EQ(FindGameUxExecutable(entry), kRoot + "b.exe");
  desktop_.File(kRoot + "a.exe");
  EXPECT_EQ(FindGameUxExecutable(entry), kRoot + "a.exe");
}

}  // namespace
}  // namespace tarnwick
