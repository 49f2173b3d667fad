#include "inventory/icons.h"

#include "common/heard_questions.h"
#include "desktop/desktop.h"
#include "foundation/conversions.h"
#include "inventory/icon_calls.h"
#include "support/icon_colour.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>
#include <shellapi.h>
#include <thread>

namespace tarnwick {
namespace {

using desktop::Desktop;
using desktop::ExecutableOptions;
using desktop::IconGroup;
using testing::ElementsAre;
using tests::ColourOf;
using tests::kNoIcon;
using tests::WidthOf;

constexpr uint32_t kRed = 0xCC2211;
constexpr uint32_t kGreen = 0x11AA33;
constexpr uint32_t kBlue = 0x2244DD;
constexpr uint64_t kMebibyte = 1024 * 1024;

const std::string kRoot = "C:\\TarnwickTest\\Inventory\\Icons\\";
const std::wstring kWideRoot = L"C:\\TarnwickTest\\Inventory\\Icons\\";

IconGroup Group(uint32_t rgb) { return {{{32, rgb}, {48, rgb}, {256, rgb}}}; }

ExecutableOptions Coloured(uint32_t rgb, uint64_t size = 0) {
  ExecutableOptions options;
  options.icons = {Group(rgb)};
  options.size = size;
  return options;
}

uint32_t ColourOfFolder(const std::wstring& folder) {
  return ColourOf(TryLoadIconFromInstallLocation(folder));
}

AppRecord Record(const std::wstring& displayIcon, const std::wstring& installLocation = {},
                 const std::wstring& uninstallString = {}) {
  AppRecord record;
  record.DisplayIcon = displayIcon;
  record.InstallLocation = installLocation;
  record.UninstallString = uninstallString;
  return record;
}

void ExpectReference(const std::wstring& text, const std::wstring& path, int32_t index) {
  const IconReference reference = ParseIconReference(text);
  EXPECT_EQ(reference.path, path) << WideToUtf8(text);
  EXPECT_EQ(reference.index, index) << WideToUtf8(text);
}

TEST(ParseIconReference, EveryOddShape) {
  ExpectReference(L"", L"", 0);
  ExpectReference(L"C:\\A\\a.exe", L"C:\\A\\a.exe", 0);
  ExpectReference(L"C:\\A\\a.exe,0", L"C:\\A\\a.exe", 0);
  ExpectReference(L"C:\\A\\a.exe,12", L"C:\\A\\a.exe", 12);
  ExpectReference(L"C:\\A\\a.exe,-101", L"C:\\A\\a.exe", -101);
  ExpectReference(L"C:\\A\\a.exe, 3", L"C:\\A\\a.exe", 3);
  ExpectReference(L"C:\\A\\a.exe,", L"C:\\A\\a.exe", 0);
  ExpectReference(L"C:\\A\\a.exe,x", L"C:\\A\\a.exe", 0);
  // Kept: the last comma counts, wherever it stands (docs/decisions/icon-lookups.md).
  ExpectReference(L"C:\\A,B\\a.exe", L"C:\\A", 0);
  ExpectReference(L"C:\\A,B\\a.exe,2", L"C:\\A,B\\a.exe", 2);
  ExpectReference(L",7", L"", 7);
  ExpectReference(L",", L"", 0);
  ExpectReference(L"\"C:\\A\\a.exe\"", L"C:\\A\\a.exe", 0);
  ExpectReference(L"\"C:\\A\\a.exe\",5", L"C:\\A\\a.exe", 5);
  ExpectReference(L"\"C:\\A\\a.exe\",-7", L"C:\\A\\a.exe", -7);
  ExpectReference(L"\"C:\\A\\a.exe\" ,5", L"C:\\A\\a.exe", 0);  // no comma right behind the quote
  ExpectReference(L"\"C:\\A,B\\a.exe\"", L"C:\\A,B\\a.exe", 0);
  ExpectReference(L"\"C:\\A\\a.exe\" /x", L"C:\\A\\a.exe", 0);
  ExpectReference(L"\"C:\\A\\a.exe", L"\"C:\\A\\a.exe", 0);
  ExpectReference(L"\"C:\\A\\a.exe,4", L"\"C:\\A\\a.exe", 4);
  ExpectReference(L"\"", L"\"", 0);
  ExpectReference(L"\"\"", L"", 0);
  ExpectReference(L"\"\",3", L"", 3);
}

TEST(ParseIconReference, VariablesAreExpandedUnlessSomethingFollowsTheClosingQuote) {
  SetEnvironmentVariableW(L"TARNWICK_ICONS", L"C:\\X");
  ExpectReference(L"%TARNWICK_ICONS%\\a.exe", L"C:\\X\\a.exe", 0);
  ExpectReference(L"%TARNWICK_ICONS%\\a.exe,3", L"C:\\X\\a.exe", 3);
  ExpectReference(L"\"%TARNWICK_ICONS%\\a.exe\"", L"C:\\X\\a.exe", 0);
  ExpectReference(L"\"%TARNWICK_ICONS%\\a.exe\",3", L"%TARNWICK_ICONS%\\a.exe", 3);
  ExpectReference(L"\"%TARNWICK_ICONS%\\a.exe\" ", L"%TARNWICK_ICONS%\\a.exe", 0);
  ExpectReference(L"%TARNWICK_NOT_SET%\\a.exe", L"%TARNWICK_NOT_SET%\\a.exe", 0);
  SetEnvironmentVariableW(L"TARNWICK_ICONS", nullptr);
}

TEST(ParseIconReference, AnExpansionThatDoesNotFitLeavesTheText) {
  SetEnvironmentVariableW(L"TARNWICK_ICONS", std::wstring(3000, L'x').c_str());
  ExpectReference(L"%TARNWICK_ICONS%", std::wstring(3000, L'x'), 0);
  ExpectReference(L"%TARNWICK_ICONS%%TARNWICK_ICONS%", L"%TARNWICK_ICONS%%TARNWICK_ICONS%", 0);
  SetEnvironmentVariableW(L"TARNWICK_ICONS", nullptr);
  ExpectReference(std::wstring(5000, L'y'), std::wstring(5000, L'y'), 0);
}

// --- The chain of sources, with Windows played by the test. ---

struct FakeCalls {
  std::vector<std::string> asked;
  std::string answering;  // the call that gives an icon
};
FakeCalls* g_fake = nullptr;

Icon Answer(const std::string& call) {
  g_fake->asked.push_back(call);
  return call == g_fake->answering ? Icon(CopyIcon(LoadIconW(nullptr, IDI_APPLICATION))) : Icon();
}

const IconCalls kFakeCalls = {
    [](const std::wstring&, int index, int size) {
      return Answer("private " + std::to_string(index) + " " + std::to_string(size));
    },
    [](const std::wstring&) { return Answer("list"); },
    [](const std::wstring&, int index) { return Answer("extract " + std::to_string(index)); },
    [](const std::wstring&) { return Answer("shell"); },
    [](const std::wstring&, int size) { return Answer("image " + std::to_string(size)); }};

class IconSources : public testing::Test {
 protected:
  IconSources() { g_fake = &fake; }
  ~IconSources() override { g_fake = nullptr; }

