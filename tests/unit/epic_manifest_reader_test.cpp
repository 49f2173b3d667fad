#include "launchers/epic_manifest_reader.h"

#include "launchers/json_text_reader.h"
#include "support/hex_page.h"
#include "support/hostile_texts.h"
#include "support/samples.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::IsEmpty;
using tests::Enormous;
using tests::kHuge;
using tests::Repeated;

const std::string kItem = R"({
	"bIsIncompleteInstall": true,
	"LaunchExecutable": "bin\\wren.exe",
	"AppName": "Wren",
	"BaseURLs": ["http://host/Builds/x/default"],
	"AppCategories": ["public", "plugins"],
	"DisplayName": "Wren \"II\" — Игра 游戏",
	"InstallLocation": "C:\\Games\\Wren/x",
	"MainGameAppName": "Main"
})";

TEST(EpicManifestReader, ReadsAManifest) {
  const EpicManifestEntry entry = ReadEpicManifest(kItem);
  EXPECT_EQ(entry.AppName, "Wren");
  EXPECT_EQ(entry.MainGameAppName, "Main");
  EXPECT_EQ(entry.DisplayName, R"(Wren \"II\" — Игра 游戏)") << "an escaped quote keeps its backslash";
  EXPECT_EQ(entry.InstallLocation, R"(C:\\Games\\Wren/x)") << "doubled backslashes stay";
  EXPECT_EQ(entry.LaunchExecutable, R"(bin\\wren.exe)");
  EXPECT_EQ(entry.AppVersion, "");
  EXPECT_TRUE(entry.bIsIncompleteInstall);
}

TEST(EpicManifestReader, CategoriesAndAddressesAreNeverRead) {
  const EpicManifestEntry entry = ReadEpicManifest(kItem);
  EXPECT_THAT(entry.AppCategories, IsEmpty());
  EXPECT_EQ(entry.baseUrlSegment, "Wren") << "the address's segment would be x";
}

TEST(EpicManifestReader, TheExecutableStandsInForAMissingLaunchExecutable) {
  EXPECT_EQ(ReadEpicManifest(R"({"Executable":"b.exe"})").LaunchExecutable, "b.exe");
  EXPECT_EQ(ReadEpicManifest(R"({"Executable":"b.exe","LaunchExecutable":""})").LaunchExecutable, "b.exe");
  EXPECT_EQ(ReadEpicManifest(R"({"Executable":"b.exe","LaunchExecutable":"a.exe"})").LaunchExecutable,
            "a.exe");
}

TEST(EpicManifestReader, ReadsAnObjectOfTheInstallationList) {
  const EpicManifestEntry entry = ReadLauncherInstalledObject(
      R"({"InstallLocation":"D:\\Игры\\Owl","AppName":"Owl","AppVersion":"1.2","LaunchExecutable":"o.exe",)"
      R"("MainGameAppName":"Other","DisplayName":"Other","bIsIncompleteInstall":true})");
  EXPECT_EQ(entry.AppName, "Owl");
  EXPECT_EQ(entry.MainGameAppName, "Owl") << "a copy, so that the game is never taken for an add-on";
  EXPECT_EQ(entry.DisplayName, "Owl");
  EXPECT_EQ(entry.InstallLocation, R"(D:\\Игры\\Owl)");
  EXPECT_EQ(entry.AppVersion, "1.2");
  EXPECT_EQ(entry.LaunchExecutable, "");
  EXPECT_EQ(entry.baseUrlSegment, "");
  EXPECT_FALSE(entry.bIsIncompleteInstall);
}

TEST(EpicManifestReader, AManifestCutAnywhereGivesWholeTextsOrNone) {
  const EpicManifestEntry whole = ReadEpicManifest(kItem);
  for (size_t size = 0; size < kItem.size(); ++size) {
    const EpicManifestEntry entry = ReadEpicManifest(kItem.substr(0, size));
    EXPECT_TRUE(entry.AppName.empty() || entry.AppName == whole.AppName) << size;
    EXPECT_TRUE(entry.DisplayName.empty() || entry.DisplayName == whole.DisplayName) << size;
    EXPECT_TRUE(entry.InstallLocation.empty() || entry.InstallLocation == whole.InstallLocation) << size;
    EXPECT_TRUE(entry.LaunchExecutable.empty() || entry.LaunchExecutable == whole.LaunchExecutable) << size;
  }
}

