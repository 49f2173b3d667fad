#include "foundation/machine/path_rules.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(ContainsNoCase, FindsAnyWordInAnyCase) {
  EXPECT_TRUE(ContainsNoCase(L"C:\\UnInsTaLL.exe", {L"x.y", L"uninstall"}));
  EXPECT_TRUE(ContainsNoCase(L"a\u5378\u8f7db", {L"\u5378\u8f7d"}));
  EXPECT_FALSE(ContainsNoCase(L"game.exe", {L"unins", L"setup"}));
  EXPECT_FALSE(ContainsNoCase(L"", {L"a"}));
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

TEST(ExtensionOf, GoesFromTheNamesLastDotOn) {
  EXPECT_EQ(ExtensionOf(L"a.b.item"), L".item");
  EXPECT_EQ(ExtensionOf(L"C:\\a.b\\c"), L"");
  EXPECT_EQ(ExtensionOf(L".item"), L"");
  EXPECT_EQ(ExtensionOf(L"a."), L".");
  EXPECT_EQ(ExtensionOf(L""), L"");
}

TEST(PathParts, AreTakenOffAndPutOn) {
  EXPECT_EQ(WithoutLastPart("C:\\A\\Data", "Data"), "C:\\A");
  EXPECT_EQ(WithoutLastPart("C:\\A\\Data\\", "Data"), "C:\\A\\Data\\");
  EXPECT_EQ(WithoutLastPart("C:\\A\\data", "Data"), "C:\\A\\data");
  EXPECT_EQ(JoinParts("C:\\\xC3\xA9", {"b", "c.txt"}), "C:\\\xC3\xA9\\b\\c.txt");
  EXPECT_EQ(JoinParts("C:\\A\\", {"b"}), "C:\\A\\b");
  EXPECT_EQ(JoinParts("", {"b"}), "b");
}

TEST(CombineByShell, IsEmptyWhereTheJoinFails) {
  EXPECT_EQ(CombineByShell(L"C:\\A", L"b"), L"C:\\A\\b");
  EXPECT_EQ(CombineByShell(L"C:\\A", std::wstring(300, L'x')), L"");
}

}  // namespace
}  // namespace tarnwick
