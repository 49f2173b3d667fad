// Why an application is in the list or isn't, told of real Uninstall keys.
#include "host/explain/app_explanation.h"

#include "common/wide_text.h"
#include "desktop/description.h"
#include "inventory/app_cache.h"
#include "inventory/app_queries.h"
#include "inventory/icons.h"
#include "support/debug_capture.h"
#include "support/file_bytes.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace tarnwick {
namespace {

using desktop::Desktop;
using desktop::ExecutableOptions;
using desktop::View;
using host::AllListed;
using host::AppExplanation;
using host::AppExplanations;
using host::AppVerdict;
using host::ExplainApplications;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr uint64_t kMebibyte = 1u << 20;
const std::string kRoot = "C:\\TarnwickTest\\AppExplanation";
const std::string kMachine = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)";
const std::string kUser = R"(HKEY_CURRENT_USER\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)";

class HostAppExplanation : public testing::Test {
 protected:
  void Values(const std::string& key, const std::map<std::string, std::string>& values,
              View view = View::k64) {
    for (const auto& [name, text] : values) d.String(key, name, text, view);
  }

  void Program(const std::string& path, uint64_t size = 0) {
    ExecutableOptions options;
    options.icons = {{{{32, 0x3366CC}, {256, 0x3366CC}}}};
    options.size = size;
    d.Executable(kRoot + "\\" + path, options);
  }

  // The one application of that name.
  static AppExplanation Explained(const std::string& name) {
    const AppExplanations all = ExplainApplications(name);
    EXPECT_THAT(all.applications, SizeIs(1)) << name;
    return all.applications.empty() ? AppExplanation() : all.applications.front();
  }

  Desktop d;
  const tests::DebugCapture quiet;
};

TEST_F(HostAppExplanation, AListedOneNamesItsExecutableFolderAndIcon) {
  Program("pad\\fernpad.exe");
  Values(kMachine + "Fernpad_is1", {{"DisplayName", "Fernpad Editor"},
                                    {"DisplayIcon", kRoot + "\\pad\\fernpad.exe,0"},
                                    {"InstallLocation", kRoot + "\\pad"}});
  const AppExplanation app = Explained("fernpad editor");
  EXPECT_EQ(app.verdict, AppVerdict::kListed);
  EXPECT_EQ(app.key, kMachine + "Fernpad_is1");
  EXPECT_EQ(app.view, RegistryView::k64);
  EXPECT_EQ(app.listExecutable, kRoot + "\\pad\\fernpad.exe");
  EXPECT_EQ(app.pageExecutable, app.listExecutable);
  EXPECT_EQ(app.folder, kRoot + "\\pad");
  EXPECT_EQ(app.folderReason, "its InstallLocation");
  EXPECT_EQ(app.icon.file, kRoot + "\\pad\\fernpad.exe");
  EXPECT_EQ(app.icon.call, "PrivateExtractIconsW #0 at 256 pixels");
  EXPECT_THAT(app.icon.searched, IsEmpty());
  EXPECT_TRUE(AllListed(ExplainApplications("fernpad editor")));
}

TEST_F(HostAppExplanation, NamesAreComparedWithoutCaseAndAccentsAndByKeyToo) {
  Values(kMachine + "TarnwickChateau", {{"DisplayName", "Ch\u00E2teau\u2122  Brumaire"}});
  EXPECT_EQ(Explained("CHATEAU BRUM").name, "Ch\u00E2teau\u2122  Brumaire");
  EXPECT_EQ(Explained("tarnwickchateau").name, "Ch\u00E2teau\u2122  Brumaire");
}

TEST_F(HostAppExplanation, AHiddenComponentIsOne) {
  Values(kMachine + "Hid", {{"DisplayName", "Hidden Heron"}, {"DisplayIcon", "C:\\heron.exe"}});
  d.Dword(kMachine + "Hid", "SystemComponent", 1, View::k64);
  const AppExplanation app = Explained("hidden heron");
  EXPECT_EQ(app.verdict, AppVerdict::kHidden);
  EXPECT_THAT(app.reason, HasSubstr("SystemComponent is 1"));
  EXPECT_FALSE(app.icon.asked);
  EXPECT_FALSE(AllListed(ExplainApplications("hidden heron")));
}

TEST_F(HostAppExplanation, AnotherSystemComponentHidesNothing) {
  Values(kMachine + "Hid", {{"DisplayName", "Hidden Heron"}, {"DisplayIcon", "C:\\heron.exe"}});
  d.Dword(kMachine + "Hid", "SystemComponent", 2, View::k64);
  EXPECT_EQ(Explained("hidden heron").verdict, AppVerdict::kListed);
}