  std::vector<std::string> AskedFor(const std::wstring& path, int index, const std::string& answering = {}) {
    fake = {{}, answering};
    EXPECT_EQ(static_cast<bool>(LoadIconFromFile(path, index, kFakeCalls)), !answering.empty());
    return fake.asked;
  }

  FakeCalls fake;
};

TEST_F(IconSources, AreAskedInOrder) {
  EXPECT_THAT(AskedFor(L"C:\\none.exe", 3),
              ElementsAre("private 3 256", "private 3 128", "private 3 48", "list", "extract 3", "shell"));
}

TEST_F(IconSources, TheFirstThatAnswersIsTheLastAsked) {
  EXPECT_THAT(AskedFor(L"C:\\none.exe", 3, "private 3 256"), ElementsAre("private 3 256"));
  EXPECT_THAT(AskedFor(L"C:\\none.exe", 3, "private 3 48"),
              ElementsAre("private 3 256", "private 3 128", "private 3 48"));
  EXPECT_EQ(AskedFor(L"C:\\none.exe", 3, "list").size(), 4u);
  EXPECT_EQ(AskedFor(L"C:\\none.exe", 3, "extract 3").size(), 5u);
  EXPECT_EQ(AskedFor(L"C:\\none.exe", 3, "shell").size(), 6u);
}

TEST_F(IconSources, ANegativeIndexIsZeroForThePrivateCallAndUnchangedForTheOther) {
  EXPECT_THAT(AskedFor(L"C:\\none.exe", -101),
              ElementsAre("private 0 256", "private 0 128", "private 0 48", "list", "extract -101", "shell"));
}

TEST_F(IconSources, AnEmptyPathAsksNobody) { EXPECT_THAT(AskedFor(L"", 0), ElementsAre()); }

TEST_F(IconSources, AnIcoFileGoesItsOwnWayAndIgnoresTheIndex) {
  Desktop d;
  d.File(kRoot + "a.ICO");
  EXPECT_THAT(AskedFor(kWideRoot + L"a.ICO", 9), ElementsAre("image 256", "image 0", "image 32", "shell"));
  EXPECT_THAT(AskedFor(kWideRoot + L"a.ICO", 9, "image 0"), ElementsAre("image 256", "image 0"));
}

TEST_F(IconSources, IcoCountsAnywhereInThePath) {
  Desktop d;
  d.File(kRoot + "my.icons\\a.exe");
  EXPECT_THAT(AskedFor(kWideRoot + L"my.icons\\a.exe", 0),
              ElementsAre("image 256", "image 0", "image 32", "shell"));
}

TEST_F(IconSources, AMissingIcoFileAsksNobody) { EXPECT_THAT(AskedFor(L"C:\\none.ico", 0), ElementsAre()); }

// --- Real files. ---

class Icons : public testing::Test {
 protected:
  const ComScope com;
  Desktop d;
};

TEST_F(Icons, AnExecutableGivesItsLargestPictureUpTo256) {
  d.Executable(kRoot + "a.exe", Coloured(kRed));
  const Icon icon = LoadIconFromFile(kWideRoot + L"a.exe", 0);
  EXPECT_EQ(ColourOf(icon), kRed);
  EXPECT_EQ(WidthOf(icon), 256u);
}

TEST_F(Icons, TheIndexChoosesTheIcon) {
  ExecutableOptions options;
  options.icons = {Group(kRed), Group(kGreen), Group(kBlue)};
  d.Executable(kRoot + "a.exe", options);
  EXPECT_EQ(ColourOf(LoadIconFromFile(kWideRoot + L"a.exe", 0)), kRed);
  EXPECT_EQ(ColourOf(LoadIconFromFile(kWideRoot + L"a.exe", 1)), kGreen);
  EXPECT_EQ(ColourOf(LoadIconFromFile(kWideRoot + L"a.exe", 2)), kBlue);
  EXPECT_EQ(ColourOf(LoadIconFromFile(kWideRoot + L"a.exe", -2)), kRed);
}

TEST_F(Icons, AMissingFileHasNone) {
  EXPECT_FALSE(LoadIconFromFile(L"", 0));
  EXPECT_FALSE(LoadIcoFile(L""));
  EXPECT_FALSE(LoadIcoFile(kWideRoot + L"none.ico"));
}

TEST_F(Icons, AnIcoFileIsReadWhateverTheIndex) {
  d.IconFile(kRoot + "a.ico", Group(kGreen));
  for (const int32_t index : {0, 7, -3, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(ColourOf(LoadIconFromFile(kWideRoot + L"a.ico", index)), kGreen) << index;
  }
}

TEST_F(Icons, PathsInOtherLanguagesAndLongOnesWork) {
  d.Executable(kRoot + "\xd0\x98\xd0\xb3\xd1\x80\xd0\xb0\\\xe6\xb8\xb8\xe6\x88\x8f\xc3\xa9.exe",
               Coloured(kBlue));
  EXPECT_EQ(ColourOf(LoadIconFromFile(kWideRoot + L"\u0418\u0433\u0440\u0430\\\u6e38\u620f\u00e9.exe", 0)),
            kBlue);
  const std::string folder(200, 'f');
  d.Executable(kRoot + folder + "\\" + std::string(60, 'e') + ".exe", Coloured(kRed));
  const std::wstring path = kWideRoot + std::wstring(200, L'f') + L"\\" + std::wstring(60, L'e') + L".exe";
  ASSERT_GT(path.size(), 295u);
  // Whether a path of that length can be opened depends on the system's settings.
  EXPECT_THAT(ColourOf(LoadIconFromFile(path, 0)), testing::AnyOf(kRed, kNoIcon));
  EXPECT_EQ(ParseIconReference(path + L",0").path, path);
}

// What is shown in their place is the system's choice.
TEST_F(Icons, SpoiltIconFilesDoNoHarmToOthers) {
  const std::string good = desktop::IconFileBytes(Group(kRed));
  const auto load = [&](const std::string& name, const std::string& bytes) {
    d.File(kRoot + name, bytes);
    LoadIconFromFile(Utf8ToWide(kRoot + name), 0);
  };
  load("empty.ico", "");
  load("text.ico", std::string(70000, 'x'));
  for (size_t length = 0; length < std::min<size_t>(good.size(), 200); length += 3)
    load("cut.ico", good.substr(0, length));
  // Directory entries that lie: count, sizes and offsets at their largest.
  for (size_t at = 4; at < 6 + 16; ++at) {
    std::string lying = good;
    lying[at] = '\xFF';
    load("lie.ico", lying);
  }
  d.File(kRoot + "whole.ico", good);
  EXPECT_EQ(ColourOf(LoadIconFromFile(kWideRoot + L"whole.ico", 0)), kRed);
}

TEST_F(Icons, SpoiltExecutablesDoNoHarmToOthers) {
  const std::string good = desktop::ExecutableBytes(Coloured(kRed));
  for (size_t length = 0; length < good.size(); length += 1 + good.size() / 60) {
    // One file each: a decoder that faults may leave its file mapped, and so beyond rewriting.
    const std::string name = "cut" + std::to_string(length) + ".exe";
    d.File(kRoot + name, good.substr(0, length));
    LoadIconFromFile(Utf8ToWide(kRoot + name), 0);
  }
  d.File(kRoot + "whole.exe", good);
  EXPECT_EQ(ColourOf(LoadIconFromFile(kWideRoot + L"whole.exe", 0)), kRed);
}

TEST_F(Icons, TheStockIconIsWhatTheSystemHas) {
  SHSTOCKICONINFO info = {};
  info.cbSize = sizeof info;
  const bool has =
      SUCCEEDED(SHGetStockIconInfo(SIID_APPLICATION, SHGSI_ICON, &info)) && info.hIcon != nullptr;
  const Icon own(info.hIcon);
  EXPECT_EQ(static_cast<bool>(LoadStockApplicationIcon()), has);
  EXPECT_EQ(ColourOf(LoadStockApplicationIcon()), ColourOf(own));
}

// --- Mending. ---

TEST_F(Icons, ASecondColonIsMendedByTheFullWidthOneFirst) {
  d.Executable(kRoot + "Foo\xef\xbc\x9a Bar\\foo.exe", Coloured(kRed));
  d.Executable(kRoot + "Foo_ Bar\\foo.exe", Coloured(kBlue));
  const std::wstring path = kWideRoot + L"Foo: Bar\\foo.exe";
  EXPECT_EQ(MendSecondColon(path), kWideRoot + L"Foo\uff1a Bar\\foo.exe");
  EXPECT_EQ(ColourOf(LoadIconFromFile(path, 0)), kRed);
}

TEST_F(Icons, ASecondColonIsMendedByAnUnderscoreNext) {
  d.Executable(kRoot + "Foo_ Bar\\foo.exe", Coloured(kBlue));
  const std::wstring path = kWideRoot + L"Foo: Bar\\foo.exe";
  EXPECT_EQ(MendSecondColon(path), kWideRoot + L"Foo_ Bar\\foo.exe");
  EXPECT_EQ(ColourOf(LoadIconFromFile(path, 0)), kBlue);
}

TEST_F(Icons, OnlyTheSecondColonIsMended) {
  d.Executable(kRoot + "A_ B_ C.exe", Coloured(kBlue));
  EXPECT_EQ(MendSecondColon(kWideRoot + L"A: B: C.exe"), kWideRoot + L"A: B: C.exe");
}

TEST_F(Icons, WhatExistsOrHasNoSecondColonStays) {
  d.Executable(kRoot + "a.exe", Coloured(kBlue));
  for (const std::wstring& path : {kWideRoot + L"a.exe", kWideRoot + L"none.exe", std::wstring(L"none"),
                                   std::wstring(L""), kWideRoot + L"x: y.exe"}) {
    EXPECT_EQ(MendSecondColon(path), path);
  }
}

// --- The folder search. ---

TEST_F(Icons, AnEmptyOrMissingFolderHasNone) {
  d.Folder(kRoot + "Empty");
  EXPECT_FALSE(TryLoadIconFromInstallLocation(kWideRoot + L"Empty"));
  EXPECT_FALSE(TryLoadIconFromInstallLocation(kWideRoot + L"Missing"));
  EXPECT_FALSE(TryLoadIconFromInstallLocation(L""));
}

TEST_F(Icons, TheLargestExecutableWins) {
  d.Executable(kRoot + "G\\a.exe", Coloured(kRed, 2 * kMebibyte));
  d.Executable(kRoot + "G\\b.exe", Coloured(kGreen, 4 * kMebibyte));
  d.File(kRoot + "G\\c.dat", std::string(6 * kMebibyte, 'x'));
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kGreen);
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"G\\"), kGreen);
}

