#include "inventory/app_queries.h"

#include "desktop/desktop.h"
#include "foundation/conversions.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace tarnwick {
namespace {

using desktop::Desktop;
using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kRoot = "C:\\TarnwickTest\\Inventory\\Queries\\";
const std::wstring kWideRoot = L"C:\\TarnwickTest\\Inventory\\Queries\\";

// An application whose icon was tried already, so that no test waits for one.
AppRecord App(const std::wstring& name, const std::wstring& displayIcon = {},
              const std::wstring& location = {}) {
  AppRecord record;
  record.DisplayName = name;
  record.DisplayIcon = displayIcon;
  record.InstallLocation = location;
  record.IconDataUri = L"icon of " + name;
  record.IconLoaded = true;
  return record;
}

AppRecords Numbered(int count) {
  AppRecords records;
  for (int i = 1; i <= count; ++i) records.push_back(App(L"App" + std::to_wstring(i), L"C:\\A\\a.exe"));
  return records;
}

std::vector<std::string> Members(const std::wstring& text, const char* member) {
  std::vector<std::string> values;
  for (const json& object : json::parse(WideToUtf8(text))) values.push_back(object.at(member));
  return values;
}

std::vector<std::string> PageNames(AppRecords& records, int32_t page, int32_t pageSize,
                                   const wchar_t* filter = nullptr) {
  const std::optional<std::wstring> text = AppsPageJson(records, page, pageSize, filter);
  return text ? Members(*text, "name") : std::vector<std::string>{"behind the end"};
}

std::vector<std::string> ListNames(AppRecords& records, const wchar_t* filter = nullptr) {
  return Members(AppsListJson(records, filter), "name");
}

// --- The filter. ---

std::vector<std::wstring> Passed(const wchar_t* filter) {
  AppRecords records = {App(L"Foo Game"), App(L"Bar"), App(L"\u0418\u0433\u0440\u0430")};
  records[1].Publisher = L"FOO Ltd.";
  std::vector<std::wstring> names;
  for (const AppRecord* record : FilterApps(records, filter)) names.push_back(record->DisplayName);
  return names;
}

TEST(FilterApps, NullAndEmptyPassAll) {
  EXPECT_EQ(Passed(nullptr).size(), 3u);
  EXPECT_EQ(Passed(L"").size(), 3u);
}

TEST(FilterApps, NamesAndPublishersCountInAnyCase) {
  EXPECT_THAT(Passed(L"foo"), ElementsAre(L"Foo Game", L"Bar"));
  EXPECT_THAT(Passed(L"FOO gAME"), ElementsAre(L"Foo Game"));
  EXPECT_THAT(Passed(L"ltd."), ElementsAre(L"Bar"));
  EXPECT_THAT(Passed(L"\u0433\u0440\u0430"), ElementsAre(L"\u0418\u0433\u0440\u0430"));
  EXPECT_THAT(Passed(L"none"), IsEmpty());
  EXPECT_THAT(Passed(L" "), ElementsAre(L"Foo Game", L"Bar"));
}

// --- What counts as the executable. ---

struct IconText {
  const wchar_t* displayIcon;
  const wchar_t* onPage;
  const wchar_t* inList;
};

TEST(Executables, ThePageAndTheListReadADisplayIconInTheirOwnWays) {
  const IconText texts[] = {
      {L"", L"", L""},
      {L"C:\\A\\a.ico", L"", L""},
      {L"C:\\A\\a.dll,3", L"", L""},
      {L"C:\\A\\a.exe", L"C:\\A\\a.exe", L"C:\\A\\a.exe"},
      {L"C:\\A\\A.EXE", L"C:\\A\\A.EXE", L"C:\\A\\A.EXE"},
      {L"C:\\A\\a.exe,0", L"C:\\A\\a.exe", L"C:\\A\\a.exe"},
      {L"C:\\A\\a.exe,12", L"C:\\A\\a.exe,12", L"C:\\A\\a.exe"},
      {L"C:\\A\\a.exe,-101", L"C:\\A\\a.exe,-101", L"C:\\A\\a.exe"},
      {L"C:\\A\\a.exe,-1012", L"C:\\A\\a.exe,-1012", L"C:\\A\\a.exe,-1012"},
      {L"C:\\A\\a.exe,", L"C:\\A\\a.exe,", L"C:\\A\\a.exe"},
      {L"C:\\A\\a.exe,10", L"C:\\A\\a.exe,10", L"C:\\A\\a.exe"},
      {L"\"C:\\A\\a.exe\"", L"\"C:\\A\\a.exe\"", L"C:\\A\\a.exe"},
      {L"\"C:\\A\\a.exe\",0", L"\"C:\\A\\a.exe\"", L"C:\\A\\a.exe"},
      {L"\"C:\\A\\a.exe,0\"", L"\"C:\\A\\a.exe,0\"", L"C:\\A\\a.exe"},
      {L"\"C:\\A\\a.exe", L"\"C:\\A\\a.exe", L"\"C:\\A\\a.exe"},
      {L"\"\".exe", L"\"\".exe", L""},
      {L"C:\\A,b\\a.exe", L"C:\\A,b\\a.exe", L"C:\\A,b\\a.exe"},
      {L"C:\\a.exe\\x,b", L"C:\\a.exe\\x,b", L"C:\\a.exe\\x"},
      {L"C:\\my.exe.folder\\a.ico", L"C:\\my.exe.folder\\a.ico", L"C:\\my.exe.folder\\a.ico"},
      {L"C:\\A\\unins000.exe", L"", L""},
      {L"C:\\A\\UNINSTALL.exe,0", L"", L""},
      {L"\"C:\\A\\Uninst.exe\"", L"", L""},
      {L"C:\\A\\\u5378\u8f7d.exe", L"", L""},
      {L"C:\\uninstall\\a.exe", L"C:\\uninstall\\a.exe", L"C:\\uninstall\\a.exe"},
      {L",0", L"", L""},
  };
  for (const IconText& text : texts) {
    const AppRecord record = App(L"x", text.displayIcon);
    EXPECT_EQ(PageExecutable(record), text.onPage) << WideToUtf8(text.displayIcon);
    EXPECT_EQ(ListExecutable(record), text.inList) << WideToUtf8(text.displayIcon);
  }
}

// --- The page. ---

TEST(AppsPage, HoldsTheAskedPartInCacheOrder) {
  AppRecords records = Numbered(7);
  EXPECT_THAT(PageNames(records, 1, 3), ElementsAre("App1", "App2", "App3"));
  EXPECT_THAT(PageNames(records, 2, 3), ElementsAre("App4", "App5", "App6"));
  EXPECT_THAT(PageNames(records, 3, 3), ElementsAre("App7"));
  EXPECT_THAT(PageNames(records, 4, 3), ElementsAre("behind the end"));
}

TEST(AppsPage, ZeroAndBelowAreTheFirstPageOfTwenty) {
  AppRecords records = Numbered(25);
  for (const int32_t page : {1, 0, -1, INT32_MIN}) EXPECT_EQ(PageNames(records, page, 3)[0], "App1");
  for (const int32_t size : {0, -1, INT32_MIN, 20}) EXPECT_EQ(PageNames(records, 1, size).size(), 20u);
  EXPECT_EQ(PageNames(records, 2, 0).size(), 5u);
}

TEST(AppsPage, EnormousNumbersNeitherOverflowNorTakeMemory) {
  AppRecords records = Numbered(3);
  EXPECT_THAT(PageNames(records, 1, INT32_MAX), ElementsAre("App1", "App2", "App3"));
  EXPECT_THAT(PageNames(records, INT32_MAX, INT32_MAX), ElementsAre("behind the end"));
  EXPECT_THAT(PageNames(records, INT32_MAX, 1), ElementsAre("behind the end"));
  EXPECT_THAT(PageNames(records, 2, INT32_MAX), ElementsAre("behind the end"));
  EXPECT_LT(AppsPageJson(records, 1, INT32_MAX, nullptr)->capacity(), 20'000u);
}

TEST(AppsPage, RecordsWithoutAnExecutableGoBeforePaging) {
  AppRecords records = Numbered(3);
  records[0].DisplayIcon = L"C:\\A\\unins000.exe";
  records[1].DisplayIcon = L"C:\\A\\a.ico";
  records[1].InstallLocation = L"C:\\windows";
  EXPECT_THAT(PageNames(records, 1, 1), ElementsAre("App3"));
  EXPECT_THAT(PageNames(records, 2, 1), ElementsAre("behind the end"));
}

TEST(AppsPage, AnEmptyListIsBehindTheEnd) {
  AppRecords none;
  EXPECT_FALSE(AppsPageJson(none, 1, 20, nullptr));
  AppRecords records = Numbered(3);
  EXPECT_FALSE(AppsPageJson(records, 1, 20, L"no such name"));
}

TEST(AppsPage, IsWrittenToTheLetter) {
  AppRecords records = {App(L"Foo", L"\"C:\\Games\\Foo\\foo.exe\",0")};
  records[0].EstimatedSize = 12;
  EXPECT_EQ(AppsPageJson(records, 1, 20, L"foo"),
            LR"([{"name":"Foo","publisher":"","version":"","loc":"\"C:\\Games\\Foo\\foo.exe\"","date":"",)"
            LR"("sizeKB":12,"icon":"icon of Foo"}])");
}

TEST(AppsPage, ResolvesFoldersAndIconsOfItsOwnRecordsOnly) {
  Desktop d;
  d.Executable(kRoot + "a.exe");
  AppRecords records = Numbered(3);
  for (AppRecord& record : records) {
    record.DisplayIcon = kWideRoot + L"a.exe,0";
    record.IconLoaded = false;
  }
  AppsPageJson(records, 2, 1, nullptr);
  EXPECT_EQ(records[0].InstallLocation, L"");
  EXPECT_FALSE(records[0].IconLoaded);
  EXPECT_EQ(records[1].InstallLocation + L"\\", kWideRoot);
  EXPECT_TRUE(records[1].IconLoaded);
  EXPECT_FALSE(records[2].IconLoaded);
}

// --- The full list. ---

TEST(AppsList, IsWrittenToTheLetter) {
  AppRecords records = {App(L"Foo", L"\"C:\\Games\\Foo\\foo.exe\",0"), App(L"None"),
                        App(L"Bar", L"C:/b.exe,-101")};
  EXPECT_EQ(
      AppsListJson(records, nullptr),
      LR"([{"name":"Foo","publisher":"","version":"","loc":"C:\\Games\\Foo\\foo.exe","exeName":"foo.exe",)"
      LR"("date":"","sizeKB":0,"icon":"icon of Foo"},)"
      LR"({"name":"Bar","publisher":"","version":"","loc":"C:\\b.exe","exeName":"b.exe",)"
      LR"("date":"","sizeKB":0,"icon":"icon of Bar"}])");
}

TEST(AppsList, AnEmptyListIsTwoBrackets) {
  AppRecords none;
  EXPECT_EQ(AppsListJson(none, nullptr), L"[]");
  AppRecords records = Numbered(3);
  EXPECT_EQ(AppsListJson(records, L"no such name"), L"[]");
}

TEST(AppsList, UninstallersAndIconsThatAreNoExecutablesDoNotAppearInEitherList) {
  AppRecords records = {App(L"1", L"C:\\A\\unins000.exe"), App(L"2", L"C:\\A\\a.ico", L"C:\\windows"),
                        App(L"3", L"C:\\A\\\u5378\u8f7d\u7a0b\u5e8f.exe"), App(L"4", L"C:\\A\\a.exe")};
  EXPECT_THAT(ListNames(records), ElementsAre("4"));
  EXPECT_THAT(PageNames(records, 1, 20), ElementsAre("4"));
}

TEST(AppsList, AFailingRecordIsLoggedAndLeftOut) {
  AppRecords records = Numbered(4);
  records[1].DisplayName = L"B\u00e4r";
  const tests::DebugCapture capture;
  const std::wstring text = AppsListJson(records, nullptr, [](AppRecord& record) {
    if (record.DisplayName == L"B\u00e4r") throw std::runtime_error("no icon");
    if (record.DisplayName == L"App3") throw 1;
  });
  EXPECT_THAT(Members(text, "name"), ElementsAre("App1", "App4"));
  ASSERT_EQ(capture.Lines().size(), 2u);
  EXPECT_EQ(capture.Lines()[0].rfind("Error processing app: B", 0), 0u);
  EXPECT_TRUE(capture.Lines()[0].ends_with("r - no icon"));
  EXPECT_EQ(capture.Lines()[1], "Unknown error processing app: App3");
}

TEST(AppsList, AFailingFirstRecordLeavesNoComma) {
  AppRecords records = Numbered(2);
  const std::wstring text = AppsListJson(records, nullptr, [](AppRecord& record) {
    if (record.DisplayName == L"App1") throw 1;
  });
  EXPECT_EQ(text.substr(0, 16), L"[{\"name\":\"App2\",");
}

// --- Lookups. ---

class FindGames : public testing::Test {
 protected:
  FindGames() {
    d.File(kRoot + "Foo\\foo.exe");
    d.File(kRoot + "Foo\\bin\\foo.exe");
    d.File(kRoot + "Foo\\both.exe");
    d.File(kRoot + "Bar\\bar.exe");
    d.File(kRoot + "Bar\\both.exe");
    records = {App(L"No folder"), App(L"Missing", L"", kWideRoot + L"Missing"),
               App(L"Foo", L"", L"\"" + kWideRoot + L"Foo\""), App(L"Bar", L"", kWideRoot + L"Bar\\")};
  }

