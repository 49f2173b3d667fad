#include "launchers/uwp_packages.h"

#include "desktop/desktop.h"
#include "support/debug_capture.h"
#include "support/failing_allocation.h"
#include "support/locked_path.h"
#include "support/store_world.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using desktop::Desktop;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using tests::kPackagesKey;
using tests::kStoreFolder;

const std::string kApps = kStoreFolder + "WindowsApps";
const std::string kQuerying = "[UWP] Querying packages via Registry: " + kPackagesKey;

std::string Text(const UwpPackage& package) {
  return package.fullName + " | " + package.packageFamilyName + " | " + package.displayName + " | " +
         package.publisher + " | " + package.installedLocation + (package.isExcluded ? " | excluded" : "");
}

std::vector<std::string> Texts(const std::vector<UwpPackage>& packages) {
  std::vector<std::string> texts;
  for (const UwpPackage& package : packages) texts.push_back(Text(package));
  return texts;
}

TEST(UwpPackages, ReadsTheRegistry) {
  Desktop desktop;
  const std::string folder = tests::RegisterPackage(desktop, "Игра", "Моя 游戏 é");
  desktop.File(folder + R"(\AppxManifest.xml)", tests::Manifest("Manifest's name", "a.exe"));
  tests::DebugCapture capture;
  EXPECT_THAT(
      Texts(QueryUwpPackages()),
      ElementsAre("Игра_1.0.0.0_x64__8wekyb3d8bbwe | Игра_8wekyb3d8bbwe | Моя 游戏 é | Studio | " + folder));
  EXPECT_THAT(capture.Lines(), ElementsAre(kQuerying, "[UWP] Found 1 packages via Registry."));
}

TEST(UwpPackages, DiscardsResourceReferences) {
  Desktop desktop;
  tests::RegisterPackage(desktop, "A", "ms-resource:AppName");
  tests::RegisterPackage(desktop, "B", "@{B?ms-resource://B/AppName}");
  const auto packages = QueryUwpPackages();
  ASSERT_EQ(packages.size(), 2u);
  EXPECT_EQ(packages[0].displayName, "");
  EXPECT_EQ(packages[1].displayName, "@{B?ms-resource://B/AppName}");
}

TEST(UwpPackages, LeavesTheLocationEmptyWhereNoFolderIsRegistered) {
  Desktop desktop;
  desktop.String(kPackagesKey + R"(\A_1_x64__p)", "DisplayName", "A");
  EXPECT_THAT(Texts(QueryUwpPackages()), ElementsAre("A_1_x64__p | A_p | A |  | "));
}

TEST(UwpPackages, TakesTheFamilyFromTheFullNameWhereNoneIsRegistered) {
  EXPECT_EQ(PackageFamilyNameOf("Studio.Saga_1.0.0.0_x64__8wekyb3d8bbwe"), "Studio.Saga_8wekyb3d8bbwe");
  EXPECT_EQ(PackageFamilyNameOf("Studio.Saga_1.0.0.0_neutral_split.scale-100_8wekyb3d8bbwe"),
            "Studio.Saga_8wekyb3d8bbwe");
  EXPECT_EQ(PackageFamilyNameOf("Studio.Saga"), "");
  EXPECT_EQ(PackageFamilyNameOf("_x"), "");
  EXPECT_EQ(PackageFamilyNameOf(""), "");
}

TEST(UwpPackages, ExcludesFrameworksAndResourcePackages) {
  Desktop desktop;
  for (const std::string element : {"Framework", "ResourcePackage"}) {
    desktop.File(tests::RegisterPackage(desktop, element, "Runtime") + R"(\AppxManifest.xml)",
                 tests::FrameworkManifest(element));
  }
  for (const UwpPackage& package : QueryUwpPackages()) EXPECT_TRUE(package.isExcluded) << package.fullName;
}

TEST(UwpPackages, FallsBackOnTheTwoFoldersOfPackages) {
  tests::DebugCapture capture;
  EXPECT_THAT(QueryUwpPackages(), IsEmpty());
  EXPECT_THAT(
      capture.Lines(),
      ElementsAre(kQuerying, "[UWP] Registry query returned no packages, attempting fallback...",
                  "[UWP] Falling back to file system scan.",
                  R"([UWP] Path does not exist or is not a directory: C:\Program Files\WindowsApps)",
                  R"([UWP] Path does not exist or is not a directory: C:\Program Files (x86)\WindowsApps)"));
}