TEST_F(Icons, AnInstallersOwnExecutableTakesPartInTheSearch) {
  d.Executable(kRoot + "G\\setup.exe", Coloured(kRed, 5 * kMebibyte));
  d.Executable(kRoot + "G\\game.exe", Coloured(kGreen, 1 * kMebibyte));
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kRed);
}

TEST_F(Icons, TwoLevelsBelowTheFolderAreSeenAndThreeAreNot) {
  d.Executable(kRoot + "G\\1\\2\\3\\deep.exe", Coloured(kRed, 3 * kMebibyte));
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kNoIcon);
  d.Executable(kRoot + "G\\1\\2\\seen.exe", Coloured(kGreen));
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kGreen);
}

TEST_F(Icons, FoldersWithASkipWordAreSkippedWhereverItStandsAndHoweverItIsWritten) {
  for (const char* name : {"unins", "Uninstaller", "Setup files", "my INSTALL", "Updater", "Patches",
                           "cleanup", "AutoRepair", "GameUpdate"}) {
    Desktop inner;
    inner.Executable(kRoot + "G\\" + name + "\\a.exe", Coloured(kRed));
    EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kNoIcon) << name;
  }
}

TEST_F(Icons, TheFolderItselfMayBearASkipWord) {
  d.Executable(kRoot + "Setup\\a.exe", Coloured(kRed));
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"Setup"), kRed);
}

