#include "inventory/shell_text.h"

#include "desktop/desktop.h"
#include "foundation/windows_api.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(ContainsNoCase, FindsAnyWordInAnyCase) {
  EXPECT_TRUE(ContainsNoCase(L"C:\\UnInsTaLL.exe", {L"x.y", L"uninstall"}));
  EXPECT_TRUE(ContainsNoCase(L"a\u5378\u8f7db", {L"\u5378\u8f7d"}));
  EXPECT_FALSE(ContainsNoCase(L"game.exe", {L"unins", L"setup"}));
  EXPECT_FALSE(ContainsNoCase(L"", {L"a"}));
}

TEST(UnquotedHead, TakesOffQuotesThatAreClosed) {
  EXPECT_EQ(UnquotedHead(L"\"C:\\A\" /x"), L"C:\\A");
  EXPECT_EQ(UnquotedHead(L"\"\""), L"");
  for (const wchar_t* text : {L"", L"\"", L"\"C:\\A", L"C:\\A\"", L" \"C:\\A\"", L"C:\\A"}) {
    EXPECT_EQ(UnquotedHead(text), text);
  }
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

TEST(PathTests, TellFilesFoldersAndNothingApart) {
  desktop::Desktop d;
  d.File("C:\\TarnwickTest\\Inventory\\Paths\\a.txt");
  EXPECT_TRUE(PathExists(L"C:\\TarnwickTest\\Inventory\\Paths\\a.txt"));
  EXPECT_TRUE(PathExists(L"C:\\TarnwickTest\\Inventory\\Paths"));
  EXPECT_FALSE(PathExists(L"C:\\TarnwickTest\\Inventory\\Paths\\b.txt"));
  EXPECT_FALSE(PathExists(L""));
  EXPECT_TRUE(IsDirectory(L"C:\\TarnwickTest\\Inventory\\Paths"));
  EXPECT_FALSE(IsDirectory(L"C:\\TarnwickTest\\Inventory\\Paths\\a.txt"));
  EXPECT_FALSE(IsDirectory(L""));
}

TEST(FileNameOf, IsTheLastPart) {
  EXPECT_EQ(FileNameOf(L"C:\\A\\a.exe"), L"a.exe");
  EXPECT_EQ(FileNameOf(L"C:/A/a.exe"), L"a.exe");
  EXPECT_EQ(FileNameOf(L"a.exe"), L"a.exe");
  EXPECT_EQ(FileNameOf(L""), L"");
}

TEST(FolderOf, CutsALongPathBeforeItsLastPart) {
  EXPECT_EQ(FolderOf(L"C:\\A\\a.exe", 260), L"C:\\A");
  EXPECT_EQ(FolderOf(L"a.exe", 260), L"");
  EXPECT_EQ(FolderOf(L"", 260), L"");
  const std::wstring folder = L"C:\\" + std::wstring(200, L'f');
  EXPECT_EQ(
      FolderOf(folder + L"\\" + std::wstring(40, L'g') + L"\\" + std::wstring(40, L'h') + L"\\a.exe", 260),
      folder + L"\\" + std::wstring(40, L'g'));
}

}  // namespace
}  // namespace tarnwick
