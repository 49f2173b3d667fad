#include "matching/paths.h"

#include "desktop/desktop.h"
#include "foundation/machine/known_folders.h"
#include "support/environment.h"
#include "support/odd_name.h"

#include <gmock/gmock.h>
#include <shlobj.h>

#include <stdexcept>

namespace tarnwick {
namespace {

using desktop::Desktop;
using testing::ElementsAre;
using tests::EnvironmentVariable;
using tests::kOddName;

const std::string kRoot = "C:\\TarnwickTest\\Paths\\";

GameSignature WithExe(const std::string& plain, const std::string& for32 = "",
                      const std::string& for64 = "") {
  GameSignature signature;
  signature.DefaultExe = plain;
  signature.DefaultExe32 = for32;
  signature.DefaultExe64 = for64;
  return signature;
}

TEST(CombinePath, IsTheOtherWhereOneIsEmpty) {
  EXPECT_EQ(CombinePath("", "x"), "x");
  EXPECT_EQ(CombinePath("C:\\A", ""), "C:\\A");
  EXPECT_EQ(CombinePath("", ""), "");
  EXPECT_EQ(CombinePath("", "\\x"), "\\x");
}

TEST(CombinePath, DropsSeparatorsAtTheSecondsStart) {
  EXPECT_EQ(CombinePath("C:\\A", "\\B"), "C:\\A\\B");
  EXPECT_EQ(CombinePath("C:\\A\\", "/B"), "C:\\A\\B");
  EXPECT_EQ(CombinePath("C:\\A", "\\/\\B"), "C:\\A\\B");
}

TEST(CombinePath, HandsADoubleSeparatorOn) {
  EXPECT_EQ(CombinePath("C:\\A", "\\\\srv\\x"), "\\\\srv\\x");
  // Two slashes are no network path to the join, but neither are they dropped before it.
  EXPECT_NE(CombinePath("C:\\A", "//srv"), "C:\\A\\srv");
}

TEST(CombinePath, JoinsByThePlatformsRules) {
  EXPECT_EQ(CombinePath("C:\\A", "B\\..\\C"), "C:\\A\\C");
  EXPECT_EQ(CombinePath("C:\\A", "..\\B"), "C:\\B");
  EXPECT_EQ(CombinePath("C:\\A", "D:\\B"), "D:\\B");
  EXPECT_EQ(CombinePath("C:\\", "A"), "C:\\A");
  EXPECT_EQ(CombinePath("C:\\" + kOddName, kOddName), "C:\\" + kOddName + "\\" + kOddName);
}

TEST(CombinePath, IsEmptyWhereTheJoinHasNoRoom) {
  EXPECT_EQ(CombinePath("C:\\" + std::string(150, 'a'), std::string(150, 'b')), "");
  const std::string fits = CombinePath("C:\\" + std::string(127, 'a'), std::string(128, 'b'));
  EXPECT_EQ(fits.size(), 259u);
  EXPECT_EQ(CombinePath("C:\\" + std::string(127, 'a'), std::string(129, 'b')), "");
}

TEST(GetParentFolder, IsTheFolderPart) {
  EXPECT_EQ(GetParentFolder("C:\\Games\\Foo\\foo.exe"), "C:\\Games\\Foo");
  EXPECT_EQ(GetParentFolder("C:\\" + kOddName + "\\" + kOddName), "C:\\" + kOddName);
  EXPECT_EQ(GetParentFolder("C:\\foo.exe"), "C:\\");
  EXPECT_EQ(GetParentFolder("foo.exe"), "");
  EXPECT_EQ(GetParentFolder(""), "");
}

TEST(GetParentFolder, SeesTheFirst259Characters) {
  const std::string folder = "C:\\" + std::string(200, 'a');
  EXPECT_EQ(GetParentFolder(folder + "\\" + std::string(100, 'b')), folder);
  EXPECT_EQ(GetParentFolder("C:\\" + std::string(300, 'a') + "\\b"), "C:\\");
}

TEST(FieldPickers, TakeThePlainFieldThenThe32) {
  GameSignature signature = WithExe("plain.exe", "32.exe", "64.exe");
  EXPECT_EQ(GetDefaultExe(signature), "plain.exe");
  signature.DefaultExe.clear();
  EXPECT_EQ(GetDefaultExe(signature), "32.exe");
  signature.DefaultExe32.clear();
  EXPECT_EQ(GetDefaultExe(GameSignature()), "");
}

// The 64 fields belong to a process under WOW64, which a 64-bit process never is.
TEST(FieldPickers, A64BitProcessNeverTakesThe64Field) {
  if (sizeof(void*) != 8) GTEST_SKIP() << "this process may run under WOW64";
  GameSignature signature;
  signature.DefaultExe64 = "64.exe";
  signature.DefaultFolder64 = "C:\\64";
  signature.DefaultFolderExe64 = "64\\a.exe";
  EXPECT_EQ(GetDefaultExe(signature), "");
  EXPECT_EQ(GetDefaultFolder(signature), "");
  EXPECT_EQ(GetDefaultFolderExe(signature), "");
  signature.DefaultExe32 = "32.exe";
  signature.DefaultFolder32 = "C:\\32";
  signature.DefaultFolderExe32 = "32\\a.exe";
  EXPECT_EQ(GetDefaultExe(signature), "32.exe");
  EXPECT_EQ(GetDefaultFolder(signature), "C:\\32");
  EXPECT_EQ(GetDefaultFolderExe(signature), "32\\a.exe");
}

TEST(FieldPickers, EachLooksAtItsOwnFields) {
  GameSignature signature;
  signature.DefaultExe = "a.exe";
  signature.DefaultFolder = "C:\\A";
  signature.DefaultFolderExe = "bin\\a.exe";
  EXPECT_EQ(GetDefaultExe(signature), "a.exe");
  EXPECT_EQ(GetDefaultFolder(signature), "C:\\A");
  EXPECT_EQ(GetDefaultFolderExe(signature), "bin\\a.exe");
}

class ExpandPathTokensTest : public testing::Test {
 protected:
  const std::string programs_ = KnownFolderPath(KnownFolder::kProgramFiles);
  const std::string programs86_ = KnownFolderPath(KnownFolder::kProgramFilesX86);
};

TEST_F(ExpandPathTokensTest, TheFirstTokenTakesTheCharacterBehindItAlong) {
  EXPECT_EQ(ExpandPathTokens("%ProgramFiles%"), programs_);
  EXPECT_EQ(ExpandPathTokens("%ProgramFiles%\\A"), programs_ + "A");
  EXPECT_EQ(ExpandPathTokens("%ProgramFiles%\\\\A"), programs_ + "\\A");
  EXPECT_EQ(ExpandPathTokens("x%ProgramFiles%"), "x" + programs_);
}

TEST_F(ExpandPathTokensTest, TheSecondTokenDoesNot) {
  EXPECT_EQ(ExpandPathTokens("%ProgramFiles(x86)%"), programs86_);
  EXPECT_EQ(ExpandPathTokens("%ProgramFiles(x86)%\\A"), programs86_ + "\\A");
}

TEST_F(ExpandPathTokensTest, EveryOccurrenceIsReplaced) {
  EXPECT_EQ(ExpandPathTokens("%ProgramFiles%;%ProgramFiles%;"), programs_ + programs_);
  EXPECT_EQ(ExpandPathTokens("%ProgramFiles(x86)%;%ProgramFiles(x86)%"), programs86_ + ";" + programs86_);
  EXPECT_EQ(ExpandPathTokens("%ProgramFiles(x86)%|%ProgramFiles%|a"), programs86_ + "|" + programs_ + "a");
}

// In another spelling it is an environment variable like any other, and keeps its backslash.
TEST_F(ExpandPathTokensTest, TheTokensAreCaseSensitive) {
  const EnvironmentVariable variable("ProgramFiles", "C:\\Elsewhere");
  EXPECT_EQ(ExpandPathTokens("%programfiles%\\A"), "C:\\Elsewhere\\A");
  EXPECT_EQ(ExpandPathTokens("%ProgramFiles%\\A"), programs_ + "A");
}

TEST_F(ExpandPathTokensTest, ExpandsEnvironmentVariables) {
  const EnvironmentVariable variable("TARNWICK_TEST_FOLDER", "C:\\Somewhere");
  EXPECT_EQ(ExpandPathTokens("%TARNWICK_TEST_FOLDER%\\A"), "C:\\Somewhere\\A");
  EXPECT_EQ(ExpandPathTokens("%TARNWICK_TEST_MISSING%\\A"), "%TARNWICK_TEST_MISSING%\\A");
}

TEST_F(ExpandPathTokensTest, KeepsPlainTextsAndTheirBytes) {
  EXPECT_EQ(ExpandPathTokens(""), "");
  EXPECT_EQ(ExpandPathTokens("C:\\Games 100%"), "C:\\Games 100%");
  if (GetACP() != 1252 && GetACP() != CP_UTF8) GTEST_SKIP() << "the machine's code page has double bytes";
  EXPECT_EQ(ExpandPathTokens("C:\\" + kOddName), "C:\\" + kOddName);
}

TEST_F(ExpandPathTokensTest, KeepsATextWhoseExpansionIsTooLong) {
  const EnvironmentVariable variable("TARNWICK_TEST_LONG", std::string(20'000, 'x').c_str());
  EXPECT_EQ(ExpandPathTokens("%TARNWICK_TEST_LONG%").size(), 20'000u);
  const std::string twice = "%TARNWICK_TEST_LONG%%TARNWICK_TEST_LONG%";
  EXPECT_EQ(ExpandPathTokens(twice), twice);
  EXPECT_EQ(ExpandPathTokens("%ProgramFiles(x86)%" + twice), programs86_ + twice);
}

TEST(BuildDrivePath, PutsAFolderOnAnotherDrive) {
  EXPECT_EQ(BuildDrivePath("D:\\", "C:\\Games\\Foo", "foo.exe"), "D:\\Games\\Foo\\foo.exe");
  EXPECT_EQ(BuildDrivePath("D:\\", "Games\\Foo", "foo.exe"), "D:\\Games\\Foo\\foo.exe");
  EXPECT_EQ(BuildDrivePath("D:\\", "\\/Games", "\\foo.exe"), "D:\\Games\\foo.exe");
  EXPECT_EQ(BuildDrivePath("E:\\Install", "C:\\" + kOddName, "foo.exe"),
            "E:\\Install\\" + kOddName + "\\foo.exe");
}

TEST(BuildDrivePath, TakesDriveCWithoutARoot) {
  EXPECT_EQ(BuildDrivePath("", "D:\\Games", "foo.exe"), "C:\\Games\\foo.exe");
}

TEST(BuildDrivePath, DropsTheCharacterBehindTheColonWhateverItIs) {
  EXPECT_EQ(BuildDrivePath("D:\\", "C:Games", "foo.exe"), "D:\\ames\\foo.exe");
  EXPECT_EQ(BuildDrivePath("D:\\", "C:\\", "foo.exe"), "D:\\foo.exe");
}

TEST(BuildDrivePath, IsEmptyWithoutFolderOrExecutable) {
  EXPECT_EQ(BuildDrivePath("D:\\", "", "foo.exe"), "");
  EXPECT_EQ(BuildDrivePath("D:\\", "Games", ""), "");
}

TEST(BuildDrivePath, ThrowsForADriveAlone) {
  EXPECT_THROW(BuildDrivePath("D:\\", "D:", "foo.exe"), std::out_of_range);
  const EnvironmentVariable drive("TARNWICK_TEST_DRIVE", "E:");
  EXPECT_THROW(BuildDrivePath("D:\\", "%TARNWICK_TEST_DRIVE%", "foo.exe"), std::out_of_range);
}

TEST(BuildDrivePath, ExpandsTokensFirst) {
  const std::string folder = KnownFolderPath(KnownFolder::kProgramFilesX86).substr(3);
  EXPECT_EQ(BuildDrivePath("D:\\", "%ProgramFiles(x86)%\\Foo", "foo.exe"),
            "D:\\" + folder + "\\Foo\\foo.exe");
}

TEST(ResolveDefaultExePath, NeedsFolderAndExecutable) {
  GameSignature signature = WithExe("foo.exe");
  EXPECT_EQ(ResolveDefaultExePath(signature, "D:\\"), "");
  signature.DefaultFolder = "C:\\Games";
  EXPECT_EQ(ResolveDefaultExePath(signature, "D:\\"), "D:\\Games\\foo.exe");
  signature.DefaultExe.clear();
  EXPECT_EQ(ResolveDefaultExePath(signature, "D:\\"), "");
}

TEST(ResolveDefaultExePath, UsesTheFieldPickers) {
  GameSignature signature = WithExe("", "foo32.exe");
  signature.DefaultFolder32 = "C:\\Games32";
  EXPECT_EQ(ResolveDefaultExePath(signature, ""), "C:\\Games32\\foo32.exe");
}

TEST(ResolveDefaultExePath, JoinsTheFolderItselfWhereTheDrivePathHasNoRoom) {
  GameSignature signature = WithExe("foo.exe");
  signature.DefaultFolder = "C:\\Games";
  EXPECT_EQ(ResolveDefaultExePath(signature, "D:\\" + std::string(250, 'x')), "C:\\Games\\foo.exe");
}

TEST(JoinFolderFragment, IsTheOtherWhereOneIsEmpty) {
  EXPECT_EQ(JoinFolderFragment("", "/a", true), "/a");
  EXPECT_EQ(JoinFolderFragment("/a", "", false), "/a");
}

TEST(JoinFolderFragment, MergesWhereAskedAndOverlapping) {
  EXPECT_EQ(JoinFolderFragment("C:\\Games\\Foo", "Foo/bin/a.exe", true), "C:\\Games\\Foo\\bin\\a.exe");
  EXPECT_EQ(JoinFolderFragment("C:\\Games\\Foo", "Foo/bin/a.exe", false), "C:\\Games\\Foo\\Foo\\bin\\a.exe");
  EXPECT_EQ(JoinFolderFragment("C:\\Games\\Foo\\", "/bin/a.exe", true), "C:\\Games\\Foo\\bin\\a.exe");
}

TEST(BuildFolderCandidates, StartWithTheExecutableItself) {
  EXPECT_THAT(BuildFolderCandidates("C:\\Foo\\a.exe", {}), ElementsAre("C:\\Foo\\a.exe"));
  EXPECT_THAT(BuildFolderCandidates("a.exe", {"bin\\b.exe"}), ElementsAre("a.exe"));
  EXPECT_THAT(BuildFolderCandidates("", {"bin\\b.exe"}), ElementsAre(""));
}

TEST(BuildFolderCandidates, MoveTheFragmentsSegmentsToTheEnd) {
  EXPECT_THAT(BuildFolderCandidates("C:\\Games\\Foo\\a.exe", {"bin/b.exe", "GAMES\\c.exe", "d.exe"}),
              ElementsAre("C:\\Games\\Foo\\a.exe", "C:\\Games\\Foo\\bin\\b.exe", "C:\\Foo\\GAMES\\c.exe",
                          "C:\\Games\\Foo\\d.exe"));
}

TEST(BuildFolderCandidates, EraseTheLastEqualSegmentOnly) {
  EXPECT_THAT(BuildFolderCandidates("C:\\bin\\Foo\\BIN\\Bar\\a.exe", {"bin\\b.exe"}),
              ElementsAre("C:\\bin\\Foo\\BIN\\Bar\\a.exe", "C:\\bin\\Foo\\Bar\\bin\\b.exe"));
  EXPECT_THAT(BuildFolderCandidates("C:\\bin\\Foo\\bin\\a.exe", {"bin\\bin\\b.exe"}),
              ElementsAre("C:\\bin\\Foo\\bin\\a.exe", "C:\\Foo\\bin\\bin\\b.exe"));
}

TEST(BuildFolderCandidates, SkipFragmentsWithoutSegments) {
  EXPECT_THAT(BuildFolderCandidates("C:\\Foo\\a.exe", {"\\", "//", "b.exe"}),
              ElementsAre("C:\\Foo\\a.exe", "C:\\Foo\\b.exe"));
}

TEST(BuildFolderCandidates, StartAtDriveCWithoutADriveOfTheirOwn) {
  EXPECT_THAT(BuildFolderCandidates("Games\\a.exe", {"b.exe"}),
              ElementsAre("Games\\a.exe", "C:\\Games\\b.exe"));
  EXPECT_THAT(BuildFolderCandidates("\\\\srv\\share\\Foo\\a.exe", {"b.exe"}),
              ElementsAre("\\\\srv\\share\\Foo\\a.exe", "C:\\srv\\share\\Foo\\b.exe"));
}

TEST(BuildFolderCandidates, KeepTheirDrive) {
  EXPECT_THAT(BuildFolderCandidates("D:\\a.exe", {"bin\\b.exe"}), ElementsAre("D:\\a.exe", "D:\\bin\\b.exe"));
}

TEST(BuildFolderCandidates, LeaveOutPathsThatHaveNoRoom) {
  EXPECT_THAT(
      BuildFolderCandidates("C:\\" + std::string(200, 'a') + "\\a.exe", {std::string(100, 'b')}).size(), 1u);
}

class ResolveExeFromInstallTextTest : public testing::Test {
 protected:
  Desktop desktop_;
};

TEST_F(ResolveExeFromInstallTextTest, AFolderLeadsToItsDefaultExe) {
  desktop_.File(kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo", WithExe("foo.exe")), kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo\\", WithExe("foo.exe")), kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo", WithExe("bar.exe")), "");
  EXPECT_EQ(ResolveExeFromInstallText("", WithExe("foo.exe")), "");
}

TEST_F(ResolveExeFromInstallTextTest, TheFieldsAreTriedPlainThen32Then64) {
  desktop_.File(kRoot + "Foo\\64.exe");
  const GameSignature signature = WithExe("plain.exe", "32.exe", "64.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo", signature), kRoot + "Foo\\64.exe");
  desktop_.File(kRoot + "Foo\\32.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo", signature), kRoot + "Foo\\32.exe");
  desktop_.File(kRoot + "Foo\\plain.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo", signature), kRoot + "Foo\\plain.exe");
}

TEST_F(ResolveExeFromInstallTextTest, AnUnquotedBlankPartsAPath) {
  desktop_.File(kRoot + "Foo Bar\\foo.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo Bar", WithExe("foo.exe")), "");
  EXPECT_EQ(ResolveExeFromInstallText("\"" + kRoot + "Foo Bar\"", WithExe("foo.exe")),
            kRoot + "Foo Bar\\foo.exe");
}

TEST_F(ResolveExeFromInstallTextTest, AnExistingFileIsTheGameIfItHoldsTheDefaultExe) {
  desktop_.File(kRoot + "Foo\\foo.exe");
  desktop_.File(kRoot + "Foo\\bar.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo\\foo.exe", WithExe("FOO.EXE")), kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo\\bar.exe", WithExe("FOO.EXE")), "");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo\\foo.exe", WithExe("", "foo.exe")), "");
}

