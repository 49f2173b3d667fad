#include "matching/registry.h"

#include "desktop/desktop.h"
#include "foundation/windows_api.h"
#include "support/odd_name.h"

#include <gmock/gmock.h>
#include <sddl.h>

#include <memory>

namespace tarnwick {
namespace {

using desktop::Desktop;
using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using tests::kOddName;
using namespace std::string_view_literals;

const std::string kKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickTest\\Registry";
const std::string kUserKey = "HKEY_CURRENT_USER\\SOFTWARE\\TarnwickTest\\Registry";

struct Parsed {
  bool known = false;
  RegistryRoot root = RegistryRoot::kLocalMachine;
  std::string subkey;
  bool operator==(const Parsed&) const = default;
};

Parsed Parse(const std::string& text) {
  Parsed parsed;
  parsed.known = ParseRegistryPath(text, parsed.root, parsed.subkey);
  return parsed;
}

GameSignature Named(const std::string& name) {
  GameSignature signature;
  signature.DisplayName = name;
  return signature;
}

std::string CurrentUserSid() {
  HANDLE token = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) return {};
  BYTE user[256];
  DWORD size = sizeof(user);
  LPSTR text = nullptr;
  std::string sid;
  if (GetTokenInformation(token, TokenUser, user, size, &size) &&
      ConvertSidToStringSidA(reinterpret_cast<TOKEN_USER*>(user)->User.Sid, &text)) {
    sid = text;
    LocalFree(text);
  }
  CloseHandle(token);
  return sid;
}

TEST(ParseRegistryPath, KnowsTheFourHives) {
  EXPECT_EQ(Parse("HKEY_LOCAL_MACHINE\\A\\B"), (Parsed{true, RegistryRoot::kLocalMachine, "A\\B"}));
  EXPECT_EQ(Parse("HKEY_CURRENT_USER\\A\\B"), (Parsed{true, RegistryRoot::kCurrentUser, "A\\B"}));
  EXPECT_EQ(Parse("HKEY_USERS\\A\\B"), (Parsed{true, RegistryRoot::kUsers, "A\\B"}));
  EXPECT_EQ(Parse("HKEY_CLASSES_ROOT\\A\\B"), (Parsed{true, RegistryRoot::kClassesRoot, "A\\B"}));
}

TEST(ParseRegistryPath, KnowsNoOtherNames) {
  for (const std::string text :
       {"", "HKLM\\SOFTWARE\\Foo", "HKCU\\A", "HKEY_LOCAL_MACHIN", "HKEY_CURRENT_CONFIG\\A",
        "hkey_local_machine\\A", " HKEY_USERS\\A", "\\HKEY_USERS\\A"}) {
    EXPECT_EQ(Parse(text), Parsed{}) << text;
  }
}

TEST(ParseRegistryPath, AHiveAloneHasAnEmptySubkey) {
  for (const auto& [hive, root] :
       std::map<std::string, RegistryRoot>{{"HKEY_LOCAL_MACHINE", RegistryRoot::kLocalMachine},
                                           {"HKEY_CURRENT_USER", RegistryRoot::kCurrentUser},
                                           {"HKEY_USERS", RegistryRoot::kUsers},
                                           {"HKEY_CLASSES_ROOT", RegistryRoot::kClassesRoot}}) {
    EXPECT_EQ(Parse(hive), (Parsed{true, root, ""})) << hive;
    EXPECT_EQ(Parse(hive + "\\"), (Parsed{true, root, ""})) << hive;
  }
}

TEST(ParseRegistryPath, TheMachinesHiveLosesTheCharacterBehindItsNameWhateverItIs) {
  EXPECT_EQ(Parse("HKEY_LOCAL_MACHINExA"), (Parsed{true, RegistryRoot::kLocalMachine, "A"}));
  EXPECT_EQ(Parse("HKEY_LOCAL_MACHINEx"), (Parsed{true, RegistryRoot::kLocalMachine, ""}));
  EXPECT_EQ(Parse("HKEY_LOCAL_MACHINEx\\A"), (Parsed{true, RegistryRoot::kLocalMachine, "A"}));
  EXPECT_EQ(Parse("HKEY_LOCAL_MACHINE\\\\A"), (Parsed{true, RegistryRoot::kLocalMachine, "A"}));
  EXPECT_EQ(Parse("HKEY_LOCAL_MACHINE\\\\\\A"), (Parsed{true, RegistryRoot::kLocalMachine, "\\A"}));
}

TEST(ParseRegistryPath, TheOtherHivesLoseABackslashOnly) {
  EXPECT_EQ(Parse("HKEY_CURRENT_USERxA"), (Parsed{true, RegistryRoot::kCurrentUser, "xA"}));
  EXPECT_EQ(Parse("HKEY_USERSx\\A"), (Parsed{true, RegistryRoot::kUsers, "x\\A"}));
  EXPECT_EQ(Parse("HKEY_CLASSES_ROOT\\\\A"), (Parsed{true, RegistryRoot::kClassesRoot, "\\A"}));
}

TEST(ReadRegistryString, ReadsTextsOfBothTypesUnexpanded) {
  Desktop desktop;
  desktop.String(kKey, "Plain", "C:\\Games\\" + kOddName);
  desktop.ExpandString(kKey, "Expandable", "%ProgramFiles%\\Foo");
  EXPECT_EQ(ReadRegistryString(kKey, "Plain", "-"), "C:\\Games\\" + kOddName);
  EXPECT_EQ(ReadRegistryString(kKey, "Expandable", "-"), "%ProgramFiles%\\Foo");
}

TEST(ReadRegistryString, ReadsKeysAndValuesOfAnyName) {
  Desktop desktop;
  desktop.String(kKey + "\\" + kOddName, kOddName, "x");
  EXPECT_EQ(ReadRegistryString(kKey + "\\" + kOddName, kOddName, "-"), "x");
}

TEST(ReadRegistryString, AnEmptyNameIsTheDefaultValue) {
  Desktop desktop;
  desktop.String(kKey, "", "default value");
  EXPECT_EQ(ReadRegistryString(kKey, "", "-"), "default value");
}

TEST(ReadRegistryString, GivesTheDefaultForWhatIsNotThere) {
  Desktop desktop;
  desktop.Key(kKey);
  EXPECT_EQ(ReadRegistryString("", "Plain", "-"), "-");
  EXPECT_EQ(ReadRegistryString("HKLM\\SOFTWARE\\TarnwickTest", "Plain", "-"), "-");
  EXPECT_EQ(ReadRegistryString(kKey + "\\Missing", "Plain", "-"), "-");
  EXPECT_EQ(ReadRegistryString(kKey, "Missing", "-"), "-");
}

TEST(ReadRegistryString, GivesTheDefaultForOtherTypes) {
  Desktop desktop;
  desktop.Dword(kKey, "Dword", 7);
  desktop.Qword(kKey, "Qword", 7);
  desktop.Binary(kKey, "Binary", "a\0b\0"sv);
  desktop.MultiString(kKey, "Multi", {"a", "b"});
  desktop.RawValue(kKey, "None", REG_NONE, "a\0b\0"sv);
  for (const std::string name : {"Dword", "Qword", "Binary", "Multi", "None"}) {
    EXPECT_EQ(ReadRegistryString(kKey, name, "-"), "-") << name;
  }
}

TEST(ReadRegistryString, AnEmptyValueIsAnEmptyText) {
  Desktop desktop;
  desktop.String(kKey, "Empty", "");
  desktop.RawValue(kKey, "NoBytes", REG_SZ, "");
  EXPECT_EQ(ReadRegistryString(kKey, "Empty", "-"), "");
  EXPECT_EQ(ReadRegistryString(kKey, "NoBytes", "-"), "");
}

TEST(ReadRegistryString, EndsAtTheFirstNulOrTheLastWholeUnit) {
  Desktop desktop;
  desktop.RawValue(kKey, "Inside", REG_SZ, "a\0\0\0b\0\0\0"sv);
  desktop.RawValue(kKey, "Unterminated", REG_SZ, "a\0b\0"sv);
  desktop.RawValue(kKey, "Odd", REG_SZ, "a\0b\0c"sv);
  EXPECT_EQ(ReadRegistryString(kKey, "Inside", "-"), "a");
  EXPECT_EQ(ReadRegistryString(kKey, "Unterminated", "-"), "ab");
  EXPECT_EQ(ReadRegistryString(kKey, "Odd", "-"), "ab");
}

TEST(ReadRegistryString, HasNoLimitOfLength) {
  Desktop desktop;
  desktop.String(kKey, "Long", std::string(50'000, 'x'));
  EXPECT_EQ(ReadRegistryString(kKey, "Long", "-"), std::string(50'000, 'x'));
}

TEST(ReadRegistryString, ReadsAKeyOfOneViewOnly) {
  Desktop desktop;
  desktop.String(kKey + "\\Only32", "Name", "in 32", View::k32);
  desktop.String(kKey + "\\Only64", "Name", "in 64", View::k64);
  EXPECT_EQ(ReadRegistryString(kKey + "\\Only32", "Name", "-"), "in 32");
  EXPECT_EQ(ReadRegistryString(kKey + "\\Only64", "Name", "-"), "in 64");
}

TEST(ReadRegistryString, PrefersTheNativeViewAndDoesNotLookForAMissingValueElsewhere) {
  Desktop desktop;
  desktop.String(kKey, "Both", "in 32", View::k32);
  desktop.String(kKey, "Both", "in 64", View::k64);
  desktop.String(kKey, "Only32", "in 32", View::k32);
  EXPECT_EQ(ReadRegistryString(kKey, "Both", "-"), sizeof(void*) == 8 ? "in 64" : "in 32");
  EXPECT_EQ(ReadRegistryString(kKey, "Only32", "-"), sizeof(void*) == 8 ? "-" : "in 32");
}

TEST(ReadRegistryString, ReadsTheUsersHive) {
  Desktop desktop;
  desktop.String(kUserKey, "Name", "of the user");
  EXPECT_EQ(ReadRegistryString(kUserKey, "Name", "-"), "of the user");
}

// Classes are the one place where the views differ for another hive than the machine's.
TEST(ReadRegistryString, TriesNoOtherViewForTheOtherHives) {
  if (sizeof(void*) != 8) GTEST_SKIP() << "the native view is the 32-bit one";
  Desktop desktop;
  const std::string subkey = "CLSID\\{7A9C1F40-0000-4000-8000-7461726E7769}";
  desktop.String("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\" + subkey, "Name", "x", View::k32);
  EXPECT_EQ(ReadRegistryString("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\" + subkey, "Name", "-"), "x");
  EXPECT_EQ(ReadRegistryString("HKEY_CLASSES_ROOT\\" + subkey, "Name", "-"), "-");
}

TEST(ReadRegistryDword, ReadsNumbersOfItsTypeOnly) {
  Desktop desktop;
  desktop.Dword(kKey, "Number", 0xFEDCBA98);
  desktop.String(kKey, "Text", "7");
  desktop.Qword(kKey, "Qword", 7);
  desktop.Binary(kKey, "Binary", "\7\0\0\0"sv);
  EXPECT_EQ(ReadRegistryDword(kKey, "Number"), 0xFEDCBA98u);
  for (const std::string name : {"Text", "Qword", "Binary", "Missing"}) {
    EXPECT_EQ(ReadRegistryDword(kKey, name), 0u) << name;
  }
  EXPECT_EQ(ReadRegistryDword("", "Number"), 0u);
  EXPECT_EQ(ReadRegistryDword(kKey + "\\Missing", "Number"), 0u);
}

TEST(ReadRegistryDword, ReadsAKeyOfTheOtherView) {
  Desktop desktop;
  desktop.Dword(kKey + "\\Only32", "Number", 32, View::k32);
  desktop.Dword(kKey + "\\Only64", "Number", 64, View::k64);
  EXPECT_EQ(ReadRegistryDword(kKey + "\\Only32", "Number"), 32u);
  EXPECT_EQ(ReadRegistryDword(kKey + "\\Only64", "Number"), 64u);
}

TEST(EnumRegistrySubKeys, ListsOneViewAlone) {
  Desktop desktop;
  desktop.Key(kKey + "\\Alpha", View::k32);
  desktop.Key(kKey + "\\Beta\\Deeper", View::k32);
  desktop.Key(kKey + "\\Gamma", View::k64);
  EXPECT_THAT(EnumRegistrySubKeys(kKey, RegistryView::k32), ElementsAre("Alpha", "Beta"));
  EXPECT_THAT(EnumRegistrySubKeys(kKey, RegistryView::k64), ElementsAre("Gamma"));
}

TEST(EnumRegistrySubKeys, DoesNotFallBackOnTheOtherView) {
  Desktop desktop;
  desktop.Key(kKey + "\\Only64\\A", View::k64);
  EXPECT_THAT(EnumRegistrySubKeys(kKey + "\\Only64", RegistryView::k32), IsEmpty());
}

TEST(EnumRegistrySubKeys, ListsLongAndForeignNames) {
  Desktop desktop;
  const std::string longest(255, 'x');
  desktop.Key(kUserKey + "\\" + longest);
  desktop.Key(kUserKey + "\\" + kOddName);
  EXPECT_THAT(EnumRegistrySubKeys(kUserKey, RegistryView::k32),
              testing::UnorderedElementsAre(longest, kOddName));
}

TEST(EnumRegistrySubKeys, AMissingKeyHasNone) {
  EXPECT_THAT(EnumRegistrySubKeys("", RegistryView::k32), IsEmpty());
  EXPECT_THAT(EnumRegistrySubKeys("HKLM\\SOFTWARE", RegistryView::k32), IsEmpty());
  EXPECT_THAT(EnumRegistrySubKeys(kKey + "\\Missing", RegistryView::k64), IsEmpty());
}

TEST(EnumRegistryValues, HoldsTextsByNameAndEmptyTextsForOtherTypes) {
  Desktop desktop;
  desktop.String(kKey, "b", "text", View::k32);
  desktop.ExpandString(kKey, "a", "%TEMP%", View::k32);
  desktop.Dword(kKey, "c", 7, View::k32);
  desktop.MultiString(kKey, "d", {"x"}, View::k32);
  desktop.Binary(kKey, "e", "xyz", View::k32);
  desktop.String(kKey, kOddName, kOddName, View::k32);
  desktop.String(kKey, "", "default", View::k32);
  desktop.String(kKey, "other view", "x", View::k64);
  EXPECT_THAT(EnumRegistryValues(kKey, RegistryView::k32),
              ElementsAre(Pair("", "default"), Pair("a", "%TEMP%"), Pair("b", "text"), Pair("c", ""),
                          Pair(kOddName, kOddName), Pair("d", ""), Pair("e", "")));
  EXPECT_THAT(EnumRegistryValues(kKey, RegistryView::k64), ElementsAre(Pair("other view", "x")));
}

TEST(EnumRegistryValues, DecodesUnterminatedEmptyAndOddTexts) {
  Desktop desktop;
  desktop.RawValue(kKey, "1 long before", REG_SZ, "x\0y\0z\0"sv, View::k32);
  desktop.RawValue(kKey, "2 none", REG_SZ, "", View::k32);
  desktop.RawValue(kKey, "3 odd", REG_SZ, "a\0b"sv, View::k32);
  EXPECT_THAT(EnumRegistryValues(kKey, RegistryView::k32),
              ElementsAre(Pair("1 long before", "xyz"), Pair("2 none", ""), Pair("3 odd", "a")));
}

TEST(EnumRegistryValues, TakesAValueThatJustFitsItsBuffer) {
  Desktop desktop;
  std::string units;
  for (int i = 0; i < 2049; ++i) units += "x\0"sv;
  // The system looks one unit behind an unterminated text, and takes a zero that stands there with it.
  desktop.RawValue(kKey, "Full", REG_SZ, std::string_view(units).substr(0, 4096), View::k32);
  EXPECT_THAT(EnumRegistryValues(kKey, RegistryView::k32), ElementsAre(Pair("Full", std::string(2048, 'x'))));
}

TEST(EnumRegistryValues, EndsAtAValueLongerThanItsBuffer) {
  Desktop desktop;
  desktop.String(kKey, "1", "before", View::k32);
  desktop.Binary(kKey, "2", std::string(4097, 'x'), View::k32);
  desktop.String(kKey, "3", "behind", View::k32);
  EXPECT_THAT(EnumRegistryValues(kKey, RegistryView::k32), ElementsAre(Pair("1", "before")));
}

TEST(EnumRegistryValues, EndsAtANameLongerThanItsBuffer) {
  Desktop desktop;
  const std::string fits = "2" + std::string(510, 'x');
  desktop.String(kKey, "1", "before", View::k32);
  desktop.String(kKey, fits, "fits", View::k32);
  desktop.String(kKey, "3" + std::string(511, 'x'), "too long", View::k32);
  desktop.String(kKey, "4", "behind", View::k32);
  EXPECT_THAT(EnumRegistryValues(kKey, RegistryView::k32),
              ElementsAre(Pair("1", "before"), Pair(fits, "fits")));
}

TEST(EnumRegistryValues, AMissingKeyHasNone) {
  EXPECT_THAT(EnumRegistryValues("", RegistryView::k32), IsEmpty());
  EXPECT_THAT(EnumRegistryValues("HKLM\\SOFTWARE", RegistryView::k64), IsEmpty());
  EXPECT_THAT(EnumRegistryValues(kKey + "\\Missing", RegistryView::k32), IsEmpty());
}

TEST(ExpandUserHive, PutsTheUserInPlaceOfTheCurrentOne) {
  EXPECT_EQ(ExpandUserHive("HKEY_CURRENT_USER\\X", "S-1-5-21"), "HKEY_USERS\\S-1-5-21\\X");
  EXPECT_EQ(ExpandUserHive("HKEY_CURRENT_USER", "S-1-5-21"), "HKEY_USERS\\S-1-5-21");
}

TEST(ExpandUserHive, LeavesOtherTextsAlone) {
  EXPECT_EQ(ExpandUserHive("HKEY_CURRENT_USER\\X", ""), "HKEY_CURRENT_USER\\X");
  EXPECT_EQ(ExpandUserHive("HKEY_LOCAL_MACHINE\\HKEY_CURRENT_USER", "S-1"),
            "HKEY_LOCAL_MACHINE\\HKEY_CURRENT_USER");
  EXPECT_EQ(ExpandUserHive("HKEY_CURRENT_USE", "S-1"), "HKEY_CURRENT_USE");
  EXPECT_EQ(ExpandUserHive("", "S-1"), "");
}

TEST(ExpandUserHive, LeadsToTheSameKey) {
  Desktop desktop;
  desktop.String(kUserKey, "Name", "of the user");
  const std::string sid = CurrentUserSid();
  ASSERT_NE(sid, "");
  EXPECT_EQ(ReadRegistryString(ExpandUserHive(kUserKey, sid), "Name", "-"), "of the user");
}

TEST(FindInstallValueByDisplayName, LooksBelowAKeyThatEndsInABackslash) {
  Desktop desktop;
  desktop.String(kKey + "\\A", "DisplayName", "Other");
  desktop.String(kKey + "\\A", "InstallLocation", "C:\\Other");
  desktop.String(kKey + "\\B", "DisplayName", "Game");
  desktop.String(kKey + "\\B", "InstallLocation", "C:\\Game");
  desktop.String(kKey + "\\B", "Path", "C:\\Path");
  EXPECT_EQ(FindInstallValueByDisplayName(Named("Game"), kKey + "\\", ""), "C:\\Game");
  EXPECT_EQ(FindInstallValueByDisplayName(Named("Game"), kKey + "\\", "Path"), "C:\\Path");
}

TEST(FindInstallValueByDisplayName, LooksBesideAKeyThatDoesNot) {
  Desktop desktop;
  desktop.String(kKey + "\\Parent\\Game", "DisplayName", "Game");
  desktop.String(kKey + "\\Parent\\Game", "InstallLocation", "C:\\Below");
  EXPECT_EQ(FindInstallValueByDisplayName(Named("Game"), kKey + "\\Parent", ""), "");
  desktop.String(kKey + "\\Game", "DisplayName", "Game");
  desktop.String(kKey + "\\Game", "InstallLocation", "C:\\Beside");
  EXPECT_EQ(FindInstallValueByDisplayName(Named("Game"), kKey + "\\Parent", ""), "C:\\Beside");
}

TEST(FindInstallValueByDisplayName, ListsTheSubkeysOfAHive) {
  Desktop desktop;
  desktop.String("HKEY_CURRENT_USER\\TarnwickTestHive", "DisplayName", "Tarnwick hive game");
  desktop.String("HKEY_CURRENT_USER\\TarnwickTestHive", "InstallLocation", "C:\\Game");
  EXPECT_EQ(FindInstallValueByDisplayName(Named("Tarnwick hive game"), "HKEY_CURRENT_USER", ""), "C:\\Game");
}

TEST(FindInstallValueByDisplayName, ComparesNamesByteForByte) {
  Desktop desktop;
  desktop.String(kKey + "\\A", "DisplayName", kOddName);
  desktop.String(kKey + "\\A", "InstallLocation", "C:\\Game");
  EXPECT_EQ(FindInstallValueByDisplayName(Named(kOddName), kKey + "\\", ""), "C:\\Game");
  EXPECT_EQ(FindInstallValueByDisplayName(Named("C" + kOddName.substr(1)), kKey + "\\", ""), "");
  EXPECT_EQ(FindInstallValueByDisplayName(Named(kOddName + " "), kKey + "\\", ""), "");
}

TEST(FindInstallValueByDisplayName, TwoEmptyNamesAreEqual) {
  Desktop desktop;
  desktop.String(kKey + "\\Nameless", "InstallLocation", "C:\\Game");
  EXPECT_EQ(FindInstallValueByDisplayName(Named(""), kKey + "\\", ""), "C:\\Game");
}

TEST(FindInstallValueByDisplayName, TheFirstMatchDecidesEvenWithoutAValue) {
  Desktop desktop;
  desktop.String(kKey + "\\A", "DisplayName", "Game");
  desktop.String(kKey + "\\B", "DisplayName", "Game");
  desktop.String(kKey + "\\B", "InstallLocation", "C:\\Game");
  EXPECT_EQ(FindInstallValueByDisplayName(Named("Game"), kKey + "\\", ""), "");
}

TEST(FindInstallValueByDisplayName, ListsTheNativeViewOnly) {
  if (sizeof(void*) != 8) GTEST_SKIP() << "the native view is the 32-bit one";
  Desktop desktop;
  desktop.String(kKey + "\\Only32\\A", "DisplayName", "Game", View::k32);
  desktop.String(kKey + "\\Only32\\A", "InstallLocation", "C:\\Game", View::k32);
  EXPECT_EQ(FindInstallValueByDisplayName(Named("Game"), kKey + "\\Only32\\", ""), "");
}

// The names come from the ANSI form of the call and are then taken for UTF-8.
TEST(FindInstallValueByDisplayName, DoesNotFindSubkeysOfOtherThanAsciiNames) {
  if (GetACP() == CP_UTF8) GTEST_SKIP() << "the machine's code page is UTF-8";
  Desktop desktop;
  desktop.String(kKey + "\\caf\xC3\xA9", "DisplayName", "Game");
  desktop.String(kKey + "\\caf\xC3\xA9", "InstallLocation", "C:\\Game");
  EXPECT_EQ(FindInstallValueByDisplayName(Named("Game"), kKey + "\\", ""), "");
}

TEST(FindInstallValueByDisplayName, IsEmptyForAKeyThatCannotBeOpened) {
  EXPECT_EQ(FindInstallValueByDisplayName(Named("Game"), "", ""), "");
  EXPECT_EQ(FindInstallValueByDisplayName(Named("Game"), "HKLM\\SOFTWARE\\", ""), "");
  EXPECT_EQ(FindInstallValueByDisplayName(Named(""), kKey + "\\Missing\\", ""), "");
}

TEST(WidenBytes, WidensEachByteByItself) {
  const std::string bytes = "a\xFF\x80";
  EXPECT_EQ(WidenBytes(bytes.data(), bytes.data() + bytes.size()), L"a\x00FF\x0080");
  EXPECT_EQ(WidenBytes(bytes.data(), bytes.data()), L"");
}

}  // namespace
}  // namespace tarnwick
