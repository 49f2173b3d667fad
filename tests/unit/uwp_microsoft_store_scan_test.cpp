#include "launchers/uwp_microsoft_store_scan.h"

#include "desktop/desktop.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/locked_path.h"
#include "support/store_world.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using desktop::Desktop;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::kStoreFolder;

const std::string kStart = "[UWP] Starting UWP/Microsoft Store game scan...";
const std::string kQuerying = "[UWP] Querying packages via Registry: " + tests::kPackagesKey;

GameSignature Signature(const std::string& displayName, const std::string& family, const std::string& exe) {
  GameSignature signature;
  signature.DisplayName = displayName;
  signature.GameInfo = family + "_8wekyb3d8bbwe";
  signature.DefaultExe = exe;
  signature.SourceKind = kSourceUwp;
  return signature;
}

std::string Expected(const std::string& name, const std::string& package, const std::string& exe) {
  return name + "|" + kStoreFolder + package + "\\" + exe + R"(|shell:AppsFolder\)" + package +
         "_8wekyb3d8bbwe!App|Microsoft Store (UWP)" + "||1|0|";
}

class MicrosoftStoreScan : public testing::Test {
 protected:
  // A registered package with a manifest; returns its folder.
  std::string Package(const std::string& name, const std::string& displayName,
                      const std::string& manifestName, const std::string& executable) {
    const std::string folder = tests::RegisterPackage(desktop_, name, displayName);
    desktop_.File(folder + R"(\AppxManifest.xml)", tests::Manifest(manifestName, executable));
    return folder;
  }

  // One that its own files show to be a game.
  std::string Game(const std::string& name, const std::string& displayName, const std::string& manifestName,
                   const std::string& executable) {
    const std::string folder = Package(name, displayName, manifestName, executable);
    desktop_.File(folder + R"(\MicrosoftGame.config)");
    return folder;
  }

  std::vector<std::string> Scan(const GameList& games = {}) {
    return tests::Describe(ScanMicrosoftStore(games, "S-1-5-21"));
  }

  Desktop desktop_;
  tests::DebugCapture capture_;
};

TEST_F(MicrosoftStoreScan, FindsNothingOnAnEmptyMachine) {
  EXPECT_THAT(Scan(), IsEmpty());
  EXPECT_THAT(
      capture_.Lines(),
      ElementsAre(kStart, "[UWP] Found 0 UWP games in MasterGameList.",
                  "[UWP] CategoryCache: 0 entries, EntitlementsCache: 0 entries.", kQuerying,
                  "[UWP] Registry query returned no packages, attempting fallback...",
                  "[UWP] Falling back to file system scan.",
                  R"([UWP] Path does not exist or is not a directory: C:\Program Files\WindowsApps)",
                  R"([UWP] Path does not exist or is not a directory: C:\Program Files (x86)\WindowsApps)",
                  "[UWP] Found 0 UWP packages.",
                  "[UWP] Classified: 0 packages in MGL, 0 packages identified as games.",
                  "[UWP] Scan completed! Found 0 games."));
}

TEST_F(MicrosoftStoreScan, WritesAllLinesInOrder) {
  desktop_.File(Package("Catalogued", "Registry's", "Manifest's", "m.exe") + R"(\Bin\game.exe)");
  Package("Cached", "Cached game", "", "c.exe");
  tests::CacheKind(desktop_, "Cached_8wekyb3d8bbwe", "Game");
  Game("Indicated", "Indicated game", "", "i.exe");
  Package("Mail", "Mail", "Mail", "mail.exe");
  EXPECT_THAT(Scan({Signature("Catalogue's", "Catalogued", R"(Bin\game.exe)"),
                    Signature("Absent", "Absent", "a.exe")}),
              ElementsAre(Expected("Catalogue's", "Catalogued", R"(Bin\game.exe)"),
                          Expected("Cached game", "Cached", "c.exe"),
                          Expected("Indicated game", "Indicated", "i.exe")));
  EXPECT_THAT(
      capture_.Lines(),
      ElementsAre(kStart, "[UWP] Found 2 UWP games in MasterGameList.",
                  "[UWP] CategoryCache: 1 entries, EntitlementsCache: 1 entries.", kQuerying,
                  "[UWP] Found 4 packages via Registry.", "[UWP] Found 4 UWP packages.",
                  "[UWP] Package identified as game via Cache: Cached game (Family: Cached_8wekyb3d8bbwe)",
                  "[UWP] Package in MGL: Registry's (Family: Catalogued_8wekyb3d8bbwe)",
                  "[UWP] Package identified as game via indicator files: Indicated game (Family: "
                  "Indicated_8wekyb3d8bbwe)",
                  "[UWP] Classified: 1 packages in MGL, 2 packages identified as games.",
                  "[UWP] Found (MGL): Catalogue's -> " + kStoreFolder + R"(Catalogued\Bin\game.exe)",
                  "[UWP] Found: Cached game -> " + kStoreFolder + R"(Cached\c.exe)",
                  "[UWP] Found: Indicated game -> " + kStoreFolder + R"(Indicated\i.exe)",
                  "[UWP] Scan completed! Found 3 games."));
}