TEST_F(ResolveExeFromInstallTextTest, AFolderWithADotInItsNameNeverServes) {
  desktop_.File(kRoot + "Foo.Bar\\foo.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo.Bar", WithExe("foo.exe")), "");
  desktop_.File(kRoot + "Dotted.Parent\\Foo\\foo.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Dotted.Parent\\Foo", WithExe("foo.exe")), "");
}

TEST_F(ResolveExeFromInstallTextTest, AFolderThatEndsInADotServes) {
  desktop_.File(kRoot + "Foo\\foo.exe");
  EXPECT_EQ(ResolveExeFromInstallText(kRoot + "Foo\\.", WithExe("foo.exe")), kRoot + "Foo\\foo.exe");
}

TEST_F(ResolveExeFromInstallTextTest, TheFirstTokenThatLeadsSomewhereWins) {
  desktop_.File(kRoot + "A\\foo.exe");
  desktop_.File(kRoot + "B\\foo.exe");
  const std::string text = kRoot + "Missing " + kRoot + "B " + kRoot + "A";
  EXPECT_EQ(ResolveExeFromInstallText(text, WithExe("foo.exe")), kRoot + "B\\foo.exe");
}

TEST_F(ResolveExeFromInstallTextTest, TakesForeignNames) {
  desktop_.File(kRoot + kOddName + "\\" + kOddName + ".exe");
  EXPECT_EQ(ResolveExeFromInstallText("\"" + kRoot + kOddName + "\"", WithExe(kOddName + ".exe")),
            kRoot + kOddName + "\\" + kOddName + ".exe");
}

}  // namespace
}  // namespace tarnwick