TEST_F(Icons, ABonusWordCountsForFiftyMebibytesOnce) {
  for (const char* name : {"GameClient.exe", "MAIN.exe", "myapp.exe", "clientmainapp.exe"}) {
    Desktop inner;
    inner.Executable(kRoot + "G\\" + name, Coloured(kGreen, kMebibyte));
    inner.Executable(kRoot + "G\\big.exe", Coloured(kRed, 50 * kMebibyte));
    EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kGreen) << name;
    inner.Executable(kRoot + "G\\huge.exe", Coloured(kBlue, 52 * kMebibyte));
    EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kBlue) << name;
  }
}

TEST_F(Icons, SixtyMebibytesBeatAClientOfNine) {
  d.Executable(kRoot + "G\\client.exe", Coloured(kGreen, 9 * kMebibyte));
  d.Executable(kRoot + "G\\game.exe", Coloured(kRed, 60 * kMebibyte));
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kRed);
}

TEST_F(Icons, OnATieTheFileListedFirstStays) {
  d.Executable(kRoot + "G\\a.exe", Coloured(kRed, kMebibyte));
  d.Executable(kRoot + "G\\b.exe", Coloured(kGreen, kMebibyte));
  WIN32_FIND_DATAW first;
  FindHandle find(FindFirstFileW((kWideRoot + L"G\\*.exe").c_str(), &first));
  ASSERT_TRUE(find);
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), std::wstring(first.cFileName) == L"a.exe" ? kRed : kGreen);
}

