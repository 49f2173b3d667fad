#include "matching/default_exe_search.h"

#include "support/strategy_fixture.h"

#include <gmock/gmock.h>
#include <shlobj.h>

#include <algorithm>
#include <stdexcept>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using tests::Describe;
using tests::kOddName;
using tests::SearchLog;
using tests::WithResultFields;

const std::string kFolder = "TarnwickTest\\DefaultExe";
const std::string kRoot = "C:\\" + kFolder + "\\";

std::string Expected(const std::string& exe) { return "Foo|" + exe + "||DefaultExe Search||1|0|"; }

class DefaultExeSearch : public tests::StrategyTest {
 protected:
  static GameSignature Signature(const std::string& name, const std::string& folder) {
    GameSignature signature;
    signature.DisplayName = name;
    signature.DefaultExe = "foo.exe";
    signature.DefaultFolder = folder;
    return signature;
  }

  GameSignature Install(const std::string& name) {
    desktop_.File(kRoot + name + "\\foo.exe");
    return Signature(name, kRoot + name);
  }

  static std::vector<std::string> Scan(const GameSignature& signature) {
    return Describe(ScanDefaultExe({signature}, "S-1-5-21"));
  }
};

TEST_F(DefaultExeSearch, LogsItsFrameForNoGames) {
  EXPECT_THAT(ScanDefaultExe({}, ""), IsEmpty());
  EXPECT_THAT(capture_.Raw(), ElementsAre("[Tarnwick] [DefaultExeSearch] Starting DefaultExe Search...\n",
                                          "[Tarnwick] [DefaultExeSearch] Scan completed! Found 0 games.\n"));
}

// The game is on drive C: alone: one result, however many drives are tried.
TEST_F(DefaultExeSearch, ReportsAnInstalledGameWithAllFields) {
  const GameSignature game = WithResultFields(Install("Foo Bar"));
  EXPECT_THAT(Describe(ScanDefaultExe({game}, "S-1-5-21")),
              ElementsAre("Foo Bar|" + kRoot + "Foo Bar\\foo.exe|foo://run|DefaultExe Search||1|0|"));
  EXPECT_THAT(capture_.Raw(),
              ElementsAreArray(SearchLog("DefaultExe", {"Foo Bar -> " + kRoot + "Foo Bar\\foo.exe"})));
}

TEST_F(DefaultExeSearch, KeepsTheOrderOfTheCatalogue) {
  const GameList games = {Install("B"), Signature("Missing", kRoot + "Missing"), Install(kOddName),
                          Install("A")};
  ScanDefaultExe(games, "");
  EXPECT_THAT(capture_.Raw(),
              ElementsAreArray(SearchLog("DefaultExe", {"B -> " + kRoot + "B\\foo.exe",
                                                        kOddName + " -> " + kRoot + kOddName + "\\foo.exe",
                                                        "A -> " + kRoot + "A\\foo.exe"})));
}

TEST_F(DefaultExeSearch, SkipsSteamEpicAndTheStore) {
  GameSignature game = Install("Foo");
  for (const int32_t kind : {0, 1, 2, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13}) {
    game.SourceKind = kind;
    EXPECT_EQ(Scan(game).empty(), kind == 2 || kind == 3 || kind == 9) << kind;
  }
}

TEST_F(DefaultExeSearch, NeedsThePlainExecutableAndAFolder) {
  GameSignature game = Install("Foo");
  game.DefaultExe32 = "foo.exe";
  game.DefaultExe.clear();
  EXPECT_THAT(Scan(game), IsEmpty());
  game.DefaultExe = "foo.exe";
  game.DefaultFolder32 = game.DefaultFolder;
  game.DefaultFolder.clear();
  EXPECT_THAT(Scan(game), ElementsAre(Expected(kRoot + "Foo\\foo.exe")));
  game.DefaultFolder32.clear();
  EXPECT_THAT(Scan(game), IsEmpty());
}

TEST_F(DefaultExeSearch, AGameOnTwoDrivesGivesTwoResultsInTheOrderOfTheLetters) {
  const std::vector<std::string> drives = ListFixedDrives();
  if (std::find(drives.begin(), drives.end(), "Z:\\") == drives.end())
    GTEST_SKIP() << "no second fixed drive Z:";
  desktop_.File("Z:\\tmp\\TarnwickTest\\DefaultExe\\foo.exe");
  desktop_.File("C:\\tmp\\TarnwickTest\\DefaultExe\\foo.exe");
  const GameSignature game = Signature("Foo", "C:\\tmp\\TarnwickTest\\DefaultExe");
  EXPECT_THAT(Scan(game), ElementsAre(Expected("C:\\tmp\\TarnwickTest\\DefaultExe\\foo.exe"),
                                      Expected("Z:\\tmp\\TarnwickTest\\DefaultExe\\foo.exe")));
  EXPECT_THAT(capture_.Raw(), ElementsAreArray(SearchLog(
                                  "DefaultExe", {"Foo -> C:\\tmp\\TarnwickTest\\DefaultExe\\foo.exe",
                                                 "Foo -> Z:\\tmp\\TarnwickTest\\DefaultExe\\foo.exe"})));
}

