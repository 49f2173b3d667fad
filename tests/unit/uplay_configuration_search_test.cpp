#include "launchers/uplay_configuration_search.h"

#include "desktop/desktop.h"
#include "desktop/launcher_files.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/hostile_texts.h"
#include "support/locked_path.h"
#include "support/uninstall_key.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <new>

namespace tarnwick {
namespace {

using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::DebugCapture;

const std::string kRoot = R"(C:\TarnwickTest\Uplay)";
const std::string kLauncher = kRoot + "\\Launcher";
const std::string kFile = kLauncher + R"(\cache\configuration\configurations)";
const std::string& kUninstall = tests::kUninstallKey;
const std::string kStart = "[UplayConfigurationSearch] Starting Uplay Configuration Search...";
const std::string kNothing = "[UplayConfigurationSearch] Scan completed! Found 0 games.";

std::string Entry(const std::string& relative, const std::string& append = {}, const std::string& id = {}) {
  return "- path:\n" + (relative.empty() ? "" : "relative: " + relative + "\n") +
         (append.empty() ? "" : "append: " + append + "\n") +
         (id.empty() ? "" : "register: Ubisoft\\Launcher\\Installs\\" + id + "\\InstallDir\n");
}

// A game of the install key `install`; without the id of its entry there is no launch address.
std::string Expected(const std::string& name, const std::string& exe, const std::string& id = {},
                     const std::string& install = "1") {
  return name + '|' + exe + '|' + (id.empty() ? "" : "uplay://launch/" + id + "/0") + '|' + kUninstall +
         "Uplay Install " + install + "||1|0|";
}

// A desktop with the Ubisoft launcher on it.
class UplayConfigurationSearch : public testing::Test {
 protected:
  UplayConfigurationSearch() {
    desktop_.String(kUninstall + "Uplay", "InstallLocation", kLauncher, View::k32);
    desktop_.Folder(kLauncher);
  }

  void Install(const std::string& id, const std::string& name, const std::string& folder,
               View view = View::k32) {
    const std::string key = kUninstall + "Uplay Install " + id;
    desktop_.String(key, "DisplayName", name, view);
    desktop_.String(key, "InstallLocation", folder, view);
  }

  // What a scan of this file finds.
  std::vector<std::string> Scan(const std::string& text) {
    desktop_.File(kFile, text);
    return tests::Describe(ScanUplayConfigurations());
  }

  desktop::Desktop desktop_;
};

TEST_F(UplayConfigurationSearch, ReportsAGameAndSaysSo) {
  const std::string folder = kRoot + "\\Игры\\Wren";
  desktop_.File(folder + "\\sub\\bin\\wren.exe");
  desktop_.File(kFile,
                desktop::UplayConfigurationsText({{"Зимородок 游戏", "123", "sub", "bin\\wren.exe", false}}));
  Install("123", "Зимородок 游戏", folder + "/");
  DebugCapture log;
  const std::string exe = folder + "\\sub\\bin\\wren.exe";
  EXPECT_THAT(tests::Describe(ScanUplayConfigurations()),
              ElementsAre(Expected("Зимородок 游戏", exe, "123", "123")));
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[UplayConfigurationSearch] Found: Зимородок 游戏 -> " + exe,
                                       "[UplayConfigurationSearch] Scan completed! Found 1 games."));
}

TEST(UplayConfigurationSearchWithoutLauncher, EndsWithTheCompletionLine) {
  DebugCapture log;
  EXPECT_THAT(ScanUplayConfigurations(), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, kNothing));
}

TEST_F(UplayConfigurationSearch, WithoutTheFileItEndsWithTheCompletionLine) {
  Install("1", "Wren", kRoot);
  DebugCapture log;
  EXPECT_THAT(ScanUplayConfigurations(), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, kNothing));
  desktop_.Folder(kFile);
  EXPECT_THAT(ScanUplayConfigurations(), IsEmpty()) << "a folder of that name is no file";
}

TEST_F(UplayConfigurationSearch, AFileThatCannotBeOpenedHoldsNothing) {
  desktop_.File(kFile, "root:\nname: Wren\n");
  const tests::LockedPath lock(kFile);
  DebugCapture log;
  EXPECT_THAT(ScanUplayConfigurations(), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, kNothing));
  EXPECT_THAT(ParseUplayConfigurations(kRoot + "\\nothing"), IsEmpty());
}

TEST_F(UplayConfigurationSearch, AFileOfTwoGigabytesEndsTheSearch) {
  desktop_.SparseFile(kFile, uint64_t{2} << 30);
  DebugCapture log;
  EXPECT_THROW(ScanUplayConfigurations(), std::bad_alloc);
  EXPECT_THAT(log.Lines(), ElementsAre(kStart)) << "nothing is logged of it here";
}

