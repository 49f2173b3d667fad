#include "foundation/machine/known_folders.h"

#include "foundation/machine/paths.h"
#include "foundation/windows_api.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(KnownFolderPath, IsAWholePath) {
  const std::string folder = KnownFolderPath(KnownFolder::kProgramFiles);
  EXPECT_TRUE(DirectoryExists(folder)) << folder;
  EXPECT_EQ(folder.substr(1), ":\\Program Files");
}

TEST(KnownFolderPath, IsEmptyForAFolderThatTheShellDoesNotKnow) {
  EXPECT_EQ(KnownFolderPath(static_cast<KnownFolder>(0x7F)), "");
}

TEST(EnvironmentText, NeedsRoomForItsZero) {
  SetEnvironmentVariableA("TARNWICK_TEXT", "abc");
  EXPECT_EQ(EnvironmentText("TARNWICK_TEXT", 4), "abc");
  EXPECT_EQ(EnvironmentText("TARNWICK_TEXT", 3), "");
  SetEnvironmentVariableA("TARNWICK_TEXT", nullptr);
  EXPECT_EQ(EnvironmentText("TARNWICK_TEXT", 4), "");
}

TEST(Drives, TheSystemsIsFixed) {
  EXPECT_NE(LogicalDrives() & 4, 0u);
  EXPECT_TRUE(IsFixedDrive("C:\\"));
  EXPECT_FALSE(IsFixedDrive("Q:\\"));
}

TEST(ExpandVariables, KeepsTheTextWhereTheResultHasNoRoom) {
  SetEnvironmentVariableW(L"TARNWICK_TEXT", std::wstring(100, L'x').c_str());
  EXPECT_EQ(ExpandVariables(L"%TARNWICK_TEXT%", 101), std::wstring(100, L'x'));
  EXPECT_EQ(ExpandVariables(L"%TARNWICK_TEXT%", 100), L"%TARNWICK_TEXT%");
  EXPECT_EQ(ExpandVariables(L"%TARNWICK_TEXT%y", 260), std::wstring(100, L'x') + L"y");
  EXPECT_EQ(ExpandVariables(L"plain", 260), L"plain");
  EXPECT_EQ(ExpandVariables(L"", 260), L"");
  SetEnvironmentVariableW(L"TARNWICK_TEXT", nullptr);
}

}  // namespace
}  // namespace tarnwick