  json Found(const std::vector<GameQuery>& queries) {
    return json::parse(WideToUtf8(FoundGamesJson(records, queries)));
  }

  Desktop d;
  AppRecords records;
};

TEST_F(FindGames, TheSubfolderComesBeforeTheFolderItself) {
  EXPECT_EQ(Found({{L"", L"foo.exe", L"bin"}})[0]["loc"], kRoot + "Foo\\bin\\foo.exe");
  EXPECT_EQ(Found({{L"", L"foo.exe", L""}})[0]["loc"], kRoot + "Foo\\foo.exe");
  EXPECT_EQ(Found({{L"", L"both.exe", L"bin"}})[0]["loc"], kRoot + "Foo\\both.exe");
}

TEST_F(FindGames, TheFirstRecordThatHasItAnswers) {
  EXPECT_EQ(Found({{L"", L"both.exe", L""}})[0]["name"], "Foo");
  EXPECT_EQ(Found({{L"", L"bar.exe", L""}})[0]["loc"], kRoot + "Bar\\bar.exe");
}

TEST_F(FindGames, AQuerysNameComesBeforeTheRecords) {
  EXPECT_EQ(Found({{L"Mine", L"foo.exe", L""}})[0]["name"], "Mine");
  EXPECT_EQ(Found({{L"", L"foo.exe", L""}})[0]["name"], "Foo");
}

TEST_F(FindGames, AnswersFollowTheQueriesAndOneRecordMayAnswerSeveral) {
  const json found = Found(
      {{L"1", L"bar.exe", L""}, {L"2", L"none.exe", L""}, {L"3", L"foo.exe", L""}, {L"4", L"bar.exe", L""}});
  ASSERT_EQ(found.size(), 3u);
  EXPECT_EQ(found[0]["name"], "1");
  EXPECT_EQ(found[1]["name"], "3");
  EXPECT_EQ(found[2]["name"], "4");
  EXPECT_EQ(found[2]["icon"], "icon of Bar");
}

TEST_F(FindGames, IsWrittenToTheLetter) {
  records[3].EstimatedSize = 9;
  EXPECT_EQ(
      FoundGamesJson(records, {{L"", L"bar.exe", L""}}),
      LR"([{"name":"Bar","publisher":"","version":"","loc":"C:\\TarnwickTest\\Inventory\\Queries\\Bar\\bar.exe",)"
      LR"("date":"","sizeKB":9,"icon":"icon of Bar"}])");
}

TEST_F(FindGames, NoQueriesOrNoMatchesGiveAnEmptyArray) {
  EXPECT_EQ(FoundGamesJson(records, {}), L"[]");
  EXPECT_EQ(FoundGamesJson(records, {{L"", L"none.exe", L""}}), L"[]");
  AppRecords none;
  EXPECT_EQ(FoundGamesJson(none, {{L"", L"foo.exe", L""}}), L"[]");
}

TEST_F(FindGames, FoldersAreResolvedInEveryRecord) {
  records[0].UninstallString = kWideRoot + L"Bar\\bar.exe /x";
  Found({});
  EXPECT_EQ(records[0].InstallLocation, kWideRoot + L"Bar");
  EXPECT_EQ(records[2].InstallLocation, kWideRoot + L"Foo");
}

TEST_F(FindGames, AMatchNeedsAFolderThatExists) {
  std::wstring found = L"old";
  EXPECT_FALSE(MatchAppForQuery({L"", L"foo.exe", L""}, App(L"x"), found));
  EXPECT_EQ(found, L"");
  EXPECT_FALSE(MatchAppForQuery({L"", L"foo.exe", L""}, App(L"x", L"", kWideRoot + L"Missing"), found));
  EXPECT_FALSE(MatchAppForQuery({L"", L"foo.exe", L""}, App(L"x", L"", kWideRoot + L"Foo\\foo.exe"), found));
  EXPECT_TRUE(
      MatchAppForQuery({L"", L"foo.exe", L""}, App(L"x", L"", L"\"" + kWideRoot + L"Foo\" x"), found));
  EXPECT_EQ(found, kWideRoot + L"Foo\\foo.exe");
}

TEST_F(FindGames, ARequestIsReadAsUtf8AndNullIsEmpty) {
  EXPECT_THAT(ParseGameQueryList(static_cast<const char*>(nullptr)), IsEmpty());
  const std::vector<GameQuery> queries = ParseGameQueryList("{\"exeName\":\"\xe6\xb8\xb8.exe\"}");
  ASSERT_EQ(queries.size(), 1u);
  EXPECT_EQ(queries[0].exeName, L"\u6e38.exe");
}

// --- Install folders. ---

class Folders : public testing::Test {
 protected:
  Folders() {
    d.Folder(kRoot + "Real");
    d.File(kRoot + "Icon\\a.exe");
    d.File(kRoot + "Icon, too\\a.exe");
    d.File(kRoot + "Unins x\\u.exe");
  }