TEST_F(UplayConfigurationSearch, AByteThatEndsTextsOnWindowsEndsNoRecord) {
  desktop_.File(
      kFile, "\x0A\x05\x1A\x20\nroot:\r\nname: A\r\n\x0A\x05\x1A\x20\nroot:\nname: B\x1A\nroot:\nname: C\n");
  const auto records = ParseUplayConfigurations(kFile);
  ASSERT_THAT(records, SizeIs(3));
  EXPECT_EQ(records[0].name, "A");
  EXPECT_EQ(records[1].name, "B\x1A");
  EXPECT_EQ(records[2].name, "C");
}

TEST_F(UplayConfigurationSearch, NamesAreComparedByteForByte) {
  desktop_.File(kRoot + "\\w.exe");
  Install("1", "Wren™", kRoot);
  for (const char* name : {"wren™", "Wren", "Wren™ ", "Wren®"}) {
    EXPECT_THAT(Scan("root:\nname: " + std::string(name) + "\nonline:\n" + Entry("w.exe")), IsEmpty())
        << name;
  }
  EXPECT_THAT(Scan("root:\nname: Wren™\nonline:\n" + Entry("w.exe")),
              ElementsAre(Expected("Wren", kRoot + "\\w.exe")))
      << "reported without the sign";
}

TEST_F(UplayConfigurationSearch, TheOfflineEntryComesFirst) {
  desktop_.File(kRoot + "\\on.exe");
  Install("1", "Wren", kRoot);
  const std::string text =
      "root:\nname: Wren\nonline:\n" + Entry("on.exe", "", "11") + "offline:\n" + Entry("off.exe", "", "22");
  EXPECT_THAT(Scan(text), ElementsAre(Expected("Wren", kRoot + "\\on.exe", "22")))
      << "the online one, since the offline one is gone, but the offline one's id";
  desktop_.File(kRoot + "\\off.exe");
  EXPECT_THAT(Scan(text), ElementsAre(Expected("Wren", kRoot + "\\off.exe", "22")));
}

TEST_F(UplayConfigurationSearch, OnlyTheFirstEntryOfEachListIsTried) {
  desktop_.File(kRoot + "\\second.exe");
  Install("1", "Wren", kRoot);
  const std::string entries = Entry("first.exe") + Entry("second.exe");
  EXPECT_THAT(Scan("root:\nname: Wren\nonline:\n" + entries + "offline:\n" + entries), IsEmpty());
}

TEST_F(UplayConfigurationSearch, AFolderIsNoExecutable) {
  desktop_.Folder(kRoot + "\\w.exe");
  Install("1", "Wren", kRoot);
  EXPECT_THAT(Scan("root:\nname: Wren\nonline:\n" + Entry("w.exe")), IsEmpty());
  EXPECT_THAT(Scan("root:\nname: Wren\nonline:\n" + Entry("")), IsEmpty()) << "an entry without a path";
  EXPECT_THAT(Scan("root:\nname: Wren\n"), IsEmpty()) << "a record without an entry";
}

TEST_F(UplayConfigurationSearch, ARegistryTextAsThePathFindsNothing) {
  desktop_.File(kRoot + "\\w.exe");
  Install("1", "Wren", kRoot);
  EXPECT_THAT(Scan("root:\nname: Wren\nonline:\n" + Entry("", "", "5")), IsEmpty());
  EXPECT_EQ(ReadUplayConfigurations("root:\nonline:\n" + Entry("", "", "5")).at(0).installId, "5");
}

TEST_F(UplayConfigurationSearch, WithoutAnIdThereIsNoLaunchAddress) {
  desktop_.File(kRoot + "\\w.exe");
  Install("1", "Wren", kRoot);
  EXPECT_THAT(Scan("root:\nname: Wren\nonline:\n" + Entry("w.exe")),
              ElementsAre(Expected("Wren", kRoot + "\\w.exe")));
}

TEST_F(UplayConfigurationSearch, RecordsAreReportedInTheOrderOfTheFile) {
  desktop_.File(kRoot + "\\w.exe");
  Install("1", "A", kRoot);
  Install("2", "B", kRoot);
  const auto record = [](const std::string& name) {
    return "root:\nname: " + name + "\nonline:\n" + Entry("w.exe");
  };
  const std::string a = Expected("A", kRoot + "\\w.exe", "", "1");
  const std::string b = Expected("B", kRoot + "\\w.exe", "", "2");
  EXPECT_THAT(Scan(record("B") + record("C") + record("A") + record("B")), ElementsAre(b, a, b))
      << "a record that stands twice is reported twice";
}