TEST_F(HostAppExplanation, WithoutANameItIsNoApplication) {
  Values(kMachine + "TarnwickNameless", {{"DisplayIcon", "C:\\heron.exe"}});
  const AppExplanation app = Explained("tarnwicknameless");
  EXPECT_EQ(app.verdict, AppVerdict::kNameless);
  EXPECT_EQ(app.reason, "key " + kMachine + "TarnwickNameless has no value DisplayName (64-bit view)");
}

TEST_F(HostAppExplanation, AnEmptyNameIsNone) {
  Values(kMachine + "TarnwickNameless", {{"DisplayName", ""}});
  EXPECT_EQ(Explained("tarnwicknameless").reason, "its DisplayName is empty");
}

TEST_F(HostAppExplanation, AnIconThatNamesNoExecutableKeepsItOut) {
  Values(kMachine + "Rook", {{"DisplayName", "Rookery Tool"}});
  EXPECT_THAT(Explained("rookery").reason, HasSubstr("has no DisplayIcon"));
  Values(kMachine + "Rook", {{"DisplayIcon", "C:\\Rook\\rook.ico"}});
  EXPECT_EQ(Explained("rookery").reason, "its DisplayIcon names no .exe: C:\\Rook\\rook.ico");
  Values(kMachine + "Rook", {{"DisplayIcon", "\"C:\\Rook\\unins000.exe\",0"}});
  const AppExplanation app = Explained("rookery");
  EXPECT_EQ(app.reason, "its DisplayIcon names an uninstaller: \"C:\\Rook\\unins000.exe\",0");
  EXPECT_EQ(app.verdict, AppVerdict::kNoExecutable);
  EXPECT_FALSE(app.icon.asked);
}

TEST_F(HostAppExplanation, ThePageAndTheWholeListMayShowItDifferently) {
  Values(kMachine + "Rook", {{"DisplayName", "Rookery Tool"}, {"DisplayIcon", "\"C:\\Rook\\rook.exe\",12"}});
  const AppExplanations all = ExplainApplications("rookery");
  EXPECT_EQ(all.applications.at(0).listExecutable, "C:\\Rook\\rook.exe");
  EXPECT_EQ(all.applications.at(0).pageExecutable, "\"C:\\Rook\\rook.exe\",12");
  EXPECT_THAT(AppExplanationsText(all), HasSubstr("  a page of the list shows \"C:\\Rook\\rook.exe\",12\n"));
}

TEST_F(HostAppExplanation, AFolderIsResolvedByTheIconOrTheUninstaller) {
  Program("rook\\rook.exe");
  Program("rook\\bin\\unins000.exe");
  Values(kMachine + "Rook", {{"DisplayName", "Rookery Tool"},
                             {"InstallLocation", kRoot + "\\gone"},
                             {"DisplayIcon", kRoot + "\\rook\\rook.exe,0"},
                             {"UninstallString", kRoot + "\\rook\\bin\\unins000.exe /S"}});
  AppExplanation app = Explained("rookery");
  EXPECT_EQ(app.folder, kRoot + "\\rook");
  EXPECT_EQ(app.folderReason,
            "the folder of its DisplayIcon, since its InstallLocation " + kRoot + "\\gone is no folder");
  Values(kMachine + "Rook", {{"DisplayIcon", "C:\\none.exe"}, {"InstallLocation", ""}});
  app = Explained("rookery");
  EXPECT_EQ(app.folder, kRoot + "\\rook\\bin");
  EXPECT_EQ(app.folderReason, "the folder of its UninstallString, since it has no InstallLocation");
  Values(kMachine + "Rook", {{"UninstallString", "MsiExec.exe /X{1}"}});
  app = Explained("rookery");
  EXPECT_EQ(app.folder, "");
  EXPECT_THAT(app.folderReason, HasSubstr("neither its DisplayIcon nor its UninstallString"));
}

TEST_F(HostAppExplanation, TheSearchForAnIconIsToldWithItsScores) {
  Program("rook\\setup.exe");
  Program("rook\\bin\\rook.exe", 3 * kMebibyte);
  Program("rook\\bin\\rookclient.exe", kMebibyte);
  Values(kMachine + "Rook", {{"DisplayName", "Rookery Tool"},
                             {"InstallLocation", kRoot + "\\rook"},
                             {"DisplayIcon", kRoot + "\\rook\\setup.exe"}});
  const AppExplanations all = ExplainApplications("rookery");
  const host::IconExplanation& icon = all.applications.at(0).icon;
  EXPECT_THAT(icon.searched, ElementsAre(kRoot + "\\rook", kRoot + "\\rook\\bin"));
  EXPECT_THAT(icon.candidates, SizeIs(3));
  EXPECT_EQ(icon.winner, kRoot + "\\rook\\bin\\rookclient.exe");
  EXPECT_EQ(icon.file, icon.winner);
  EXPECT_THAT(AppExplanationsText(all),
              HasSubstr("    " + kRoot + "\\rook\\bin\\rookclient.exe scores 51.0, the most\n"));
  EXPECT_THAT(AppExplanationsText(all), HasSubstr("    " + kRoot + "\\rook\\bin\\rook.exe scores 3.0\n"));
}