  std::wstring Resolved(const std::wstring& location, const std::wstring& icon,
                        const std::wstring& uninstall) {
    AppRecord record = App(L"x", icon, location);
    record.UninstallString = uninstall;
    ResolveInstallLocation(record);
    return record.InstallLocation;
  }

  Desktop d;
  const std::wstring icon = kWideRoot + L"Icon\\a.exe";
  const std::wstring uninstaller = kWideRoot + L"Unins x\\u.exe";
};

TEST_F(Folders, AnExistingOneStaysWithoutItsQuotes) {
  EXPECT_EQ(Resolved(kWideRoot + L"Real", icon, L""), kWideRoot + L"Real");
  EXPECT_EQ(Resolved(L"\"" + kWideRoot + L"Real\"", icon, L""), kWideRoot + L"Real");
  EXPECT_EQ(Resolved(kWideRoot + L"Real\\", icon, L""), kWideRoot + L"Real\\");
}

TEST_F(Folders, AnExistingButWrongOneIsNeverReplaced) {
  EXPECT_EQ(Resolved(L"C:\\windows", icon, uninstaller), L"C:\\windows");
}

TEST_F(Folders, AMissingOrInvalidOneComesFromTheIconFirst) {
  for (const std::wstring& location : {std::wstring(), kWideRoot + L"Gone", icon}) {
    EXPECT_EQ(Resolved(location, icon + L",0", uninstaller), kWideRoot + L"Icon");
    EXPECT_EQ(Resolved(location, L"\"" + icon + L"\",-3", uninstaller), kWideRoot + L"Icon");
    EXPECT_EQ(Resolved(location, icon, uninstaller), kWideRoot + L"Icon");
  }
}

TEST_F(Folders, AnyCommaOfTheIconCuts) {
  EXPECT_EQ(Resolved(L"", kWideRoot + L"Icon, too\\a.exe,0", L""), kWideRoot + L"Icon, too");
  // Without an index the folder's own comma is the last one.
  EXPECT_EQ(Resolved(L"", kWideRoot + L"Icon, too\\a.exe", L""), kWideRoot.substr(0, kWideRoot.size() - 1));
}

TEST_F(Folders, TheUninstallerIsNext) {
  EXPECT_EQ(Resolved(L"", L"", L"\"" + uninstaller + L"\" /S"), kWideRoot + L"Unins x");
  EXPECT_EQ(Resolved(L"", kWideRoot + L"gone.exe,0", uninstaller), kWideRoot + L"Unins x");
  EXPECT_EQ(Resolved(L"", L"", icon + L" /S"), kWideRoot + L"Icon");
}

TEST_F(Folders, WithNeitherARecordKeepsWhatItHad) {
  EXPECT_EQ(Resolved(L"", L"", L""), L"");
  EXPECT_EQ(Resolved(kWideRoot + L"Gone", kWideRoot + L"gone.exe", L"MsiExec.exe /X{1}"),
            kWideRoot + L"Gone");
  EXPECT_EQ(Resolved(L"\"" + kWideRoot + L"Gone\"", L"", L""), L"\"" + kWideRoot + L"Gone\"");
}

TEST_F(Folders, CommandsGiveTheirProgram) {
  SetEnvironmentVariableW(L"TARNWICK_QUERIES", kWideRoot.c_str());
  const std::pair<std::wstring, std::wstring> commands[] = {
      {L"", L""},
      {L"\"C:\\A b\\c.exe\" /S", L"C:\\A b\\c.exe"},
      {L"\"C:\\A b\\c.exe", L"C:\\A b\\c.exe"},
      {L"\"", L""},
      {L"\"\"", L""},
      {L"\"%TARNWICK_QUERIES%Icon\\a.exe\" /S", icon},
      {uninstaller, uninstaller},
      {icon + L" /S", icon},
      {uninstaller + L" /S", uninstaller + L" /S"},
      {L"%TARNWICK_QUERIES%Icon\\a.exe /S", icon},
      {L"none.exe /S", L"none.exe /S"},
      {L" ", L" "},
      {std::wstring(400, L'x') + L".exe", std::wstring(400, L'x') + L".exe"},
  };
  for (const auto& [command, program] : commands) {
    EXPECT_EQ(ExtractPathFromCommand(command), program) << WideToUtf8(command);
  }
  SetEnvironmentVariableW(L"TARNWICK_QUERIES", nullptr);
}

// --- Files. ---

}  // namespace
}  // namespace tarnwick
