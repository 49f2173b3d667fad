// Questions become places: one for each thing, whatever its spelling, its view or the way it was asked.
#include "host/capture/asked_places.h"

#include "host/capture/system_places.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using namespace host;
using testing::ElementsAre;

AskedPlaces PlacesOf(const std::vector<Heard>& heard) {
  AskedPlaces places;
  AddPlaces(places, heard);
  return places;
}

Heard About(QuestionKind kind, const std::string& subject, const std::string& detail = {},
            RegistryView view = RegistryView::kNative, const Answer& answer = {true, {}}) {
  return {{kind, subject, detail, view, {}}, answer};
}

constexpr char kKey[] = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Nest)";

TEST(HostAskedPlaces, HasAKeyOfTheOtherViewOnceUnderBothItsNames) {
  const AskedPlaces places = PlacesOf(
      {About(QuestionKind::kReadValue, R"(HKEY_LOCAL_MACHINE\Software\WOW6432Node\Nest)", "A"),
       About(QuestionKind::kReadValue, kKey, "B", RegistryView::k32),
       About(QuestionKind::kOpenKey, kKey, "", RegistryView::k64), About(QuestionKind::kOpenKey, kKey)});
  ASSERT_EQ(places.keys.size(), 2u);
  const auto& [narrow, asked] = *places.keys.rbegin();
  EXPECT_EQ(narrow.view, RegistryView::k32);
  EXPECT_EQ(narrow.subkey, L"SOFTWARE\\Nest");
  EXPECT_THAT(asked.values, ElementsAre(L"A", L"B"));
  EXPECT_EQ(places.keys.begin()->first.view, RegistryView::k64);
}

TEST(HostAskedPlaces, HasNoViewsOutsideOfTheMachinesSoftware) {
  const AskedPlaces places =
      PlacesOf({About(QuestionKind::kOpenKey, R"(HKEY_CURRENT_USER\Software\Nest)", "", RegistryView::k64),
                About(QuestionKind::kOpenKey, R"(HKEY_CURRENT_USER\software\nest\)", "", RegistryView::k32)});
  ASSERT_EQ(places.keys.size(), 1u);
  EXPECT_EQ(places.keys.begin()->first.view, RegistryView::kNative);
}

TEST(HostAskedPlaces, HasAPathOnceWithAllThatWasAskedOfIt) {
  const AskedPlaces places = PlacesOf({About(QuestionKind::kAttributes, R"(c:\nest\..\Nest\a.txt)"),
                                       About(QuestionKind::kReadTextFile, "C:/NEST/a.txt"),
                                       About(QuestionKind::kWriteTime, R"(C:\nest\\A.TXT)")});
  ASSERT_EQ(places.paths.size(), 1u);
  EXPECT_TRUE(places.paths.begin()->second.read);
  EXPECT_TRUE(places.paths.begin()->second.writeTime);
  EXPECT_FALSE(places.paths.begin()->second.listed);
}

TEST(HostAskedPlaces, HasWhatAListOfAFolderTold) {
  const AskedPlaces places = PlacesOf(
      {About(QuestionKind::kListFolder, R"(C:\a)", "files", {}, {true, "C:\\a\\x.txt\n"}),
       About(QuestionKind::kListFolder, R"(C:\b)", "icon search", {}, {true, "y.exe\t12\nsub\tfolder\n"}),
       About(QuestionKind::kListFolder, R"(C:\c)", "files", {}, {false, "cannot open directory [C:\\c]"})});
  std::vector<std::wstring> paths;
  for (const auto& [lower, path] : places.paths) paths.push_back(path.path);
  EXPECT_THAT(paths,
              ElementsAre(L"C:\\a", L"C:\\a\\x.txt", L"C:\\b", L"C:\\b\\sub", L"C:\\b\\y.exe", L"C:\\c"));
  EXPECT_FALSE(places.paths.at(L"c:\\a").refused);
  EXPECT_TRUE(places.paths.at(L"c:\\c").refused);
}

TEST(HostAskedPlaces, PassesOverWhatIsNoPathOnADrive) {
  for (const std::string text :
       {"", "x.exe", R"(\\server\share\x)", R"(\\.\C:\x)", "the generic application", "C:x"})
    EXPECT_TRUE(PlacesOf({About(QuestionKind::kAttributes, text)}).paths.empty()) << text;
  EXPECT_EQ(FullDrivePath(L"C:\\x\\con\\..\\"), L"C:\\x");
}

TEST(HostAskedPlaces, ReadsBytesOfNarrowCallsBothWays) {
  EXPECT_THAT(Readings("Nest"), ElementsAre(L"Nest"));
  EXPECT_EQ(Readings("\u00c9").size(), 2u);
  EXPECT_EQ(Readings("\xC9").size(), 1u);
  const AskedPlaces places = PlacesOf({About(QuestionKind::kAttributes, "C:\\\u00c9")});
  size_t meant = 0;
  for (const auto& [lower, path] : places.paths) meant += path.meant ? 1 : 0;
  EXPECT_EQ(meant, 1u);
}

TEST(HostAskedPlaces, HasTheVariablesOfTexts) {
  const AskedPlaces places = PlacesOf(
      {About(QuestionKind::kExpandText, "%UserProfile%\\x\\%ProgramFiles(x86)%"),
       About(QuestionKind::kEnvironment, "SystemDrive"), About(QuestionKind::kExpandText, "100% of\\ x%")});
  EXPECT_THAT(places.variables, ElementsAre("PROGRAMFILES(X86)", "SYSTEMDRIVE", "USERPROFILE"));
}

TEST(HostSystemPlaces, KnowWhatIsWindowsOwn) {
  const auto isSystem = [](const wchar_t* text) {
    return IsSystemKey(*PlaceOfKey(text, RegistryView::kNative));
  };
  EXPECT_TRUE(isSystem(LR"(HKEY_LOCAL_MACHINE\SYSTEM\Setup)"));
  EXPECT_TRUE(isSystem(LR"(HKEY_CLASSES_ROOT\.exe)"));
  EXPECT_TRUE(isSystem(LR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Cryptography)"));
  EXPECT_FALSE(
      isSystem(LR"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\Microsoft\Windows\CurrentVersion\Uninstall\x)"));
  EXPECT_FALSE(isSystem(LR"(HKEY_CURRENT_USER\Software\Nest)"));
  EXPECT_TRUE(IsSystemPath(L"c:\\windows\\system32\\x.exe"));
  EXPECT_FALSE(IsSystemPath(L"c:\\windows\\installer\\{1}\\x.ico"));
  EXPECT_FALSE(IsSystemPath(L"c:\\windows games\\x.exe"));
}

}  // namespace
}  // namespace tarnwick