TEST_F(MicrosoftStoreScan, TakesTheCataloguesNameBeforeTheManifests) {
  desktop_.File(Package("A", "Registry's", "Manifest's", "m.exe") + R"(\game.exe)");
  EXPECT_THAT(Scan({Signature("Catalogue's", "A", "game.exe")}),
              ElementsAre(Expected("Catalogue's", "A", "game.exe")));
  EXPECT_THAT(Scan({Signature("", "A", "game.exe")}), ElementsAre(Expected("Manifest's", "A", "game.exe")));
}

TEST_F(MicrosoftStoreScan, TakesThePackagesNameWhereCatalogueAndManifestHaveNone) {
  desktop_.File(Package("A", "Registry's", "ms-resource:Name", "m.exe") + R"(\game.exe)");
  EXPECT_THAT(Scan({Signature("", "A", "game.exe")}), ElementsAre(Expected("Registry's", "A", "game.exe")));
}

TEST_F(MicrosoftStoreScan, TakesThePackagesNameBeforeTheManifests) {
  Game("A", "Registry's", "Manifest's", "a.exe");
  Game("B", "ms-resource:Name", "Manifest's", "b.exe");
  EXPECT_THAT(Scan(),
              ElementsAre(Expected("Registry's", "A", "a.exe"), Expected("Manifest's", "B", "b.exe")));
}

TEST_F(MicrosoftStoreScan, LaunchesByTheCataloguesUrl) {
  desktop_.File(Package("A", "A", "A", "m.exe") + R"(\game.exe)");
  GameSignature signature = Signature("A", "A", "game.exe");
  signature.LaunchUrl = "msxbox://a";
  EXPECT_THAT(Scan({signature}),
              ElementsAre("A|" + kStoreFolder + R"(A\game.exe|msxbox://a|Microsoft Store (UWP)||1|0|)"));
  signature.DefaultExe = "gone.exe";
  EXPECT_THAT(Scan({signature}),
              ElementsAre("A|" + kStoreFolder + R"(A\m.exe|msxbox://a|Microsoft Store (UWP)||1|0|)"));
}

TEST_F(MicrosoftStoreScan, FallsBackOnTheManifestWhereTheCataloguesExecutableIsMissing) {
  const std::string folder = Package("A", "Registry's", "Manifest's", "m.exe");
  desktop_.Folder(folder + R"(\folder.exe)");
  for (const std::string exe : {"gone.exe", "", "folder.exe"}) {
    capture_.Clear();
    EXPECT_THAT(Scan({Signature("Catalogue's", "A", exe)}), ElementsAre(Expected("Registry's", "A", "m.exe")))
        << exe;
    // The lists are counted before the package moves.
    EXPECT_THAT(capture_.LinesWith("[UWP] Classified"),
                ElementsAre("[UWP] Classified: 1 packages in MGL, 0 packages identified as games."));
    EXPECT_THAT(capture_.LinesWith("[UWP] Found: "),
                ElementsAre("[UWP] Found: Registry's -> " + folder + R"(\m.exe)"));
  }
}

TEST_F(MicrosoftStoreScan, PutsMovedPackagesBehindTheGames) {
  Package("A moved", "Moved", "", "m.exe");
  Game("Z game", "Game", "", "z.exe");
  EXPECT_THAT(Scan({Signature("Moved", "A moved", "")}),
              ElementsAre(Expected("Game", "Z game", "z.exe"), Expected("Moved", "A moved", "m.exe")));
}

TEST_F(MicrosoftStoreScan, TakesTheCataloguesNameForAMovedPackageThatHasNone) {
  Package("A", "ms-resource:Name", "ms-resource:Name", "m.exe");
  EXPECT_THAT(Scan({Signature("Catalogue's", "A", "gone.exe")}),
              ElementsAre(Expected("Catalogue's", "A", "m.exe")));
}