TEST_F(DefaultExeSearch, AGameOnAnotherDriveThanTheCataloguesIsFound) {
  const std::vector<std::string> drives = ListFixedDrives();
  if (std::find(drives.begin(), drives.end(), "Z:\\") == drives.end())
    GTEST_SKIP() << "no second fixed drive Z:";
  desktop_.File("Z:\\tmp\\TarnwickTest\\DefaultExe\\foo.exe");
  EXPECT_THAT(Scan(Signature("Foo", "C:\\tmp\\TarnwickTest\\DefaultExe")),
              ElementsAre(Expected("Z:\\tmp\\TarnwickTest\\DefaultExe\\foo.exe")));
}

TEST_F(DefaultExeSearch, APathBelowProgramFilesX86IsTriedBelowProgramFiles) {
  desktop_.File("C:\\Program Files\\" + kFolder + "\\foo.exe");
  EXPECT_THAT(Scan(Signature("Foo", "C:\\Program Files (x86)\\" + kFolder)),
              ElementsAre(Expected("C:\\Program Files\\" + kFolder + "\\foo.exe")));
  EXPECT_THAT(Scan(Signature("Foo", "%ProgramFiles(x86)%\\" + kFolder)),
              ElementsAre(Expected("C:\\Program Files\\" + kFolder + "\\foo.exe")));
}

TEST_F(DefaultExeSearch, APathBelowProgramFilesX86ThatExistsStays) {
  desktop_.File("C:\\Program Files\\" + kFolder + "\\foo.exe");
  desktop_.File("C:\\Program Files (x86)\\" + kFolder + "\\foo.exe");
  EXPECT_THAT(Scan(Signature("Foo", "C:\\Program Files (x86)\\" + kFolder)),
              ElementsAre(Expected("C:\\Program Files (x86)\\" + kFolder + "\\foo.exe")));
}

TEST_F(DefaultExeSearch, APathBelowProgramFilesIsNotTriedBelowTheX86Folder) {
  desktop_.File("C:\\Program Files (x86)\\" + kFolder + "\\foo.exe");
  EXPECT_THAT(Scan(Signature("Foo", "C:\\Program Files\\" + kFolder)), IsEmpty());
}

TEST_F(DefaultExeSearch, OtherPathsAreTriedBelowProgramFilesToo) {
  desktop_.File("C:\\Program Files\\" + kFolder + "\\Foo\\foo.exe");
  EXPECT_THAT(Scan(Signature("Foo", kRoot + "Foo")),
              ElementsAre(Expected("C:\\Program Files\\" + kFolder + "\\Foo\\foo.exe")));
}

TEST_F(DefaultExeSearch, TheFurtherPlacesComeBehindAllOthers) {
  GameSignature game = Signature("Foo", kRoot + "Foo");
  game.DefaultFolderExe = "bin\\bar.exe";
  desktop_.File("C:\\Program Files\\" + kFolder + "\\Foo\\foo.exe");
  desktop_.File(kRoot + "Foo\\bin\\bar.exe");
  EXPECT_THAT(Scan(game), ElementsAre(Expected(kRoot + "Foo\\bin\\bar.exe")));
}

// The test for the name is case-sensitive, so such a folder goes below Program Files once more, and no
// further.
TEST_F(DefaultExeSearch, ProgramFilesInAnotherCaseIsAnyFolder) {
  desktop_.File("C:\\Program Files\\PROGRAM FILES\\" + kFolder + "\\foo.exe");
  EXPECT_THAT(Scan(Signature("Foo", "C:\\PROGRAM FILES\\" + kFolder)),
              ElementsAre(Expected("C:\\Program Files\\PROGRAM FILES\\" + kFolder + "\\foo.exe")));
}

TEST_F(DefaultExeSearch, TheTokenThatSwallowsItsBackslashLeadsAstray) {
  desktop_.File("C:\\Program Files\\" + kFolder + "\\foo.exe");
  EXPECT_THAT(Scan(Signature("Foo", "%ProgramFiles%\\" + kFolder)), IsEmpty());
  EXPECT_THAT(Scan(Signature("Foo", "%ProgramFiles%\\\\" + kFolder)),
              ElementsAre(Expected("C:\\Program Files\\" + kFolder + "\\foo.exe")));
}

