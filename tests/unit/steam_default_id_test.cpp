#include "steam/steam_default_id.h"

#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/steam_world.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::DebugCapture;
using tests::SteamWorld;

const std::string kSteam = R"(C:\TarnwickTest\SteamDefaultId\Steam)";
const std::string kStart = "[SteamDefaultId] Starting Steam Default ID Search...";

std::string Completed(int count) {
  return "[SteamDefaultId] Scan completed! Found " + std::to_string(count) + " games.";
}

GameSignature Signature(const std::string& id, const std::string& name, const std::string& folder) {
  GameSignature game = tests::SteamSignature(id, name, "g.exe");
  game.DefaultFolder = folder;
  return game;
}

const std::string kPortalFolder = R"(%ProgramFiles(x86)%\Steam\steamapps\common\Portal)";
const std::string kPortalExe = kSteam + R"(\steamapps\common\Portal\g.exe)";

std::vector<std::string> Scan(const GameList& games) {
  return tests::Describe(ScanSteamDefaultId(games, "S-1-5-21"));
}

std::string Expected(const std::string& name, const std::string& exe = kPortalExe,
                     const std::string& id = "400") {
  return name + '|' + exe + "|steam://run/" + id + "|Steam ID: " + id + "||1|0|";
}

// A Steam that has Portal, app 400, in its own library.
struct World : SteamWorld {
  World() : SteamWorld{kSteam} {
    RegisterSteam();
    d.File(kPortalExe);
    Installed("400", 1);
  }
  void Installed(const std::string& id, uint32_t value) {
    d.Dword(R"(HKEY_CURRENT_USER\Software\Valve\Steam\Apps\)" + id, "Installed", value);
  }
};

// The lines of a scan that finds nothing are its frame alone.
void ExpectSilence(const GameSignature& game) {
  const DebugCapture log;
  EXPECT_THAT(Scan({game}), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, Completed(0)));
}

TEST(SteamDefaultId, AnInstalledGameInSteamsOwnLibraryIsFound) {
  World world;
  const DebugCapture log;
  EXPECT_THAT(Scan({Signature("400", "Портал™", kPortalFolder)}), ElementsAre(Expected("Портал™")));
  EXPECT_THAT(log.Lines(),
              ElementsAre(kStart, "[SteamDefaultId] Found: Портал™ -> " + kPortalExe, Completed(1)));
}

