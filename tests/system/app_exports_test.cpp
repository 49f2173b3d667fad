// The inventory through the built library, as a host calls it.
#include "desktop/desktop.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/guarded_buffer.h"
#include "support/library.h"
#include "support/png_pixels.h"
#include "support/uninstall_key.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <future>
#include <thread>

namespace tarnwick::tests {
namespace {

using desktop::Desktop;
using desktop::View;
using nlohmann::json;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

const std::string kRoot = "C:\\TarnwickTest\\AppExports\\";
const std::string& kMachine = tests::kUninstallKey;
const std::string& kUser = tests::kUserUninstallKey;
constexpr uint32_t kRed = 0xCC2211;
constexpr uint32_t kGreen = 0x11AA33;
// Every application of these tests has this publisher, and no other application of the machine has it.
constexpr wchar_t kPublisher[] = L"tarnwick exports";

desktop::ExecutableOptions Coloured(uint32_t rgb) {
  desktop::ExecutableOptions options;
  options.icons = {{{{32, rgb}, {256, rgb}}}};
  return options;
}

struct App {
  std::string key;
  std::string name;
  std::string displayIcon;
  std::string location = {};
  std::string hive = kMachine;
  View view = View::k64;
};

class AppExports : public testing::Test {
 protected:
  void Install(const App& app) {
    const std::string key = app.hive + app.key;
    d.String(key, "DisplayName", app.name, app.view);
    d.String(key, "Publisher", "Tarnwick Exports", app.view);
    d.String(key, "DisplayVersion", "1.0", app.view);
    d.String(key, "InstallDate", "20240131", app.view);
    d.Dword(key, "EstimatedSize", 77, app.view);
    if (!app.displayIcon.empty()) d.String(key, "DisplayIcon", app.displayIcon, app.view);
    if (!app.location.empty()) d.String(key, "InstallLocation", app.location, app.view);
  }

  // Two applications with icons, one without an executable.
  void InstallThree() {
    d.Executable(kRoot + "Foo\\foo.exe", Coloured(kRed));
    d.Executable(kRoot + "Foo\\bin\\deep.exe", Coloured(kGreen));
    d.Executable(kRoot + "\xd0\x98\xd0\xb3\xd1\x80\xd0\xb0\\bar.exe", Coloured(kGreen));
    Install({"TarnwickFoo", "Foo", kRoot + "Foo\\foo.exe,0", kRoot + "Foo"});
    Install({"TarnwickBar", "\xd0\x98\xd0\xb3\xd1\x80\xd0\xb0",
             kRoot + "\xd0\x98\xd0\xb3\xd1\x80\xd0\xb0\\bar.exe", "", kUser});
    Install({"TarnwickNone", "None", "", kRoot + "Foo"});
    library.IA_RefreshCache();
  }

  std::string All(const wchar_t* filter = kPublisher) {
    return Text([&](char* out, int32_t size) { return library.IA_GetAppsJsonAll(filter, out, size); });
  }
  std::string Page(int32_t page, int32_t pageSize, const wchar_t* filter = kPublisher) {
    return Text(
        [&](char* out, int32_t size) { return library.IA_GetAppsJson(page, pageSize, filter, out, size); });
  }
  std::string Found(const char* request) {
    return Text([&](char* out, int32_t size) { return library.IA_FindGamesJson(request, out, size); });
  }
  std::string FoundByFile(const char* path) {
    return Text([&](char* out, int32_t size) { return library.IA_FindGamesByFile(path, out, size); });
  }

  Desktop d;
  Library library{TARNWICK_DLL};