TEST_F(UplayConfigurationSearch, AFileCutAnywhereGivesAGameOrNone) {
  desktop_.File(kRoot + "\\w.exe");
  Install("1", "Wren", kRoot);
  const std::string text = "root:\nname: Wren\nonline:\n" + Entry("w.exe");
  for (size_t size = 0; size <= text.size(); ++size) {
    desktop::Desktop cut;
    cut.File(kFile, text.substr(0, size));
    const ScanResults results = ScanUplayConfigurations();
    EXPECT_THAT(results, SizeIs(size + 1 < text.size() ? 0 : 1)) << size;
  }
}

TEST_F(UplayConfigurationSearch, FilesWithoutMeaningHoldNoGame) {
  Install("1", "", kRoot);
  for (const std::string& text : tests::MeaninglessTexts("root:\nname: Wren\n"))
    EXPECT_THAT(Scan(text), IsEmpty());
}

// The Uninstall keys

UplayInstallEntry FindInstall(const std::string& id) {
  const auto installs = FindUplayInstalls();
  const auto found = std::find_if(installs.begin(), installs.end(), [&](const UplayInstallEntry& entry) {
    return entry.keyPath == kUninstall + id;
  });
  return found == installs.end() ? UplayInstallEntry() : *found;
}

TEST_F(UplayConfigurationSearch, ReadsTheInstallKeys) {
  Install("77", "Wren", "C:/Games/Wren//\\");
  const UplayInstallEntry entry = FindInstall("Uplay Install 77");
  EXPECT_EQ(entry.valueName, "InstallLocation");
  EXPECT_EQ(entry.installLocation, "C:/Games/Wren");
  EXPECT_EQ(entry.displayName, "Wren");
  EXPECT_EQ(entry.installSuffix, "77");
}

TEST_F(UplayConfigurationSearch, AKeyCountsByItsName) {
  for (const char* name :
       {"Uplay Install", "xUplay Install y z", "uplay install 1", "Uplay  Install 2", "Uplay 3"}) {
    desktop_.String(kUninstall + name, "DisplayName", "n", View::k32);
    desktop_.String(kUninstall + name, "InstallLocation", "C:\\x", View::k32);
  }
  EXPECT_EQ(FindInstall("Uplay Install").installSuffix, "Install")
      << "the name's only blank stands before it";
  EXPECT_EQ(FindInstall("xUplay Install y z").installSuffix, "z");
  for (const char* name : {"uplay install 1", "Uplay  Install 2", "Uplay 3"}) {
    EXPECT_EQ(FindInstall(name).keyPath, "") << name;
  }
}

TEST_F(UplayConfigurationSearch, AKeyNeedsBothValues) {
  Install("1", "", "C:\\x");
  Install("2", "Wren", "");
  desktop_.Key(kUninstall + "Uplay Install 3", View::k32);
  for (const char* name : {"Uplay Install 1", "Uplay Install 2", "Uplay Install 3"}) {
    EXPECT_EQ(FindInstall(name).keyPath, "") << name;
  }
}

TEST_F(UplayConfigurationSearch, BothViewsAreReadThe32BitViewFirst) {
  Install("1", "A", "C:\\32", View::k32);
  Install("2", "B", "C:\\64", View::k64);
  Install("3", "C", "C:\\32", View::k32);
  Install("3", "C", "C:\\64", View::k64);
  std::vector<std::string> keys;
  for (const UplayInstallEntry& entry : FindUplayInstalls()) {
    keys.push_back(entry.keyPath.substr(kUninstall.size()) + " " + entry.installLocation);
  }
  EXPECT_THAT(keys, ElementsAre("Uplay Install 1 C:\\32", "Uplay Install 3 C:\\64", "Uplay Install 2 C:\\64",
                                "Uplay Install 3 C:\\64"))
      << "names from each view, values from the native one where the key is in it";
}

TEST_F(UplayConfigurationSearch, OfEqualNamesTheLaterKeyCounts) {
  desktop_.File(kRoot + "\\1\\w.exe");
  desktop_.File(kRoot + "\\2\\w.exe");
  Install("1", "Wren", kRoot + "\\1");
  Install("2", "Wren", kRoot + "\\2");
  EXPECT_THAT(Scan("root:\nname: Wren\nonline:\n" + Entry("w.exe")),
              ElementsAre(Expected("Wren", kRoot + "\\2\\w.exe", "", "2")));
}

TEST(UplayExePath, JoinsWhatIsThere) {
  EXPECT_EQ(BuildUplayExePath("C:\\a", "b", "c.exe"), "C:\\a\\b\\c.exe");
  EXPECT_EQ(BuildUplayExePath("C:\\a", "", "c.exe"), "C:\\a\\c.exe");
  EXPECT_EQ(BuildUplayExePath("C:\\a", "b", ""), "");
  EXPECT_EQ(BuildUplayExePath("", "", "c.exe"), "c.exe");
}

}  // namespace
}  // namespace tarnwick