TEST_F(MicrosoftStoreScan, SkipsAPackageWithNothingButAResourceName) {
  Game("A", "ms-resource:Name", "ms-resource:Name", "a.exe");
  EXPECT_THAT(Scan(), IsEmpty());
  EXPECT_THAT(capture_.LinesWith("[UWP] S"),
              ElementsAre(kStart, "[UWP] Skipping package (no DisplayName): A_8wekyb3d8bbwe",
                          "[UWP] Scan completed! Found 0 games."));
}

TEST_F(MicrosoftStoreScan, SkipsAPackageWithoutAnExecutable) {
  Game("A", "A", "A", "");
  desktop_.File(tests::RegisterPackage(desktop_, "B", "B") + R"(\xboxservices.config)");
  EXPECT_THAT(Scan(), IsEmpty());
  EXPECT_THAT(capture_.LinesWith("[UWP] Skipping"),
              ElementsAre("[UWP] Skipping package (no installedLocation or ExePath): A_8wekyb3d8bbwe",
                          "[UWP] Skipping package (no installedLocation or ExePath): B_8wekyb3d8bbwe"));
}

TEST_F(MicrosoftStoreScan, SkipsAPackageWhoseExecutableMakesNoPath) {
  Game("A", "A", "A", std::string(260, 'a') + ".exe");
  EXPECT_THAT(Scan(), IsEmpty());
  EXPECT_THAT(capture_.LinesWith("[UWP] Skipping"),
              ElementsAre("[UWP] Skipping package (no installedLocation or ExePath): A_8wekyb3d8bbwe"));
  EXPECT_THAT(capture_.LinesWith("[UWP] Found: "), IsEmpty());
}

TEST_F(MicrosoftStoreScan, ReportsAnExecutableOfTheManifestThatIsNotThere) {
  Game("A", "A", "", R"(Bin\gone.exe)");
  EXPECT_THAT(Scan(), ElementsAre(Expected("A", "A", R"(Bin\gone.exe)")));
}

TEST_F(MicrosoftStoreScan, TakesOnlyTheFourLettersOfGameForAGame) {
  for (const std::string kind : {"Game", "game", "GAME", "gAmE"}) {
    Desktop desktop;
    desktop.File(tests::RegisterPackage(desktop, "A", "A") + R"(\AppxManifest.xml)",
                 tests::Manifest("A", "a.exe"));
    tests::CacheKind(desktop, "A_8wekyb3d8bbwe", kind);
    EXPECT_EQ(Scan().size(), 1u) << kind;
  }
  for (const std::string kind : {"Application", "Games", " Game", "Durable"}) {
    Desktop desktop;
    desktop.File(tests::RegisterPackage(desktop, "A", "A") + R"(\AppxManifest.xml)",
                 tests::Manifest("A", "a.exe"));
    tests::CacheKind(desktop, "A_8wekyb3d8bbwe", kind);
    EXPECT_THAT(Scan(), IsEmpty()) << kind;
  }
}

TEST_F(MicrosoftStoreScan, NeedsBothCaches) {
  Package("A", "A", "A", "a.exe");
  desktop_.String(tests::kInstallServiceKey + R"(\A)", "PackageFamilyName", "A_8wekyb3d8bbwe",
                  desktop::View::k64);
  desktop_.String(tests::kInstallServiceKey + R"(\A)", "ProductId", "9A", desktop::View::k64);
  EXPECT_THAT(Scan(), IsEmpty());
  EXPECT_EQ(capture_.Lines()[2], "[UWP] CategoryCache: 1 entries, EntitlementsCache: 0 entries.");
  desktop_.File(tests::StoreCacheFolder() + R"(\a.json)",
                R"("Entitlements":[{"ProductId":"9a","ProductKind":"Game"}])");
  EXPECT_THAT(Scan(), IsEmpty());
}

TEST_F(MicrosoftStoreScan, ClassifiesByTheCatalogueBeforeCachesAndFiles) {
  desktop_.File(Game("A", "A", "A", "a.exe") + R"(\game.exe)");
  tests::CacheKind(desktop_, "A_8wekyb3d8bbwe", "Game");
  EXPECT_THAT(Scan({Signature("Catalogue's", "A", "game.exe")}),
              ElementsAre(Expected("Catalogue's", "A", "game.exe")));
  EXPECT_THAT(capture_.LinesWith("[UWP] Package "),
              ElementsAre("[UWP] Package in MGL: A (Family: A_8wekyb3d8bbwe)"));
  capture_.Clear();
  EXPECT_EQ(Scan().size(), 1u);
  EXPECT_THAT(capture_.LinesWith("[UWP] Package "),
              ElementsAre("[UWP] Package identified as game via Cache: A (Family: A_8wekyb3d8bbwe)"));
}