TEST_F(Icons, TheExtensionMatchesWholeAndInAnyCase) {
  d.Executable(kRoot + "G\\A.EXE", Coloured(kRed));
  d.Executable(kRoot + "G\\b.exe.bak", Coloured(kGreen, 2 * kMebibyte));
  d.Executable(kRoot + "G\\c.exes", Coloured(kGreen, 2 * kMebibyte));
  d.Folder(kRoot + "G\\folder.exe");
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kRed);
}

TEST_F(Icons, ALoopOfJunctionsEnds) {
  d.Executable(kRoot + "G\\a.exe", Coloured(kRed));
  d.Junction(kRoot + "G\\again", kRoot + "G");
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kRed);
}

// --- WeGame. ---

TEST_F(Icons, WeGameCandidatesInOrder) {
  d.IconFile(kRoot + "W\\Game\\WeGameLauncher\\game\\game.ico", Group(kRed));
  d.IconFile(kRoot + "W\\WeGameLauncher\\game\\game.ico", Group(kBlue));
  d.Executable(kRoot + "W\\Game\\game.exe", Coloured(kGreen, kMebibyte));
  EXPECT_EQ(ColourOf(TryLoadWeGameIcon(kWideRoot + L"W\\Game")), kRed);
  // The folder search comes behind it.
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"W\\Game"), kRed);
  // The parent's.
  EXPECT_EQ(ColourOf(TryLoadWeGameIcon(kWideRoot + L"W\\Other")), kBlue);
}

TEST_F(Icons, AFolderOfTheWeGameLauncherIsOneItself) {
  d.IconFile(kRoot + "W\\WeGameLauncher\\game\\game.ico", Group(kRed));
  EXPECT_EQ(ColourOf(TryLoadWeGameIcon(kWideRoot + L"W\\WEGAMELAUNCHER")), kRed);
}

TEST_F(Icons, WithoutWeGameThereIsNone) {
  d.Folder(kRoot + "W\\Game");
  EXPECT_FALSE(TryLoadWeGameIcon(kWideRoot + L"W\\Game"));
  EXPECT_FALSE(TryLoadWeGameIcon(L""));
  EXPECT_FALSE(TryLoadWeGameIcon(std::wstring(2000, L'w')));
}