TEST_F(DefaultExeSearch, AFolderThatIsADriveAloneEndsTheStrategy) {
  EXPECT_THROW(ScanDefaultExe({Signature("Foo", "D:"), Install("Behind")}, ""), std::out_of_range);
  EXPECT_THAT(capture_.Lines(), ElementsAre("[DefaultExeSearch] Starting DefaultExe Search..."));
}

TEST_F(DefaultExeSearch, AFolderOfTheExecutablesNameIsNoHit) {
  desktop_.Folder(kRoot + "Foo\\foo.exe");
  EXPECT_THAT(Scan(Signature("Foo", kRoot + "Foo")), IsEmpty());
}

TEST(ListFixedDrives, ListsRootsInTheOrderOfTheLetters) {
  const std::vector<std::string> drives = ListFixedDrives();
  EXPECT_THAT(drives, testing::Contains("C:\\"));
  EXPECT_TRUE(std::is_sorted(drives.begin(), drives.end()));
  for (const std::string& drive : drives) {
    EXPECT_EQ(drive.substr(1), ":\\");
    EXPECT_EQ(GetDriveTypeA(drive.c_str()), static_cast<UINT>(DRIVE_FIXED));
  }
}

class DriveCandidates : public tests::StrategyTest {
 protected:
  DriveCandidates() {
    signature_.DefaultExe = "foo.exe";
    signature_.DefaultFolder = "C:\\Games\\Foo";
  }
  std::vector<std::string> Build() const { return BuildDriveCandidates(signature_, "D:\\"); }

  const std::string path_ = "D:\\Games\\Foo\\foo.exe";
  GameSignature signature_;
};

TEST_F(DriveCandidates, AreTheDefaultPathAloneWithoutLists) { EXPECT_THAT(Build(), ElementsAre(path_)); }

TEST_F(DriveCandidates, AreNoneWithoutADefaultPath) {
  signature_.DefaultFolder.clear();
  signature_.DefaultFolderExe = "bin\\a.exe";
  EXPECT_THAT(Build(), IsEmpty());
}

TEST_F(DriveCandidates, GoOnWithThePickedList) {
  signature_.DefaultFolderExe = "bin\\a.exe|b.exe";
  EXPECT_THAT(Build(), ElementsAre(path_, "D:\\Games\\Foo\\bin\\a.exe", "D:\\Games\\Foo\\b.exe"));
  signature_.DefaultFolderExe.clear();
  signature_.DefaultFolderExe32 = "c.exe";
  EXPECT_THAT(Build(), ElementsAre(path_, "D:\\Games\\Foo\\c.exe"));
}

TEST_F(DriveCandidates, AddThe32ListForAnotherExecutable) {
  signature_.DefaultFolderExe = "a.exe";
  signature_.DefaultFolderExe32 = "b.exe";
  EXPECT_THAT(Build(), ElementsAre(path_, "D:\\Games\\Foo\\a.exe"));
  signature_.DefaultExe32 = "foo.exe";
  EXPECT_THAT(Build(), ElementsAre(path_, "D:\\Games\\Foo\\a.exe"));
  signature_.DefaultExe32 = "foo32.exe";
  EXPECT_THAT(Build(), ElementsAre(path_, "D:\\Games\\Foo\\a.exe", path_, "D:\\Games\\Foo\\b.exe"));
  signature_.DefaultFolderExe32.clear();
  EXPECT_THAT(Build(), ElementsAre(path_, "D:\\Games\\Foo\\a.exe"));
}

TEST_F(DriveCandidates, AddThePlainListForThe64ExecutableAndNever64s) {
  signature_.DefaultFolderExe64 = "b.exe";
  signature_.DefaultExe64 = "foo64.exe";
  EXPECT_THAT(Build(), ElementsAre(path_));
  signature_.DefaultFolderExe = "a.exe";
  EXPECT_THAT(Build(), ElementsAre(path_, "D:\\Games\\Foo\\a.exe", path_, "D:\\Games\\Foo\\a.exe"));
  signature_.DefaultExe64 = "foo.exe";
  EXPECT_THAT(Build(), ElementsAre(path_, "D:\\Games\\Foo\\a.exe"));
}

TEST_F(DriveCandidates, ThrowForAFolderThatIsADriveAlone) {
  signature_.DefaultFolder = "E:";
  EXPECT_THROW(Build(), std::out_of_range);
}

}  // namespace
}  // namespace tarnwick