TEST(UwpPackages, FallsBackWhereTheKeyHasNoSubkeys) {
  Desktop desktop;
  desktop.Key(kPackagesKey);
  desktop.File(R"(C:\Program Files\WindowsApps\A_1_x64__p\AppxManifest.xml)", tests::Manifest("A", "a.exe"));
  desktop.File(R"(C:\Program Files (x86)\WindowsApps\B_1_x86__p\AppxManifest.xml)",
               tests::Manifest("B", "b.exe"));
  tests::DebugCapture capture;
  EXPECT_THAT(
      Texts(QueryUwpPackages()),
      ElementsAre(R"(A_1_x64__p | A_p | A | Studio | C:\Program Files\WindowsApps\A_1_x64__p)",
                  R"(B_1_x86__p | B_p | B | Studio | C:\Program Files (x86)\WindowsApps\B_1_x86__p)"));
  EXPECT_THAT(
      capture.LinesWith("[UWP] S"),
      ElementsAre(
          R"([UWP] Scanning directory: C:\Program Files\WindowsApps)",
          R"([UWP] Scanned 1 directories in C:\Program Files\WindowsApps, found 1 packages with manifests.)",
          R"([UWP] Scanning directory: C:\Program Files (x86)\WindowsApps)",
          R"([UWP] Scanned 1 directories in C:\Program Files (x86)\WindowsApps, found 1 packages with manifests.)"));
}

TEST(UwpPackages, TakesDirectSubfoldersWithAManifest) {
  Desktop desktop;
  desktop.File(kApps + R"(\Игра_1_x64__p\AppxManifest.xml)", tests::Manifest("Игра 游戏", "a.exe"));
  desktop.File(kApps + R"(\Runtime_1_x64__p\AppxManifest.xml)", tests::FrameworkManifest("Framework"));
  desktop.File(kApps + R"(\Named\AppxManifest.xml)", tests::Manifest("ms-resource:Name", "a.exe"));
  desktop.File(kApps + R"(\Deep_1_x64__p\Below_1_x64__p\AppxManifest.xml)", tests::Manifest("Deep", "a.exe"));
  desktop.Folder(kApps + R"(\Folder_1_x64__p\AppxManifest.xml)");
  desktop.File(kApps + R"(\AppxManifest.xml)", tests::Manifest("Stray", "a.exe"));
  tests::DebugCapture capture;
  EXPECT_THAT(Texts(ScanPackageFolders({kApps})),
              UnorderedElementsAre(
                  "Игра_1_x64__p | Игра_p | Игра 游戏 | Studio | " + kApps + R"(\Игра_1_x64__p)",
                  "Runtime_1_x64__p | Runtime_p | Runtime |  | " + kApps + R"(\Runtime_1_x64__p | excluded)",
                  "Named |  |  | Studio | " + kApps + R"(\Named)"));
  EXPECT_THAT(capture.Lines(),
              ElementsAre("[UWP] Scanning directory: " + kApps,
                          "[UWP] Scanned 5 directories in " + kApps + ", found 3 packages with manifests."));
}

TEST(UwpPackages, PassesOverAFileOfTheFoldersName) {
  Desktop desktop;
  desktop.File(kApps);
  tests::DebugCapture capture;
  EXPECT_THAT(ScanPackageFolders({kApps}), IsEmpty());
  EXPECT_THAT(capture.Lines(), ElementsAre("[UWP] Path does not exist or is not a directory: " + kApps));
}