// --- An application's icon. ---

TEST_F(Icons, TheDisplayIconComesFirst) {
  d.Executable(kRoot + "G\\a.exe", Coloured(kRed));
  d.Executable(kRoot + "G\\Other\\big.exe", Coloured(kGreen, kMebibyte));
  EXPECT_EQ(ColourOf(ResolveAppIcon(Record(kWideRoot + L"G\\a.exe,0", kWideRoot + L"G\\Other"))), kRed);
}

TEST_F(Icons, AnUninstallersDisplayIconIsPassedOver) {
  d.Executable(kRoot + "G\\game.exe", Coloured(kGreen, kMebibyte));
  for (const std::string name : {"unins000.exe", "Uninstall.exe", "SETUP.exe", "installer.exe"}) {
    d.Executable(kRoot + "G\\" + name, Coloured(kRed));
    EXPECT_EQ(ColourOf(ResolveAppIcon(Record(Utf8ToWide(kRoot + "G\\" + name + ",0"), kWideRoot + L"G"))),
              kGreen)
        << name;
    EXPECT_FALSE(ResolveAppIcon(Record(Utf8ToWide(kRoot + "G\\" + name)))) << name;
  }
}

TEST_F(Icons, OnlyTheFileNameOfTheDisplayIconCounts) {
  d.Executable(kRoot + "Setup\\a.exe", Coloured(kRed));
  EXPECT_EQ(ColourOf(ResolveAppIcon(Record(kWideRoot + L"Setup\\a.exe"))), kRed);
}

TEST_F(Icons, WithoutAFolderTheUninstallersServes) {
  d.Executable(kRoot + "G\\game.exe", Coloured(kGreen, kMebibyte));
  d.Executable(kRoot + "G\\unins000.exe", Coloured(kRed));
  const std::wstring uninstaller = kWideRoot + L"G\\unins000.exe";
  EXPECT_EQ(ColourOf(ResolveAppIcon(Record(L"", L"", L"\"" + uninstaller + L"\" /S"))), kGreen);
  EXPECT_EQ(ColourOf(ResolveAppIcon(Record(L"", L"", uninstaller + L" /S"))), kGreen);
  EXPECT_EQ(ColourOf(ResolveAppIcon(Record(L"", L"", uninstaller))), kGreen);
  SetEnvironmentVariableW(L"TARNWICK_ICONS", (kWideRoot + L"G").c_str());
  EXPECT_EQ(ColourOf(ResolveAppIcon(Record(L"", L"", L"%TARNWICK_ICONS%\\unins000.exe /S"))), kGreen);
  SetEnvironmentVariableW(L"TARNWICK_ICONS", nullptr);
}

TEST_F(Icons, AnUninstallerThatIsNotThereHelpsNothing) {
  d.Executable(kRoot + "G x\\unins000.exe", Coloured(kRed));
  EXPECT_FALSE(ResolveAppIcon(Record(L"", L"", kWideRoot + L"none.exe")));
  EXPECT_FALSE(ResolveAppIcon(Record(L"", L"", L"\"\"")));
  EXPECT_FALSE(ResolveAppIcon(Record(L"", L"", L" x")));
  // Unquoted with a blank in its folder: what stands before the blank is taken, which isn't there.
  EXPECT_FALSE(ResolveAppIcon(Record(L"", L"", kWideRoot + L"G x\\unins000.exe")));
}

TEST_F(Icons, AnInstallLocationKeepsTheUninstallerOut) {
  d.Executable(kRoot + "G\\game.exe", Coloured(kGreen));
  EXPECT_FALSE(ResolveAppIcon(Record(L"", kWideRoot + L"Missing", kWideRoot + L"G\\game.exe")));
}

TEST_F(Icons, ARecordWithNothingHasNone) { EXPECT_FALSE(ResolveAppIcon(AppRecord())); }

// --- Lazily, in the record. ---

TEST_F(Icons, TheIconGoesIntoTheRecordAsADataUriOnce) {
  d.Executable(kRoot + "a.exe", Coloured(kRed));
  AppRecord record = Record(kWideRoot + L"a.exe");
  LoadAppIconLazy(record);
  EXPECT_TRUE(record.IconLoaded);
  EXPECT_EQ(tests::DecodePngDataUri(WideToUtf8(record.IconDataUri)).CentreRgb(), kRed);
  const std::wstring first = record.IconDataUri;
  record.DisplayIcon.clear();
  LoadAppIconLazy(record);
  EXPECT_EQ(record.IconDataUri, first);
}