TEST(EpicManifestReader, AListCutAnywhereGivesItsWholeObjects) {
  const std::string list = R"({"InstallationList":[{"AppName":"A"},{"AppName":"B"}]})";
  for (size_t size = 0; size < list.size(); ++size) {
    const std::string cut = list.substr(0, size);
    const auto objects = JsonFindObjectArray(cut, "InstallationList");
    ASSERT_LE(objects.size(), 2u);
    if (objects.size() > 0) {
      EXPECT_EQ(objects[0], R"({"AppName":"A"})");
    }
    if (objects.size() > 1) {
      EXPECT_EQ(objects[1], R"({"AppName":"B"})");
    }
  }
}

TEST(EpicManifestReader, MeaninglessTextsGiveAnEmptyEntry) {
  for (const std::string& text : tests::MeaninglessTexts(kItem)) {
    const EpicManifestEntry entry = ReadEpicManifest(text);
    EXPECT_EQ(entry.AppName + entry.DisplayName + entry.InstallLocation + entry.LaunchExecutable, "");
    EXPECT_THAT(JsonFindObjectArray(text, "InstallationList"), IsEmpty());
  }
}

TEST(EpicManifestReader, HugeTextsAreReadOnce) {
  for (const char* pattern : {"\"", "{", "}", "[", "x", "\"AppName\"", "\"AppName", "{\"}"}) {
    const std::string text = Enormous(pattern);
    EXPECT_EQ(ReadEpicManifest(text).InstallLocation, "") << pattern;
    EXPECT_LE(JsonFindObjectArray("\"InstallationList\":[" + text, "InstallationList").size(), kHuge)
        << pattern;
  }
}

TEST(EpicManifestReader, AHugeArrayOfStringsIsReadOnce) {
  const std::string text = "{\"AppCategories\":[" + Repeated("\"plugins\",", kHuge) + "]}";
  EXPECT_THAT(ReadEpicManifest(text).AppCategories, IsEmpty());
}

TEST(EpicManifestReader, TheExampleOfTheManifestPage) {
  const EpicManifestEntry entry = ReadEpicManifest(tests::HexExample("epic-item"));
  EXPECT_EQ(entry.AppName, "Wren");
  EXPECT_EQ(entry.MainGameAppName, "Wren");
  EXPECT_EQ(entry.DisplayName, "Зимородок");
  EXPECT_EQ(entry.InstallLocation, R"(C:\\Games\\Wren)");
  EXPECT_EQ(entry.LaunchExecutable, "bin/wren.exe");
  EXPECT_THAT(entry.AppCategories, IsEmpty());
}

TEST(EpicManifestReader, TheExampleOfTheListPage) {
  const std::string text = tests::HexExample("launcher-installed");
  const auto objects = JsonFindObjectArray(text, "InstallationList");
  ASSERT_EQ(objects.size(), 2u);
  EXPECT_EQ(ReadLauncherInstalledObject(objects[0]).AppName, "Wren");
  EXPECT_EQ(ReadLauncherInstalledObject(objects[1]).InstallLocation, "D:/Игры/Owl");
}

TEST(EpicManifestReader, ReadsARealManifest) {
  const auto text = tests::Sample("epic/2022_FarmingSimulator19.item");
  if (!text) GTEST_SKIP() << "TARNWICK_SAMPLES names no folder with this sample";
  const EpicManifestEntry entry = ReadEpicManifest(*text);
  EXPECT_EQ(entry.AppName, "Stellula");
  EXPECT_EQ(entry.MainGameAppName, "Stellula");
  EXPECT_EQ(entry.DisplayName, "Farming Simulator 19");
  EXPECT_EQ(entry.InstallLocation, R"(C:\\Games\\Epic\\FarmingSimulator19)");
  EXPECT_EQ(entry.LaunchExecutable, "FarmingSimulator2019.exe");
  EXPECT_FALSE(entry.bIsIncompleteInstall);
  EXPECT_THAT(entry.AppCategories, IsEmpty());
}

}  // namespace
}  // namespace tarnwick