TEST_F(HostAppExplanation, WithoutAnyIconTheGenericOneIsAskedFor) {
  d.Folder(kRoot + "\\rook");
  Values(kMachine + "Rook", {{"DisplayName", "Rookery Tool"},
                             {"InstallLocation", kRoot + "\\rook"},
                             {"DisplayIcon", kRoot + "\\rook\\setup.exe"}});
  const AppExplanation app = Explained("rookery");
  EXPECT_EQ(app.icon.winner, "");
  EXPECT_THAT(app.icon.candidates, IsEmpty());
  ASSERT_FALSE(app.heard.empty());
  EXPECT_EQ(app.heard.back().question.subject, kGenericApplication);
}

TEST_F(HostAppExplanation, OneThatIsInTwoViewsIsToldTwice) {
  for (const View view : {View::k64, View::k32}) {
    Values(kMachine + "Rook", {{"DisplayName", "Rookery Tool"}, {"DisplayIcon", "C:\\rook.exe"}}, view);
  }
  Values(kUser + "Rook", {{"DisplayName", "Rookery Tool"}}, View::kNative);
  const AppExplanations all = ExplainApplications("rookery");
  ASSERT_THAT(all.applications, SizeIs(3));
  EXPECT_EQ(all.applications[1].view, RegistryView::k32);
  EXPECT_THAT(all.applications[0].alsoListed, ElementsAre(kMachine + "Rook (32-bit view)"));
  EXPECT_THAT(all.applications[1].alsoListed, ElementsAre(kMachine + "Rook (64-bit view)"));
  EXPECT_THAT(all.applications[2].alsoListed, SizeIs(2));
  EXPECT_FALSE(AllListed(all));
}

TEST_F(HostAppExplanation, WhatNobodyHasIsSaidSo) {
  const AppExplanations all = ExplainApplications("no such thing as this");
  EXPECT_THAT(all.applications, IsEmpty());
  EXPECT_FALSE(AllListed(all));
  EXPECT_EQ(AppExplanationsText(all), "No Uninstall entry is called 'no such thing as this' (" +
                                          std::to_string(all.keys) + " asked).\n");
}

// The sum of them is the library's own list.
TEST_F(HostAppExplanation, WhatIsListedIsWhatTheLibraryLists) {
  ApplyDescription(d, tests::ReadSource("desktop/samples/sample-desktop.json"));
  std::vector<std::string> listed;
  for (const AppExplanation& app : ExplainApplications("").applications) {
    if (app.verdict == AppVerdict::kListed) listed.push_back(app.name + " " + app.listExecutable);
  }
  RefreshCacheNoLock();
  const std::string list = common::Narrow(AppsListJson(g_appCache, nullptr, [](AppRecord&) {}));
  std::vector<std::string> expected;
  for (const auto& app : nlohmann::json::parse(list)) {
    expected.push_back(app["name"].get<std::string>() + " " + app["loc"].get<std::string>());
  }
  EXPECT_GT(expected.size(), 5u);
  EXPECT_EQ(listed, expected);
}

TEST_F(HostAppExplanation, TheJsonHasEverything) {
  Program("pad\\fernpad.exe");
  Values(kMachine + "Fernpad_is1",
         {{"DisplayName", "Fernpad Editor"}, {"DisplayIcon", kRoot + "\\pad\\fernpad.exe,0"}});
  const nlohmann::ordered_json json = AppExplanationsJson(ExplainApplications("fernpad"));
  const auto& app = json.at("applications").at(0);
  EXPECT_EQ(json.at("subject"), "fernpad");
  EXPECT_EQ(app.at("verdict"), "listed");
  EXPECT_EQ(app.at("view"), "64-bit");
  EXPECT_EQ(app.at("icon").at("file"), kRoot + "\\pad\\fernpad.exe");
  EXPECT_GT(app.at("questions").size(), 10u);
  for (const auto& question : app.at("questions")) {
    EXPECT_THAT(question.at("answer").get<std::string>(), Not(testing::EndsWith(std::string(1, '\0'))));
  }
}

TEST_F(HostAppExplanation, VerboseTellsEveryQuestion) {
  Values(kMachine + "Rook", {{"DisplayName", "Rookery Tool"}, {"Publisher", "Corvid House"}});
  const AppExplanations all = ExplainApplications("rookery");
  const std::string line =
      "    read value Publisher of key " + kMachine + "Rook (64-bit view): Corvid House\n";
  EXPECT_THAT(AppExplanationsText(all, true), HasSubstr(line));
  EXPECT_THAT(AppExplanationsText(all), Not(HasSubstr(line)));
}

}  // namespace
}  // namespace tarnwick