 private:
  template <class Call>
  std::string Text(Call call) {
    const GuardedBuffer buffer(4 << 20);
    const int32_t length = call(buffer.Data(), buffer.Size());
    EXPECT_EQ(static_cast<size_t>(length), buffer.Text().size());
    return buffer.Text();
  }
};

std::vector<std::string> Names(const std::string& text) {
  std::vector<std::string> names;
  for (const json& app : json::parse(text)) names.push_back(app.at("name"));
  return names;
}

TEST_F(AppExports, TheFullListHasItsKeysInOrderAndEachApplicationsIcon) {
  InstallThree();
  const std::string text = All();
  EXPECT_THAT(text,
              testing::StartsWith(R"([{"name":"Foo","publisher":"Tarnwick Exports","version":"1.0",)"
                                  R"("loc":"C:\\TarnwickTest\\AppExports\\Foo\\foo.exe","exeName":"foo.exe",)"
                                  R"("date":"20240131","sizeKB":77,"icon":"data:image/png;base64,)"));
  EXPECT_THAT(text, testing::EndsWith("\"}]"));
  const json apps = json::parse(text);
  ASSERT_EQ(apps.size(), 2u);
  EXPECT_EQ(DecodePngDataUri(apps[0]["icon"].get<std::string>()).CentreRgb(), kRed);
  EXPECT_EQ(DecodePngDataUri(apps[1]["icon"].get<std::string>()).CentreRgb(), kGreen);
  EXPECT_EQ(apps[1]["name"], "\xd0\x98\xd0\xb3\xd1\x80\xd0\xb0");
  EXPECT_EQ(apps[1]["exeName"], "bar.exe");
}

TEST_F(AppExports, APageHasTheSameObjectsWithoutExeName) {
  InstallThree();
  const std::string text = Page(1, 1);
  EXPECT_THAT(text, testing::StartsWith(
                        R"([{"name":"Foo","publisher":"Tarnwick Exports","version":"1.0",)"
                        R"("loc":"C:\\TarnwickTest\\AppExports\\Foo\\foo.exe","date":"20240131","sizeKB":77,)"
                        R"("icon":"data:image/png;base64,)"));
  EXPECT_THAT(Names(Page(2, 1)), ElementsAre("\xd0\x98\xd0\xb3\xd1\x80\xd0\xb0"));
  EXPECT_THAT(Names(Page(0, 0)), ElementsAre("Foo", "\xd0\x98\xd0\xb3\xd1\x80\xd0\xb0"));
  EXPECT_EQ(Page(3, 1), "[]");
  EXPECT_EQ(Page(INT32_MAX, INT32_MAX), "[]");
}

TEST_F(AppExports, APageBehindTheEndIsTwoWhateverTheBuffer) {
  InstallThree();
  for (const int32_t size : {-1, 0, 1, 2}) {
    const GuardedBuffer buffer(std::max(size, 0));
    EXPECT_EQ(library.IA_GetAppsJson(99, 20, kPublisher, buffer.Data(), size), 2);
    EXPECT_TRUE(buffer.Untouched());
  }
  const GuardedBuffer buffer(3);
  EXPECT_EQ(library.IA_GetAppsJson(99, 20, kPublisher, buffer.Data(), 3), 2);
  EXPECT_EQ(buffer.Text(), "[]");
  EXPECT_EQ(library.IA_GetAppsJson(99, 20, kPublisher, nullptr, 100), 2);
}

TEST_F(AppExports, EveryBufferSizeTakesWhatFits) {
  d.Folder(kRoot + "Plain");
  Install({"TarnwickPlain", "Pl\xc3\xa4in", kRoot + "Plain\\plain.exe", kRoot + "Plain"});
  library.IA_RefreshCache();
  const std::string whole = All();
  const auto length = static_cast<int32_t>(whole.size());
  ASSERT_GT(length, 50);
  EXPECT_EQ(library.IA_GetAppsJsonAll(kPublisher, nullptr, 0), length);
  EXPECT_EQ(library.IA_GetAppsJsonAll(kPublisher, nullptr, 100'000), length);
  for (int32_t size = 1; size <= length + 2; size += size < 300 ? 1 : length / 50) {
    const GuardedBuffer buffer(size);
    EXPECT_EQ(library.IA_GetAppsJsonAll(kPublisher, buffer.Data(), size), length);
    ASSERT_EQ(buffer.Text(), whole.substr(0, static_cast<size_t>(size) - 1));
  }
  for (const int32_t size : {0, -1, INT32_MIN}) {
    const GuardedBuffer buffer(8);
    EXPECT_EQ(library.IA_GetAppsJsonAll(kPublisher, buffer.Data(), size), length);
    EXPECT_TRUE(buffer.Untouched());
  }
}

TEST_F(AppExports, NullPointersEverywhere) {
  InstallThree();
  EXPECT_GT(library.IA_GetAppsJson(1, 1, nullptr, nullptr, 0), 2);
  EXPECT_GT(library.IA_GetAppsJsonAll(nullptr, nullptr, 0), 2);
  EXPECT_EQ(library.IA_FindGamesJson(nullptr, nullptr, 0), 2);
  EXPECT_EQ(library.IA_FindGamesByFile(nullptr, nullptr, 0), 0);
  EXPECT_EQ(Found(nullptr), "[]");
  EXPECT_EQ(FoundByFile(nullptr), "[]");
  library.SetFocusCallbackEx(nullptr);
}

TEST_F(AppExports, BadPointersAreAnsweredAndLeaveNoLockBehind) {
  InstallThree();
  const DebugCapture capture;
  char out[8] = {};
  EXPECT_EQ(library.IA_GetAppsJson(1, 1, reinterpret_cast<const wchar_t*>(16), out, 8), 2);
  EXPECT_STREQ(out, "[]");
  EXPECT_EQ(library.IA_GetAppsJsonAll(reinterpret_cast<const wchar_t*>(16), out, 8), 2);
  EXPECT_EQ(library.IA_FindGamesJson(reinterpret_cast<const char*>(16), out, 8), 2);
  EXPECT_EQ(library.IA_FindGamesByFile(reinterpret_cast<const char*>(16), out, 8), 2);
  EXPECT_EQ(library.IA_GetAppsJsonAll(nullptr, reinterpret_cast<char*>(16), 8), 2);
  const std::string text = "CRITICAL SEH ERROR in ", code = ": Exception Code 0xC0000005";
  EXPECT_THAT(capture.LinesWith("CRITICAL"),
              ElementsAre(text + "IA_GetAppsJson" + code, text + "IA_GetAppsJsonAll" + code,
                          text + "IA_FindGamesJson" + code, text + "IA_FindGamesByFile" + code,
                          text + "IA_GetAppsJsonAll" + code));
  auto other = std::async(std::launch::async, [&] { return All(); });
  ASSERT_EQ(other.wait_for(std::chrono::seconds(60)), std::future_status::ready);
  EXPECT_EQ(Names(other.get()).size(), 2u);
}

TEST_F(AppExports, ABufferShorterThanToldHoldsAnEmptyList) {
  InstallThree();
  const GuardedBuffer list(10), page(10), found(10), two(2);
  const char* request = R"([{"exeName":"bar.exe"}])";
  d.File(kRoot + "request.json", request);
  EXPECT_EQ(library.IA_GetAppsJsonAll(kPublisher, list.Data(), 4096), 2);
  EXPECT_EQ(list.Text(), "[]");
  EXPECT_EQ(library.IA_GetAppsJson(1, 20, kPublisher, page.Data(), 4096), 2);
  EXPECT_EQ(page.Text(), "[]");
  EXPECT_EQ(library.IA_FindGamesJson(request, found.Data(), 4096), 2);
  EXPECT_EQ(found.Text(), "[]");
  EXPECT_EQ(library.IA_FindGamesByFile((kRoot + "request.json").c_str(), two.Data(), 4096), 2);
  EXPECT_EQ(two.Text(), "");
}

TEST_F(AppExports, TheFirstQueryFillsTheCacheAndLaterOnesDoNot) {
  // The library was loaded for this test, so its cache is empty.
  Install({"TarnwickOne", "One", "C:\\none\\one.exe"});
  const DebugCapture capture;
  EXPECT_THAT(Names(All()), ElementsAre("One"));
  EXPECT_EQ(capture.LinesWith("RefreshCacheNoLock START").size(), 1u);
  Install({"TarnwickTwo", "Two", "C:\\none\\two.exe"});
  EXPECT_THAT(Names(All()), ElementsAre("One"));
  EXPECT_EQ(capture.LinesWith("RefreshCacheNoLock START").size(), 1u);
  library.IA_RefreshCache();
  EXPECT_THAT(Names(All()), ElementsAre("One", "Two"));
}

TEST_F(AppExports, ARefreshCountsEveryRecordAndForgetsIcons) {
  const int32_t before = library.IA_RefreshCache();
  InstallThree();
  EXPECT_EQ(library.IA_RefreshCache(), before + 3);
  EXPECT_EQ(DecodePngDataUri(json::parse(All())[0]["icon"].get<std::string>()).CentreRgb(), kRed);
  Desktop replaced;
  replaced.Executable(kRoot + "Foo\\foo.exe", Coloured(kGreen));
  EXPECT_EQ(DecodePngDataUri(json::parse(All())[0]["icon"].get<std::string>()).CentreRgb(), kRed);
  library.IA_RefreshCache();
  EXPECT_EQ(DecodePngDataUri(json::parse(All())[0]["icon"].get<std::string>()).CentreRgb(), kGreen);
}

TEST_F(AppExports, TheFilterLooksAtNamesAndPublishersInAnyCase) {
  InstallThree();
  EXPECT_THAT(Names(All(L"TARNWICK EXPORTS")), ElementsAre("Foo", "\xd0\x98\xd0\xb3\xd1\x80\xd0\xb0"));
  EXPECT_EQ(All(L"no such application at all"), "[]");
  EXPECT_EQ(Page(1, 20, L"no such application at all"), "[]");
  EXPECT_THAT(Names(All(L"")), Contains("Foo"));
  EXPECT_THAT(Names(Page(1, 1000, nullptr)), Contains("Foo"));
}

TEST_F(AppExports, DisplayIconsOfEveryShapeInBothLists) {
  Install({"Tarnwick1", "1", "C:\\A\\unins000.exe", kRoot});
  Install({"Tarnwick2", "2", "C:\\A\\a.ico", "C:\\windows"});
  Install({"Tarnwick3", "3", "C:\\A\\\xe5\x8d\xb8\xe8\xbd\xbd.exe"});
  Install({"Tarnwick4", "4", "C:\\A\\a.exe,0"});
  Install({"Tarnwick5", "5", "C:\\A\\a.exe,12"});
  Install({"Tarnwick6", "6", "\"C:\\A\\a.exe\",0"});
  Install({"Tarnwick7", "7", "C:\\A\\a.exe,-101"});
  library.IA_RefreshCache();
  std::vector<std::string> listed, paged;
  for (const json& app : json::parse(All())) listed.push_back(app["loc"]);
  for (const json& app : json::parse(Page(1, 100))) paged.push_back(app["loc"]);
  EXPECT_THAT(listed, ElementsAre("C:\\A\\a.exe", "C:\\A\\a.exe", "C:\\A\\a.exe", "C:\\A\\a.exe"));
  EXPECT_THAT(paged, ElementsAre("C:\\A\\a.exe", "C:\\A\\a.exe,12", "\"C:\\A\\a.exe\"", "C:\\A\\a.exe,-101"));
}

TEST_F(AppExports, GamesAreFoundByTheirExecutables) {
  InstallThree();
  const json found = json::parse(Found(
      R"([{"name":"Mine","exeName":"deep.exe","exePath":"bin"},{"exeName":"none.exe"},{"exeName":"bar.exe"},{"name":"x"}])"));
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0]["name"], "Mine");
  EXPECT_EQ(found[0]["loc"], kRoot + "Foo\\bin\\deep.exe");
  EXPECT_FALSE(found[0].contains("exeName"));
  EXPECT_EQ(DecodePngDataUri(found[0]["icon"].get<std::string>()).CentreRgb(), kRed);  // the application's
  // Its folder was resolved from its icon.
  EXPECT_EQ(found[1]["name"], "\xd0\x98\xd0\xb3\xd1\x80\xd0\xb0");
  EXPECT_EQ(found[1]["loc"], kRoot + "\xd0\x98\xd0\xb3\xd1\x80\xd0\xb0\\bar.exe");
}

TEST_F(AppExports, RequestsWithoutEntriesGiveAnEmptyArray) {
  for (const char* request : {"", "[]", "no braces", "{", "}", "[{\"name\":\"x\"}]"})
    EXPECT_EQ(Found(request), "[]");
  const GuardedBuffer one(1), two(2);
  EXPECT_EQ(library.IA_FindGamesJson("[]", one.Data(), 1), 2);
  EXPECT_EQ(one.Text(), "");
  EXPECT_EQ(library.IA_FindGamesJson("[]", two.Data(), 2), 2);
  EXPECT_EQ(two.Text(), "[");
}

TEST_F(AppExports, ARequestFileGivesWhatItsTextGives) {
  InstallThree();
  const std::string request = R"([{"exeName":"bar.exe"},{"exeName":"foo.exe"}])";
  const std::string path = kRoot + "\xe6\xb8\xb8\xe6\x88\x8f.json";
  d.File(path, request);
  EXPECT_EQ(Names(FoundByFile(path.c_str())).size(), 2u);
  EXPECT_EQ(FoundByFile(path.c_str()), Found(request.c_str()));
  d.File(path, "\xef\xbb\xbf" + request);
  EXPECT_EQ(FoundByFile(path.c_str()), Found(request.c_str()));
  d.File(path, "[]");
  EXPECT_EQ(FoundByFile(path.c_str()), "[]");
}

TEST_F(AppExports, AMissingOrEmptyFileIsTwoOrZeroWhereThereIsNoRoom) {
  d.File(kRoot + "empty.json", "");
  for (const std::string& path : {kRoot + "empty.json", kRoot + "missing.json", kRoot, std::string()}) {
    EXPECT_EQ(FoundByFile(path.c_str()), "[]");
    for (const int32_t size : {-1, 0, 1, 2}) {
      const GuardedBuffer buffer(std::max(size, 0));
      EXPECT_EQ(library.IA_FindGamesByFile(path.c_str(), buffer.Data(), size), 0);
      EXPECT_TRUE(buffer.Untouched());
    }
    EXPECT_EQ(library.IA_FindGamesByFile(path.c_str(), nullptr, 100), 0);
  }
}

std::string HundredMegabytes(char letter) {
  return std::string(100'000'000, letter);  // NOLINT(bugprone-string-constructor): it is meant to be long
}

TEST_F(AppExports, AHundredMegabytesOfRequestAreAnsweredInTime) {
  InstallThree();
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(Found(("{\"exeName\":\"" + HundredMegabytes('a')).c_str()), "[]");
  EXPECT_EQ(Found(HundredMegabytes('{').c_str()), "[]");
  std::string objects;
  while (objects.size() < 100'000'000) objects += "{\"exePath\":\"a\"},";
  EXPECT_EQ(Found(objects.c_str()), "[]");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(120));
}

TEST_F(AppExports, LogLinesWholeAndInOrder) {
  InstallThree();
  const DebugCapture capture;
  Page(1, 1);
  All();
  Found("[]");
  FoundByFile("none");
  EXPECT_THAT(capture.Lines(), ElementsAre("IA_GetAppsJson START", "IA_GetAppsJsonAll START",
                                           "IA_FindGamesJson START", "IA_FindGamesByFile START"));
}

TEST_F(AppExports, ARefreshLogsItsFrameAroundTheScan) {
  const DebugCapture capture;
  const int32_t count = library.IA_RefreshCache();
  const std::vector<std::string> lines = capture.Lines();
  ASSERT_GE(lines.size(), 4u);
  EXPECT_EQ(lines[0], "IA_RefreshCache START");
  EXPECT_EQ(lines[1], "RefreshCacheNoLock START");
  EXPECT_EQ(lines[lines.size() - 2], "RefreshCacheNoLock END, total apps=" + std::to_string(count));
  EXPECT_EQ(lines.back(), "IA_RefreshCache SUCCESS");
}

TEST_F(AppExports, TwoCallersAtOnceResolveEachIconOnce) {
  InstallThree();
  auto first = std::async(std::launch::async, [&] { return All(); });
  auto second = std::async(std::launch::async, [&] { return All(); });
  EXPECT_EQ(first.get(), second.get());
}

TEST_F(AppExports, ManyApplicationsWithRegistryNamesAsLongAsTheyGet) {
  for (int i = 0; i < 60; ++i) {
    const std::string number = std::to_string(100 + i);
    Install({std::string(252, 'k') + number, "App" + number, "C:\\none\\" + number + ".exe", "",
             i % 3 == 0 ? kUser : kMachine, i % 3 == 1 ? View::k32 : View::k64});
  }
  library.IA_RefreshCache();
  EXPECT_EQ(Names(All()).size(), 60u);
  EXPECT_EQ(Names(Page(3, 0)).size(), 20u);
  EXPECT_EQ(Page(4, 0), "[]");
}

}  // namespace
}  // namespace tarnwick::tests
