#include "steam/steam_appinfo_scan.h"

#include "foundation/conversions.h"
#include "foundation/seh_guard.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/steam_bytes.h"
#include "support/steam_world.h"
#include "support/uninstall_key.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <thread>

namespace tarnwick {
namespace {

using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using tests::AppInfoBytes;
using tests::DebugCapture;
using tests::Le32;
using tests::SteamWorld;

const std::string kRoot = R"(C:\TarnwickTest\SteamAppInfo)";
const std::string kSteam = kRoot + R"(\Steam)";
const std::string kAppInfo = kSteam + R"(\appcache\appinfo.vdf)";
const std::string& kUserUninstall = tests::kUserUninstallKey;

const std::string kStart = "[SteamAppInfo] Starting Steam AppInfo Search...";
const std::string kIndexing = "[SteamAppInfo] Indexing appinfo.vdf...";

std::string Installed(int count) {
  return "[SteamAppInfo] Found " + std::to_string(count) + " installed Steam apps in Registry.";
}
std::string Completed(int count) {
  return "[SteamAppInfo] Scan completed! Found " + std::to_string(count) + " games.";
}

// A Steam with these records in its cache, in version 40: three lines for the index.
struct World : SteamWorld {
  AppInfoBytes bytes{40, {}};

  World() : SteamWorld{kSteam} { RegisterSteam(); }
  void Cache(const std::string& records) { d.File(kAppInfo, bytes.File(records)); }
};

std::string Expected(const std::string& name, const std::string& exe, const std::string& id = "400") {
  return name + '|' + exe + "|steam://run/" + id + "|Steam AppInfo: " + id + "||1|0|";
}

std::vector<std::string> Scan() {
  return tests::Describe(ScanSteamAppInfo({tests::SteamSignature("400", "ignored", "x.exe")}, "S-1-5-21"));
}

// The lines behind those of the index.
std::vector<std::string> AppLines() {
  const DebugCapture log;
  ScanSteamAppInfo({}, "");
  std::vector<std::string> lines = log.Lines();
  EXPECT_GT(lines.size(), 5u);
  if (lines.size() > 5) lines.erase(lines.begin(), lines.begin() + 5);
  return lines;
}

TEST(SteamAppInfoScan, AnInstalledAppIsFound) {
  World world;
  world.Cache(world.bytes.Record(400, world.bytes.App("Портал 门", "bin\\portal é.exe")));
  const std::string folder = kRoot + "\\Портал 门";
  world.d.File(folder + "\\bin\\portal é.exe");
  world.UninstallKey("Steam App 400", "ignored", folder);
  const std::string exe = folder + "\\bin\\portal é.exe";
  const DebugCapture log;
  EXPECT_THAT(Scan(), ElementsAre(Expected("Портал 门", exe)));
  EXPECT_THAT(
      log.Lines(),
      ElementsAre(kStart, Installed(1), "[SteamAppInfo] Header Magic: 0x75644, Version: 40", kIndexing,
                  "[SteamAppInfo] Indexed 1 apps.", "  - Checking ExePath: " + exe + " -> FOUND",
                  "[SteamAppInfo] Found: Портал 门 (400) -> " + exe, Completed(1)));
}

TEST(SteamAppInfoScan, VersionFortyOneIsReadToo) {
  World world;
  world.bytes.version = 41;
  world.Cache(world.bytes.Record(400, world.bytes.App("Portal", "portal.exe")));
  world.d.File(kRoot + "\\Portal\\portal.exe");
  world.UninstallKey("Steam App 400", "x", kRoot + "\\Portal");
  EXPECT_THAT(Scan(), ElementsAre(Expected("Portal", kRoot + "\\Portal\\portal.exe")));
}

// --- Early exits

TEST(SteamAppInfoScan, WithoutSteamTheScanEndsWithoutItsCompletionLine) {
  const DebugCapture log;
  EXPECT_THAT(ScanSteamAppInfo({}, ""), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[SteamAppInfo] Steam path not found."));
}

TEST(SteamAppInfoScan, WithoutInstalledAppsTheLogEndsWithTheirCount) {
  World world;
  const DebugCapture log;
  EXPECT_THAT(ScanSteamAppInfo({}, ""), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, Installed(0)));
}

TEST(SteamAppInfoScan, WithoutTheCacheTheScanEndsWithoutItsCompletionLine) {
  World world;
  world.UninstallKey("Steam App 400", "x", kRoot);
  const DebugCapture log;
  EXPECT_THAT(ScanSteamAppInfo({}, ""), IsEmpty());
  EXPECT_THAT(log.Lines(),
              ElementsAre(kStart, Installed(1), "[SteamAppInfo] Failed to load appinfo.vdf index."));
}

TEST(SteamAppInfoScan, ASteamFolderThatIsGoneFailsAtTheCache) {
  SteamWorld world{kSteam};
  world.NameMissingSteam();
  world.UninstallKey("Steam App 400", "x", kRoot);
  const DebugCapture log;
  ScanSteamAppInfo({}, "");
  EXPECT_EQ(log.Lines().back(), "[SteamAppInfo] Failed to load appinfo.vdf index.");
}

// --- One app's failures

TEST(SteamAppInfoScan, AnAppMissingFromTheCacheLogsOneLine) {
  World world;
  world.Cache("");
  world.UninstallKey("Steam App 400", "x", kRoot);
  EXPECT_THAT(AppLines(),
              ElementsAre("  - ReadAppDetails Failed (Not in Index or Parse Error)", Completed(0)));
}

TEST(SteamAppInfoScan, AnAppWithoutAnExecutableIsSkipped) {
  World world;
  world.Cache(world.bytes.Record(
      400, world.bytes.Section("appinfo", world.bytes.Section("common", world.bytes.Text("name", "n")))));
  world.UninstallKey("Steam App 400", "x", kRoot);
  EXPECT_THAT(AppLines(), ElementsAre("  - Skipped: No Executable in VDF", Completed(0)));
}

TEST(SteamAppInfoScan, AnExecutableThatIsGoneIsLogged) {
  World world;
  world.Cache(world.bytes.Record(400, world.bytes.App("n", "gone.exe")));
  world.UninstallKey("Steam App 400", "x", kRoot);
  EXPECT_THAT(AppLines(),
              ElementsAre("  - Checking ExePath: " + kRoot + "\\gone.exe -> NOT FOUND", Completed(0)));
}

TEST(SteamAppInfoScan, AnIdWithoutDigitsCostsItselfAlone) {
  World world;
  world.Cache(world.bytes.Record(400, world.bytes.App("n", "g.exe")));
  world.d.File(kRoot + "\\G\\g.exe");
  world.UninstallKey("Steam App 400", "x", kRoot + "\\G");
  world.UninstallKey("Steam App ", "x", kRoot);
  world.UninstallKey("Steam App 4294967296", "x", kRoot);
  world.UninstallKey("Steam App abc", "x", kRoot);
  const std::string exe = kRoot + "\\G\\g.exe";
  EXPECT_THAT(
      AppLines(),
      ElementsAre("  - Exception checking app : invalid stoul argument",
                  "  - Checking ExePath: " + exe + " -> FOUND", "[SteamAppInfo] Found: n (400) -> " + exe,
                  "  - Exception checking app 4294967296: stoul argument out of range",
                  "  - Exception checking app abc: invalid stoul argument", Completed(1)));
}

TEST(SteamAppInfoScan, AnIdIsItsLeadingNumberAndKeepsItsText) {
  World world;
  world.Cache(world.bytes.Record(12, world.bytes.App("twelve", "g.exe")));
  world.d.File(kRoot + "\\G\\g.exe");
  world.UninstallKey("Steam App 12x", "x", kRoot + "\\G");
  EXPECT_THAT(Scan(), ElementsAre(Expected("twelve", kRoot + "\\G\\g.exe", "12x")));
}

TEST(SteamAppInfoScan, AnEmptyNameIsReportedAllTheSame) {
  World world;
  world.Cache(world.bytes.Record(400, world.bytes.App("", "g.exe")));
  world.d.File(kRoot + "\\G\\g.exe");
  world.UninstallKey("Steam App 400", "x", kRoot + "\\G");
  EXPECT_THAT(Scan(), ElementsAre(Expected("", kRoot + "\\G\\g.exe")));
}

TEST(SteamAppInfoScan, QuotesAndALeadingBackslashGoBeforeTheJoin) {
  World world;
  world.Cache(world.bytes.Record(400, world.bytes.App("n", "\\g.exe")));
  world.d.File(kRoot + "\\G\\g.exe");
  world.UninstallKey("Steam App 400", "x", "\"" + kRoot + "\\G\"");
  EXPECT_THAT(Scan(), ElementsAre(Expected("n", kRoot + "\\G\\g.exe")));
}

TEST(SteamAppInfoScan, AppsComeInTheOrderOfTheirTexts) {
  World world;
  std::string records;
  for (const uint32_t id : {9u, 10u, 100u}) records += world.bytes.Record(id, world.bytes.App("n", "g.exe"));
  world.Cache(records);
  world.d.File(kRoot + "\\G\\g.exe");
  for (const std::string id : {"9", "10", "100"}) world.UninstallKey("Steam App " + id, "x", kRoot + "\\G");
  const std::string exe = kRoot + "\\G\\g.exe";
  EXPECT_THAT(Scan(),
              ElementsAre(Expected("n", exe, "10"), Expected("n", exe, "100"), Expected("n", exe, "9")));
}

// --- The cache's own failures

TEST(SteamAppInfoScan, ACacheWithoutItsEndMarkFailsEveryApp) {
  World world;
  world.d.File(kAppInfo, world.bytes.File(world.bytes.Record(400, world.bytes.App("n", "g.exe")), ""));
  world.UninstallKey("Steam App 400", "x", kRoot);
  EXPECT_THAT(AppLines(),
              ElementsAre("  - ReadAppDetails Failed (Not in Index or Parse Error)", Completed(0)));
}

TEST(SteamAppInfoScan, AStringCountBeyondMemoryIsCriticalAndEndsWithTheCompletionLine) {
  World world;
  world.d.File(kAppInfo, Le32(41) + Le32(0) + tests::Le64(16) + Le32(0xFFFFFFFF) + "text");
  world.UninstallKey("Steam App 400", "x", kRoot);
  const DebugCapture log;
  EXPECT_THAT(ScanSteamAppInfo({}, ""), IsEmpty());
  const std::vector<std::string> lines = log.Lines();
  ASSERT_GE(lines.size(), 5u);
  EXPECT_EQ(lines[2], "[SteamAppInfo] Header Magic: 0x0, Version: 41");
  // A machine that grants 128 GiB of address range goes on with an empty index.
  EXPECT_THAT(lines[3], testing::AnyOf("[SteamAppInfo] Critical Error: std::bad_alloc",
                                       "[SteamAppInfo] Loaded String Table with 4294967295 entries."));
  EXPECT_EQ(lines.back(), Completed(0));
}

TEST(SteamAppInfoScan, EndlessNestingLeavesTheScanAsAStackOverflowAndClosesTheFile) {
  World world;
  std::string nested;
  for (int i = 0; i < 200'000; ++i) nested += std::string("\0s\0", 3);
  world.Cache(world.bytes.Record(400, nested));
  world.UninstallKey("Steam App 400", "x", kRoot);
  const DebugCapture log;
  uint32_t code = 0;
  std::thread scan([&] { code = RunGuarded([] { ScanSteamAppInfo({}, ""); }); });
  scan.join();
  EXPECT_EQ(code, 0xC00000FDu);
  EXPECT_THAT(log.Lines(), SizeIs(5)) << "the log ends with the index";
  EXPECT_TRUE(std::filesystem::remove(std::filesystem::path(Utf8ToWide(kAppInfo))))
      << "the file is still open";
}

// --- The registry

TEST(SteamAppInfoScan, TheWordsMatchExactlyAndAtTheBeginning) {
  World world;
  for (const std::string name :
       {"steam app 1", "STEAM APP 2", "MySteam App 3", "Steam App_4", "Steam App", "Steam Ap"}) {
    world.UninstallKey(name, "x", kRoot);
  }
  world.UninstallKey("Steam App 5", "x", kRoot);
  EXPECT_THAT(CollectInstalledSteamApps(), ElementsAre(Pair("5", kRoot)));
}

TEST(SteamAppInfoScan, ALaterPlaceOverwritesAnEarlierOne) {
  SteamWorld world{kSteam};
  world.UninstallKey("Steam App 1", "x", "C:\\64", View::k64);
  EXPECT_THAT(CollectInstalledSteamApps(), ElementsAre(Pair("1", "C:\\64")));
  world.UninstallKey("Steam App 1", "x", "C:\\32", View::k32);
  EXPECT_THAT(CollectInstalledSteamApps(), ElementsAre(Pair("1", "C:\\32")));
  world.d.String(kUserUninstall + "Steam App 1", "InstallLocation", "C:\\User");
  EXPECT_THAT(CollectInstalledSteamApps(), ElementsAre(Pair("1", "C:\\User")));
}

TEST(SteamAppInfoScan, AnEmptyOrMissingLocationOverwritesNothing) {
  SteamWorld world{kSteam};
  world.UninstallKey("Steam App 1", "x", "C:\\64", View::k64);
  world.UninstallKey("Steam App 1", "x", "", View::k32);
  world.d.Key(kUserUninstall + "Steam App 1");
  world.UninstallKey("Steam App 2", "x", "");
  EXPECT_THAT(CollectInstalledSteamApps(), ElementsAre(Pair("1", "C:\\64")));
}

TEST(SteamAppInfoScan, AnyOtherHiveMeansTheMachine) {
  SteamWorld world{kSteam};
  world.d.String(R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickTest\Uninstall\A)", "InstallLocation", "C:\\A",
                 View::k64);
  world.d.String(R"(HKEY_CURRENT_USER\SOFTWARE\TarnwickTest\Uninstall\B)", "InstallLocation", "C:\\B");
  std::map<std::string, std::string> locations;
  CollectUninstallLocations(locations, "HKEY_CURRENT_USER", R"(SOFTWARE\TarnwickTest\Uninstall)");
  EXPECT_THAT(locations, ElementsAre(Pair("B", "C:\\B")));
  CollectUninstallLocations(locations, "HKEY_LOCAL_MACHINE", R"(SOFTWARE\TarnwickTest\Uninstall)");
  EXPECT_THAT(locations, ElementsAre(Pair("A", "C:\\A"), Pair("B", "C:\\B")));
  // The names are the machine's then, but their values are read under the hive as it was spelled.
  locations.clear();
  CollectUninstallLocations(locations, "hkey_current_user", R"(SOFTWARE\TarnwickTest\Uninstall)");
  EXPECT_THAT(locations, IsEmpty());
  CollectUninstallLocations(locations, "HKEY_LOCAL_MACHINE", R"(SOFTWARE\TarnwickTest\Gone)");
  EXPECT_THAT(locations, IsEmpty());
}

}  // namespace
}  // namespace tarnwick