TEST_F(Icons, WithoutAnIconTheStockIconServes) {
  const std::string stock = IconDataUri(LoadStockApplicationIcon().Get());
  d.Folder(kRoot + "Empty");
  AppRecord record = Record(L"", kWideRoot + L"Empty");
  LoadAppIconLazy(record);
  EXPECT_TRUE(record.IconLoaded);
  EXPECT_EQ(WideToUtf8(record.IconDataUri), stock);
}

TEST_F(Icons, ATriedRecordIsNotTriedAgain) {
  d.Executable(kRoot + "a.exe", Coloured(kRed));
  AppRecord record = Record(kWideRoot + L"a.exe");
  record.IconLoaded = true;
  LoadAppIconLazy(record);
  EXPECT_EQ(record.IconDataUri, L"");
}

TEST(IconsOnOtherThreads, AThreadInASingleThreadedApartmentGetsItsIconToo) {
  Desktop d;
  d.Executable(kRoot + "a.exe", Coloured(kRed));
  AppRecord record = Record(kWideRoot + L"a.exe");
  std::thread([&] {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    LoadAppIconLazy(record);
    // COM is as it was: one call ends it.
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
    CoUninitialize();
    CoUninitialize();
  }).join();
  EXPECT_EQ(tests::DecodePngDataUri(WideToUtf8(record.IconDataUri)).CentreRgb(), kRed);
}

TEST(IconsOnOtherThreads, AThreadWithoutComGetsItsIconToo) {
  Desktop d;
  d.Executable(kRoot + "a.exe", Coloured(kRed));
  AppRecord record = Record(kWideRoot + L"a.exe");
  std::thread([&] { LoadAppIconLazy(record); }).join();
  EXPECT_EQ(tests::DecodePngDataUri(WideToUtf8(record.IconDataUri)).CentreRgb(), kRed);
}

// --- What an observer hears. ---

using common::Heard;
using common::HeardQuestions;

std::vector<Heard> HeardOf(const HeardQuestions& questions, QuestionKind kind) {
  std::vector<Heard> heard = questions.All();
  std::erase_if(heard, [&](const Heard& one) { return one.question.kind != kind; });
  return heard;
}

std::vector<std::string> WaysOf(const std::vector<Heard>& heard) {
  std::vector<std::string> ways;
  for (const Heard& one : heard) ways.push_back(one.question.detail + (one.answer.given ? ": yes" : ": no"));
  return ways;
}

TEST_F(Icons, AnObserverHearsTheCallThatGivesTheIcon) {
  d.Executable(kRoot + "a.exe", Coloured(kRed));
  const HeardQuestions questions;
  LoadIconFromFile(kWideRoot + L"a.exe", 0);
  const std::vector<Heard> heard = HeardOf(questions, QuestionKind::kIcon);
  EXPECT_THAT(WaysOf(heard), ElementsAre("PrivateExtractIconsW #0 at 256 pixels: yes"));
  EXPECT_EQ(heard.front().question.subject, kRoot + "a.exe");
}

TEST_F(Icons, AnObserverHearsEachSourceThatGaveNone) {
  const HeardQuestions questions(
      [](const Question& question) { return question.kind == QuestionKind::kIcon; });
  EXPECT_FALSE(LoadIconFromFile(kWideRoot + L"a.exe", -7));
  EXPECT_THAT(
      WaysOf(questions.All()),
      ElementsAre("shell: no", "PrivateExtractIconsW #0 at 256 pixels: no",
                  "PrivateExtractIconsW #0 at 128 pixels: no", "PrivateExtractIconsW #0 at 48 pixels: no",
                  "SHGetImageList: no", "ExtractIconExW #-7: no", "SHGetFileInfoW: no"));
}

TEST_F(Icons, AnObserverHearsHowAnIconFileIsLoaded) {
  d.IconFile(kRoot + "a.ico", Group(kGreen));
  const HeardQuestions questions(
      [](const Question& question) { return question.kind == QuestionKind::kIcon; });
  EXPECT_FALSE(LoadIcoFile(kWideRoot + L"a.ico"));
  EXPECT_THAT(WaysOf(questions.All()),
              ElementsAre("shell: yes", "LoadImageW at 256 pixels: no", "LoadImageW at its own size: no",
                          "LoadImageW at 32 pixels: no", "SHGetFileInfoW: no"));
}

