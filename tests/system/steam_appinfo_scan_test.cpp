// What a spoilt app cache does to a whole scan: it costs its own strategy, and nothing else.
#include "desktop/desktop.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/library.h"
#include "support/steam_bytes.h"
#include "support/uninstall_key.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace tarnwick {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using tests::AppInfoBytes;
using tests::Le32;

const std::string kRoot = R"(C:\TarnwickTest\SteamAppInfoSystem)";
const std::string kSteam = kRoot + R"(\Steam)";
const std::string kAppInfo = kSteam + R"(\appcache\appinfo.vdf)";
const std::string kCatalogue = kRoot + R"(\games.xml)";
const std::string& kUninstall = tests::kUninstallKey;

std::string Scan(const tests::Library& library) {
  std::string buffer(1 << 20, '\0');
  library.IA_RunMultiPlatformGameScanJson(kCatalogue.c_str(), buffer.data(), static_cast<int>(buffer.size()));
  return buffer.c_str();
}

// One game that the games scan finds in Steam's library, and that the AppInfo scan is told of too.
struct World {
  desktop::Desktop d;

  World() {
    d.String(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Valve\Steam)", "InstallPath", kSteam);
    d.String(kUninstall + "Steam App 400", "InstallLocation", kRoot);
    d.File(kSteam + "\\steamapps\\appmanifest_400.acf",
           "\"appid\" \"400\"\n\"name\" \"Portal\"\n\"installdir\" \"Portal\"\n");
    d.Executable(kSteam + "\\steamapps\\common\\Portal\\portal.exe");
    d.File(
        kCatalogue,
        "<Games>\n<GameSignature>\n<DisplayName>Портал</DisplayName>\n<DefaultExe>portal.exe</DefaultExe>\n"
        "<SourceEx>STEAM</SourceEx>\n<SourceExId>400</SourceExId>\n</GameSignature>\n</Games>\n");
  }
};

void ExpectTheGame(const std::string& json) {
  EXPECT_THAT(json, HasSubstr("\"Портал\""));
  EXPECT_THAT(json, HasSubstr("steam://run/400"));
}

TEST(SteamAppInfoScanSystem, EndlessNestingCostsItsOwnStrategyAlone) {
  World world;
  const AppInfoBytes bytes{40, {}};
  std::string nested;
  for (int i = 0; i < 200'000; ++i) nested += std::string("\0s\0", 3);
  world.d.File(kAppInfo, bytes.File(bytes.Record(400, nested)));
  const tests::Library library(TARNWICK_DLL);
  for (int round = 0; round < 3; ++round) {
    const tests::DebugCapture log;
    ExpectTheGame(Scan(library));
    EXPECT_THAT(log.Raw(),
                Contains("[Tarnwick] CRITICAL SEH ERROR in Strategy [Steam AppInfo Scan]: 0xC00000FD\n"));
    EXPECT_THAT(log.Lines(), Contains("Strategy [Steam AppInfo Scan] finished. Found: 0"));
    EXPECT_THAT(log.Lines(), Contains("Strategy [Steam Games Scan] finished. Found: 1"));
  }
}

TEST(SteamAppInfoScanSystem, AHostileStringCountCostsNeitherTimeNorTheScan) {
  World world;
  for (const uint32_t count : {0xFFFFFFFFu, 100'000'000u}) {
    world.d.File(kAppInfo, Le32(41) + Le32(0) + tests::Le64(20) + Le32(0) + Le32(count) + "text");
    const tests::Library library(TARNWICK_DLL);
    const tests::DebugCapture log;
    const ULONGLONG start = GetTickCount64();
    ExpectTheGame(Scan(library));
    EXPECT_LT(GetTickCount64() - start, 30'000u);
    EXPECT_THAT(log.Lines(), Contains("[SteamAppInfo] Scan completed! Found 0 games."));
    EXPECT_THAT(log.Lines(), Not(Contains(HasSubstr("SEH"))));
  }
}

}  // namespace
}  // namespace tarnwick