TEST_F(MicrosoftStoreScan, PassesOverFrameworks) {
  const std::string folder = tests::RegisterPackage(desktop_, "A", "A");
  desktop_.File(folder + R"(\AppxManifest.xml)", tests::FrameworkManifest("Framework"));
  desktop_.File(folder + R"(\MicrosoftGame.config)");
  desktop_.File(folder + R"(\game.exe)");
  EXPECT_THAT(Scan({Signature("A", "A", "game.exe")}), IsEmpty());
  EXPECT_THAT(capture_.LinesWith("[UWP] Package "), IsEmpty());
}

TEST_F(MicrosoftStoreScan, PassesOverPackagesWithoutALocation) {
  desktop_.String(tests::kPackagesKey + R"(\A_1_x64__8wekyb3d8bbwe)", "DisplayName", "A");
  EXPECT_THAT(Scan({Signature("A", "A", "game.exe")}), IsEmpty());
  EXPECT_THAT(capture_.LinesWith("[UWP] Found"),
              ElementsAre("[UWP] Found 1 UWP games in MasterGameList.",
                          "[UWP] Found 1 packages via Registry.", "[UWP] Found 1 UWP packages."));
  EXPECT_THAT(capture_.LinesWith("[UWP] Package "), IsEmpty());
}

TEST_F(MicrosoftStoreScan, IgnoresSignaturesOfOtherKindsAndWithoutFamily) {
  desktop_.File(Package("A", "A", "A", "a.exe") + R"(\game.exe)");
  GameSignature other = Signature("A", "A", "game.exe");
  other.SourceKind = kSourceNone;
  GameSignature nameless = Signature("A", "A", "game.exe");
  nameless.GameInfo.clear();
  EXPECT_THAT(Scan({other, nameless, Signature("A", "a", "game.exe")}), IsEmpty());
  EXPECT_EQ(capture_.Lines()[1], "[UWP] Found 1 UWP games in MasterGameList.");
}

TEST_F(MicrosoftStoreScan, TakesTheLaterOfTwoSignaturesOfOneFamily) {
  desktop_.File(Package("A", "A", "A", "a.exe") + R"(\game.exe)");
  EXPECT_THAT(Scan({Signature("Early", "A", "game.exe"), Signature("Late", "A", "game.exe")}),
              ElementsAre(Expected("Late", "A", "game.exe")));
}

TEST_F(MicrosoftStoreScan, LeavesTheIconToTheExecutable) {
  Game("A", "A", "A", "a.exe");
  EXPECT_THAT(Scan(), ElementsAre(Expected("A", "A", "a.exe")));
}

TEST_F(MicrosoftStoreScan, ReadsNamesOfAllLanguages) {
  Game("Игра 游戏", "Приключéние", "", R"(Двоичный\игра.exe)");
  EXPECT_THAT(Scan(), ElementsAre(Expected("Приключéние", "Игра 游戏", R"(Двоичный\игра.exe)")));
}

TEST_F(MicrosoftStoreScan, FindsPackagesByTheirFoldersWithoutTheRegistry) {
  const std::string folder = R"(C:\Program Files\WindowsApps\A_1_x64__8wekyb3d8bbwe)";
  desktop_.File(folder + R"(\AppxManifest.xml)", tests::Manifest("Manifest's", "m.exe"));
  desktop_.File(folder + R"(\game.exe)");
  EXPECT_THAT(Scan({Signature("Catalogue's", "A", "game.exe")}),
              ElementsAre("Catalogue's|" + folder +
                          R"(\game.exe|shell:AppsFolder\A_8wekyb3d8bbwe!App|Microsoft Store (UWP)||1|0|)"));
}

TEST_F(MicrosoftStoreScan, IsEmptyWithoutTheRegistryAndTheRightToReadTheFolder) {
  desktop_.File(R"(C:\Program Files\WindowsApps\A_1_x64__p\AppxManifest.xml)", tests::Manifest("A", "a.exe"));
  const tests::LockedPath locked(R"(C:\Program Files\WindowsApps)");
  EXPECT_THAT(Scan(), IsEmpty());
  EXPECT_THAT(capture_.LinesWith("[UWP] Note"),
              ElementsAre("[UWP] Note: WindowsApps directory may require special permissions."));
  EXPECT_EQ(capture_.LinesWith(R"([UWP] Error scanning C:\Program Files\WindowsApps: )").size(), 1u);
  EXPECT_EQ(capture_.Lines().back(), "[UWP] Scan completed! Found 0 games.");
}

}  // namespace
}  // namespace tarnwick
