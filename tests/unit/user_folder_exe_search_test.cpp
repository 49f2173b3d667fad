#include "matching/user_folder_exe_search.h"

#include "foundation/machine/paths.h"
#include "support/environment.h"
#include "support/strategy_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

namespace tarnwick {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;
using tests::Describe;
using tests::EnvironmentVariable;
using tests::kOddName;
using tests::SearchLog;
using tests::WithResultFields;

const std::string kUsers = "C:\\Users\\";
const std::string kUser = "TarnwickTestUser";

std::string Expected(const std::string& exe) { return "Foo|" + exe + "||UserFolderExe Search||1|0|"; }

class UserFolderExeSearch : public tests::StrategyTest {
 protected:
  static GameSignature Signature(const std::string& folder) {
    GameSignature signature;
    signature.DisplayName = "Foo";
    signature.DefaultExe = "foo.exe";
    signature.DefaultFolder = folder;
    return signature;
  }
  static std::vector<std::string> Scan(const GameSignature& signature) {
    return Describe(ScanUserFolderExe({signature}, "S-1-5-21"));
  }
  std::string Make(const std::string& path) {
    desktop_.File(kUsers + path);
    return kUsers + path;
  }

  EnvironmentVariable drive_{"SystemDrive", "C:"};
};

TEST_F(UserFolderExeSearch, LogsItsFrameForNoGames) {
  EXPECT_THAT(ScanUserFolderExe({}, ""), IsEmpty());
  EXPECT_THAT(capture_.Raw(),
              ElementsAre("[Tarnwick] [UserFolderExeSearch] Starting UserFolderExe Search...\n",
                          "[Tarnwick] [UserFolderExeSearch] Scan completed! Found 0 games.\n"));
}

TEST_F(UserFolderExeSearch, ReportsAnInstalledGameWithAllFields) {
  const std::string exe = Make(kUser + "\\TarnwickGames\\foo.exe");
  const GameSignature game = WithResultFields(Signature("%UserProfile%\\TarnwickGames"));
  EXPECT_THAT(Describe(ScanUserFolderExe({game}, "S-1-5-21")),
              ElementsAre("Foo|" + exe + "|foo://run|UserFolderExe Search||1|0|"));
  EXPECT_THAT(capture_.Raw(), ElementsAreArray(SearchLog("UserFolderExe", {"Foo -> " + exe})));
}

TEST_F(UserFolderExeSearch, SkipsNoSource) {
  const std::string exe = Make(kUser + "\\TarnwickGames\\foo.exe");
  GameSignature game = Signature("%USERPROFILE%\\TarnwickGames");
  for (const int32_t kind : {0, 1, 2, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13}) {
    game.SourceKind = kind;
    EXPECT_THAT(Scan(game), ElementsAre(Expected(exe))) << kind;
  }
}

TEST_F(UserFolderExeSearch, NeedsThePlainExecutableAndAFolderWithTheToken) {
  const std::string exe = Make(kUser + "\\TarnwickGames\\foo.exe");
  GameSignature game = Signature("%USERPROFILE%\\TarnwickGames");
  game.DefaultExe32 = "foo.exe";
  game.DefaultExe.clear();
  EXPECT_THAT(Scan(game), IsEmpty());
  EXPECT_THAT(Scan(Signature("")), IsEmpty());
  EXPECT_THAT(Scan(Signature("%LOCALAPPDATA%\\TarnwickGames")), IsEmpty());
  EXPECT_THAT(Scan(Signature(kUsers + kUser + "\\TarnwickGames")), IsEmpty());
  game = Signature("");
  game.DefaultFolder32 = "%USERPROFILE%\\TarnwickGames";
  EXPECT_THAT(Scan(game), ElementsAre(Expected(exe)));
}

TEST_F(UserFolderExeSearch, TheTokenIsKnownInAnyCaseWithAndWithoutPercentSigns) {
  const std::string exe = Make(kUser + "\\TarnwickGames\\foo.exe");
  for (const std::string folder :
       {"%USERPROFILE%\\TarnwickGames", "%userProfile%/TarnwickGames", "%UserProfile%TarnwickGames",
        "USERPROFILE\\TarnwickGames", "userprofileTarnwickGames",
        "C:\\Dropped\\%UserProfile%\\/\\TarnwickGames", "%UserProfile\\TarnwickGames"}) {
    EXPECT_THAT(Scan(Signature(folder)), ElementsAre(Expected(exe))) << folder;
  }
}

TEST_F(UserFolderExeSearch, APercentSignBehindTheBareTokenBelongsToTheFolder) {
  const std::string exe = Make(kUser + "\\%\\TarnwickGames\\foo.exe");
  EXPECT_THAT(Scan(Signature("userprofile%\\TarnwickGames")), ElementsAre(Expected(exe)));
}

TEST_F(UserFolderExeSearch, TheTokenWithPercentSignsGoesBeforeAnEarlierBareOne) {
  const std::string exe = Make(kUser + "\\TarnwickGames\\foo.exe");
  EXPECT_THAT(Scan(Signature("userprofile\\x\\%userprofile%\\TarnwickGames")), ElementsAre(Expected(exe)));
}

TEST_F(UserFolderExeSearch, TheTokenAloneLooksInTheProfileItself) {
  const std::string exe = Make(kUser + "\\foo.exe");
  EXPECT_THAT(Scan(Signature("userprofile")), ElementsAre(Expected(exe)));
  EXPECT_THAT(Scan(Signature("%USERPROFILE%\\")), ElementsAre(Expected(exe)));
}

TEST_F(UserFolderExeSearch, TheFirstUserWithTheGameWins) {
  Make(kUser + "B\\TarnwickGames\\foo.exe");
  Make(kUser + "A\\TarnwickGames\\foo.exe");
  desktop_.Folder(kUsers + kUser + "0");
  const std::vector<std::string> users = ListUserFolders();
  const std::string first = *std::find_if(users.begin(), users.end(), [](const std::string& user) {
    return user == kUsers + kUser + "A" || user == kUsers + kUser + "B";
  });
  EXPECT_THAT(Scan(Signature("%USERPROFILE%\\TarnwickGames")),
              ElementsAre(Expected(first + "\\TarnwickGames\\foo.exe")));
}

TEST_F(UserFolderExeSearch, ProfilesAndFoldersMayHaveAnyName) {
  const std::string exe = Make(kOddName + "\\" + kOddName + "\\foo.exe");
  GameSignature game = Signature("%USERPROFILE%\\" + kOddName);
  game.DisplayName = kOddName;
  EXPECT_THAT(Describe(ScanUserFolderExe({game}, "")),
              ElementsAre(kOddName + "|" + exe + "||UserFolderExe Search||1|0|"));
  EXPECT_THAT(capture_.LinesWith("[UserFolderExeSearch] Found"),
              ElementsAre("[UserFolderExeSearch] Found: " + kOddName + " -> " + exe));
}

TEST_F(UserFolderExeSearch, ThePathIsCleaned) {
  const std::string exe = Make(kUser + "\\TarnwickGames\\foo.exe");
  EXPECT_THAT(Scan(Signature("%USERPROFILE%/x/..//TarnwickGames")), ElementsAre(Expected(exe)));
}

TEST_F(UserFolderExeSearch, PublicAndDefaultAreNoUsers) {
  Make("Public\\TarnwickGames\\foo.exe");
  EXPECT_THAT(Scan(Signature("%USERPROFILE%\\TarnwickGames")), IsEmpty());
}

TEST_F(UserFolderExeSearch, FindsNothingOnADriveWithoutUsers) {
  Make(kUser + "\\TarnwickGames\\foo.exe");
  const EnvironmentVariable drive("SystemDrive", "Q:");
  EXPECT_THAT(Scan(Signature("%USERPROFILE%\\TarnwickGames")), IsEmpty());
}

class UserFolders : public testing::Test {
 protected:
  EnvironmentVariable drive_{"SystemDrive", "C:"};
  desktop::Desktop desktop_;
};

TEST_F(UserFolders, AreTheFoldersOfOneLevel) {
  desktop_.Folder(kUsers + kUser + "\\Below");
  desktop_.File(kUsers + kUser + ".txt");
  const std::vector<std::string> folders = ListUserFolders();
  EXPECT_THAT(folders, Contains(kUsers + kUser));
  EXPECT_THAT(folders, Not(Contains(kUsers + kUser + "\\Below")));
  EXPECT_THAT(folders, Not(Contains(kUsers + kUser + ".txt")));
}

TEST_F(UserFolders, LeaveOutThreeNamesInTheirExactCase) {
  for (const std::string name : {"Public", "Default", "Default User"}) {
    if (!DirectoryExists(kUsers + name)) desktop_.Folder(kUsers + name);
    EXPECT_THAT(ListUserFolders(), Not(Contains(kUsers + name))) << name;
  }
}

TEST_F(UserFolders, KeepThoseNamesInAnotherCase) {
  for (const std::string name : {"default", "DEFAULT USER"}) {
    if (DirectoryExists(kUsers + name)) GTEST_SKIP() << "this machine has the folder already";
    desktop_.Folder(kUsers + name);
    EXPECT_THAT(ListUserFolders(), Contains(kUsers + name));
  }
}

TEST_F(UserFolders, KeepNamesThatOnlyBeginAlike) {
  desktop_.Folder(kUsers + "Public Tarnwick");
  desktop_.Folder(kUsers + "DefaultTarnwick");
  EXPECT_THAT(ListUserFolders(),
              testing::IsSupersetOf({kUsers + "Public Tarnwick", kUsers + "DefaultTarnwick"}));
}

TEST_F(UserFolders, AreNoneOnADriveWithoutThem) {
  const EnvironmentVariable drive("SystemDrive", "Q:");
  EXPECT_THAT(ListUserFolders(), IsEmpty());
}

TEST_F(UserFolders, LieOnDriveCWhereTheVariableIsMissingOrTooLong) {
  desktop_.Folder(kUsers + kUser);
  {
    const EnvironmentVariable drive("SystemDrive", nullptr);
    EXPECT_THAT(ListUserFolders(), Contains(kUsers + kUser));
  }
  const EnvironmentVariable drive("SystemDrive", "Q:\\x");
  EXPECT_THAT(ListUserFolders(), Contains(kUsers + kUser));
}

TEST_F(UserFolders, TakeTheVariableAsItStands) {
  desktop_.Folder(kUsers + kUser);
  const EnvironmentVariable drive("SystemDrive", "C:\\");
  EXPECT_THAT(ListUserFolders(), Contains("C:\\\\Users\\" + kUser));
}

// A drive text of one dot leads to the current folder: a system drive of the test's own.
class CurrentFolder {
 public:
  explicit CurrentFolder(const std::filesystem::path& folder) : old_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder);
  }
  ~CurrentFolder() { std::filesystem::current_path(old_); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  std::filesystem::path old_;
};

TEST_F(UserFolders, LieOnTheSystemDrive) {
  desktop_.Folder("C:\\TarnwickTest\\UserFolders\\Users\\" + kUser);
  const CurrentFolder current(L"C:\\TarnwickTest\\UserFolders");
  const EnvironmentVariable drive("SystemDrive", ".");
  EXPECT_THAT(ListUserFolders(), ElementsAre(".\\Users\\" + kUser));
}

TEST_F(UserFolders, ThatCannotBeListedAreAFailure) {
  desktop_.File("C:\\TarnwickTest\\UserFolders\\Users");
  const CurrentFolder current(L"C:\\TarnwickTest\\UserFolders");
  const EnvironmentVariable drive("SystemDrive", ".");
  EXPECT_THROW(ListUserFolders(), std::filesystem::filesystem_error);
}

}  // namespace
}  // namespace tarnwick