TEST_F(Icons, ARefusedCallGivesWayToTheNext) {
  d.Executable(kRoot + "a.exe", Coloured(kRed));
  const HeardQuestions questions(
      [](const Question& question) { return question.detail.ends_with("at 256 pixels"); });
  const Icon icon = LoadIconFromFile(kWideRoot + L"a.exe", 0);
  EXPECT_EQ(ColourOf(icon), kRed);
  EXPECT_THAT(
      WaysOf(HeardOf(questions, QuestionKind::kIcon)),
      ElementsAre("PrivateExtractIconsW #0 at 256 pixels: no", "PrivateExtractIconsW #0 at 128 pixels: yes"));
}

TEST_F(Icons, AnObserverHearsTheStockIcon) {
  const HeardQuestions questions;
  LoadStockApplicationIcon();
  ASSERT_EQ(questions.All().size(), 1u);
  EXPECT_EQ(questions.All().front().question.detail, "SHGetStockIconInfo");
}

TEST_F(Icons, AnObserverHearsEachFolderThatIsSearchedWithItsEntries) {
  d.Executable(kRoot + "G\\1\\a.exe", Coloured(kRed, kMebibyte));
  d.File(kRoot + "G\\1\\b.txt", "four");
  d.Folder(kRoot + "G\\1\\Setup");
  d.Folder(kRoot + "G\\1\\2\\3");
  const HeardQuestions questions;
  TryLoadIconFromInstallLocation(kWideRoot + L"G");
  const std::vector<Heard> heard = HeardOf(questions, QuestionKind::kListFolder);
  ASSERT_EQ(heard.size(), 3u);
  EXPECT_EQ(heard[0].question.subject, kRoot + "G");
  EXPECT_EQ(heard[0].question.detail, kIconSearch);
  EXPECT_EQ(heard[0].answer.text, "1\tfolder\n");
  EXPECT_EQ(heard[1].question.subject, kRoot + "G\\1");
  std::istringstream entries(heard[1].answer.text);
  std::set<std::string> lines;
  for (std::string line; std::getline(entries, line);) lines.insert(line);
  EXPECT_THAT(lines, ElementsAre("2\tfolder", "Setup\tfolder", "a.exe\t1048576", "b.txt\t4"));
  EXPECT_EQ(heard[2].question.subject, kRoot + "G\\1\\2");
  EXPECT_EQ(heard[2].answer.text, "3\tfolder\n");
}

TEST_F(Icons, AFolderThatIsRefusedOrMissingHoldsNothing) {
  d.Executable(kRoot + "G\\a.exe", Coloured(kRed));
  d.Executable(kRoot + "G\\1\\b.exe", Coloured(kGreen, kMebibyte));
  {
    const HeardQuestions questions(
        [](const Question& question) { return question.subject == kRoot + "G\\1"; });
    EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kRed);
  }
  EXPECT_EQ(ColourOfFolder(kWideRoot + L"G"), kGreen);
  const HeardQuestions questions;
  TryLoadIconFromInstallLocation(kWideRoot + L"Missing");
  const std::vector<Heard> heard = HeardOf(questions, QuestionKind::kListFolder);
  ASSERT_EQ(heard.size(), 1u);
  EXPECT_FALSE(heard.front().answer.given);
  EXPECT_THAT(heard.front().answer.text, testing::StartsWith("error "));
}

TEST_F(Icons, ListeningChangesNoIcon) {
  d.Executable(kRoot + "G\\client.exe", Coloured(kGreen, 9 * kMebibyte));
  d.Executable(kRoot + "G\\1\\game.exe", Coloured(kRed, 60 * kMebibyte));
  AppRecord alone = Record(L"", kWideRoot + L"G");
  LoadAppIconLazy(alone);
  const HeardQuestions questions;
  AppRecord heard = Record(L"", kWideRoot + L"G");
  LoadAppIconLazy(heard);
  EXPECT_EQ(heard.IconDataUri, alone.IconDataUri);
  EXPECT_FALSE(heard.IconDataUri.empty());
}

TEST(IconScore, IsTheMebibytesAndTheNamesBonus) {
  EXPECT_DOUBLE_EQ(IconScore(L"game.exe", 3 * kMebibyte), 3.0);
  EXPECT_DOUBLE_EQ(IconScore(L"GameClient.EXE", 9 * kMebibyte), 59.0);
  EXPECT_DOUBLE_EQ(IconScore(L"mainapp.exe", 0), 50.0);
  EXPECT_DOUBLE_EQ(IconScore(L"big.exe", uint64_t{5} << 32), 5.0 * 4096);
}

TEST(IconScore, IsBelowZeroForWhatIsNoExecutable) {
  for (const wchar_t* name : {L"app.dll", L"app.exe.bak", L"exe", L""}) EXPECT_LT(IconScore(name, 1), 0.0);
}

}  // namespace
}  // namespace tarnwick