TEST(UwpPackages, SaysThatAFolderCanNotBeListed) {
  Desktop desktop;
  desktop.File(kApps + R"(\A_1_x64__p\AppxManifest.xml)", tests::Manifest("A", "a.exe"));
  desktop.Folder(kStoreFolder + "Empty");
  const tests::LockedPath locked(kApps);
  tests::DebugCapture capture;
  EXPECT_THAT(ScanPackageFolders({kApps, kStoreFolder + "Empty"}), IsEmpty());
  const auto lines = capture.Lines();
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0], "[UWP] Scanning directory: " + kApps);
  EXPECT_THAT(lines[1], testing::StartsWith("[UWP] Error scanning " + kApps + ": "));
  EXPECT_EQ(lines[2], "[UWP] Note: WindowsApps directory may require special permissions.");
  EXPECT_EQ(lines[4],
            "[UWP] Scanned 0 directories in " + kStoreFolder + "Empty, found 0 packages with manifests.");
}

TEST(UwpPackages, GoesOnBehindAPackageThatFails) {
  Desktop desktop;
  desktop.File(kApps + R"(\A_1_x64__p\AppxManifest.xml)",
               tests::Manifest(std::string(200'000, 'a'), "a.exe"));
  desktop.File(kApps + R"(\B_1_x64__p\AppxManifest.xml)", tests::Manifest("B", "b.exe"));
  tests::DebugCapture capture;
  std::vector<UwpPackage> packages;
  {
    tests::FailingAllocation failing(100'000);
    packages = ScanPackageFolders({kApps});
  }
  EXPECT_THAT(Texts(packages), ElementsAre("B_1_x64__p | B_p | B | Studio | " + kApps + R"(\B_1_x64__p)"));
  EXPECT_THAT(capture.Lines(),
              ElementsAre("[UWP] Scanning directory: " + kApps,
                          "[UWP] Error processing package A_1_x64__p: std::bad_alloc",
                          "[UWP] Scanned 2 directories in " + kApps + ", found 1 packages with manifests."));
}

TEST(UwpPackages, GoesOnBehindARegisteredPackageThatFails) {
  Desktop desktop;
  desktop.File(tests::RegisterPackage(desktop, "A", "A") + R"(\AppxManifest.xml)",
               tests::Manifest(std::string(200'000, 'a'), "a.exe"));
  desktop.File(tests::RegisterPackage(desktop, "B", "B") + R"(\AppxManifest.xml)",
               tests::Manifest("B", "b.exe"));
  tests::DebugCapture capture;
  std::vector<UwpPackage> packages;
  {
    tests::FailingAllocation failing(100'000);
    packages = QueryUwpPackages();
  }
  EXPECT_THAT(Texts(packages), ElementsAre("B_1.0.0.0_x64__8wekyb3d8bbwe | B_8wekyb3d8bbwe | B | Studio | " +
                                           kStoreFolder + "B"));
  EXPECT_THAT(
      capture.Lines(),
      ElementsAre(kQuerying, "[UWP] Error processing package A_1.0.0.0_x64__8wekyb3d8bbwe: std::bad_alloc",
                  "[UWP] Found 1 packages via Registry."));
}

TEST(UwpPackages, ReadsNoManifestWhereThereIsNone) {
  Desktop desktop;
  desktop.Folder(kStoreFolder + "Empty");
  EXPECT_EQ(ReadAppxManifest(kStoreFolder + "Empty").displayName, "");
  EXPECT_EQ(ReadAppxManifest(kStoreFolder + "Gone").displayName, "");
  EXPECT_EQ(ReadAppxManifest("").displayName, "");
}

TEST(UwpPackages, KnowsTheFilesThatOnlyGamesHave) {
  for (const std::string name :
       {"xboxservices.config", "MicrosoftGame.config", "GamePage.xaml", "GamePage.xbf"}) {
    Desktop desktop;
    desktop.Folder(kStoreFolder + "Game");
    EXPECT_FALSE(HasGameIndicatorFile(kStoreFolder + "Game"));
    desktop.File(kStoreFolder + R"(Game\)" + name);
    EXPECT_TRUE(HasGameIndicatorFile(kStoreFolder + "Game")) << name;
  }
}

TEST(UwpPackages, TakesNoFolderForAnIndicatorFile) {
  Desktop desktop;
  desktop.Folder(kStoreFolder + R"(Game\xboxservices.config)");
  desktop.File(kStoreFolder + R"(Game\Below\GamePage.xaml)");
  EXPECT_FALSE(HasGameIndicatorFile(kStoreFolder + "Game"));
}

}  // namespace
}  // namespace tarnwick