TEST(SteamDefaultId, WithoutSteamTheScanEndsWithoutItsCompletionLine) {
  const DebugCapture log;
  EXPECT_THAT(Scan({Signature("400", "Portal", kPortalFolder)}), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[SteamDefaultId] Steam path not found."));
}

TEST(SteamDefaultId, ASteamFolderThatIsGoneIsNotFound) {
  SteamWorld world{kSteam};
  world.NameMissingSteam();
  const DebugCapture log;
  ScanSteamDefaultId({}, "");
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[SteamDefaultId] Steam path not found."));
}

TEST(SteamDefaultId, ResultsComeInTheCataloguesOrder) {
  World world;
  world.Installed("10", 1);
  const std::string exe = kSteam + R"(\steamapps\common\Ten\g.exe)";
  world.d.File(exe);
  EXPECT_THAT(Scan({Signature("400", "Portal", kPortalFolder),
                    Signature("10", "Ten", R"(C:\Steam\steamapps\common\Ten)")}),
              ElementsAre(Expected("Portal"), Expected("Ten", exe, "10")));
}

TEST(SteamDefaultId, EverythingThatASignatureNeedsIsNeeded) {
  World world;
  const GameSignature good = Signature("400", "Portal", kPortalFolder);
  GameSignature game = good;
  game.SourceKind = kSourceDirect;
  ExpectSilence(game);
  game = good;
  game.SourceExId = "";
  ExpectSilence(game);
  game = good;
  game.SourceExId = "401";  // not installed
  ExpectSilence(game);
  game = good;
  game.DefaultExe = "";
  game.DefaultExe32 = "g.exe";
  ExpectSilence(game);
  game = good;
  game.DefaultFolder = "";
  game.DefaultFolder32 = kPortalFolder;
  ExpectSilence(game);
  EXPECT_THAT(Scan({good}), ElementsAre(Expected("Portal")));
}

TEST(SteamDefaultId, AnInstalledValueOtherThanOneIsPassedOverWithoutALine) {
  World world;
  for (const uint32_t value : {0u, 2u, 0xFFFFFFFFu}) {
    world.Installed("400", value);
    ExpectSilence(Signature("400", "Portal", kPortalFolder));
  }
}

TEST(SteamDefaultId, InstalledIsAskedOfTheUsersKey) {
  World world;
  EXPECT_TRUE(IsSteamAppInstalled("400"));
  EXPECT_FALSE(IsSteamAppInstalled("401"));
  world.d.String(R"(HKEY_CURRENT_USER\Software\Valve\Steam\Apps\402)", "Installed", "1");
  EXPECT_FALSE(IsSteamAppInstalled("402")) << "a text is no number";
}

TEST(SteamDefaultId, AFolderWithoutSteamappsIsPassedOverWithoutALine) {
  World world;
  ExpectSilence(Signature("400", "Portal", R"(C:\Steam\common\Portal)"));
}

TEST(SteamDefaultId, SteamappsCountsInAnyLetterCase) {
  World world;
  EXPECT_THAT(Scan({Signature("400", "Portal", R"(X:\y\SteamApps\common\Portal)")}),
              ElementsAre(Expected("Portal", kSteam + R"(\SteamApps\common\Portal\g.exe)")));
}

TEST(SteamDefaultId, AFolderThatBeginsWithSteamappsIsPassedOverAndTheNextSignatureTaken) {
  World world;
  const DebugCapture log;
  EXPECT_THAT(Scan({Signature("400", "No", R"(steamapps\common\Portal)"),
                    Signature("400", "Yes", R"(\steamapps\common\Portal)")}),
              ElementsAre(Expected("Yes")));
  EXPECT_THAT(log.Lines(), ElementsAre(kStart, "[SteamDefaultId] Found: Yes -> " + kPortalExe, Completed(1)));
}

TEST(SteamDefaultId, TheFirstSteamappsCounts) {
  World world;
  world.d.File(kSteam + R"(\steamapps\x\steamapps\g.exe)");
  EXPECT_THAT(Scan({Signature("400", "p", R"(C:\steamapps\x\steamapps)")}),
              ElementsAre(Expected("p", kSteam + R"(\steamapps\x\steamapps\g.exe)")));
}

TEST(SteamDefaultId, AnExecutableThatIsGoneOrAFolderIsPassedOver) {
  World world;
  world.Installed("401", 1);
  ExpectSilence(Signature("401", "Gone", R"(C:\steamapps\common\Gone)"));
  world.d.Folder(kSteam + R"(\steamapps\common\Folder\g.exe)");
  ExpectSilence(Signature("401", "Folder", R"(C:\steamapps\common\Folder)"));
}

TEST(SteamDefaultId, AnEmptyFileIsSkippedWithALine) {
  World world;
  world.Installed("401", 1);
  const std::string exe = kSteam + R"(\steamapps\common\Empty\g.exe)";
  world.d.File(exe, "");
  const DebugCapture log;
  EXPECT_THAT(Scan({Signature("401", "Empty", R"(C:\steamapps\common\Empty)")}), IsEmpty());
  EXPECT_THAT(log.Lines(),
              ElementsAre(kStart, "[SteamDefaultId] Skipping 0-byte file: " + exe, Completed(0)));
}

TEST(SteamDefaultId, APathOutsideTheAnsiCodePageIsPassedOver) {
  World world;
  world.Installed("401", 1);
  world.d.File(kSteam + R"(\steamapps\common\Игра 门\g.exe)");
  EXPECT_THAT(ScanSteamDefaultId({Signature("401", "n", R"(C:\steamapps\common\Игра 门)")}, ""),
              SizeIs(GetACP() == CP_UTF8 ? 1 : 0));
}

}  // namespace
}  // namespace tarnwick
