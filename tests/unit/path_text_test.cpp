#include "matching/path_text.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SplitCommandLine, SplitsAtBlanksAndTabs) {
  EXPECT_THAT(SplitCommandLine("a b\tc  \t d"), ElementsAre("a", "b", "c", "d"));
  EXPECT_THAT(SplitCommandLine(R"(C:\Program Files\Foo)"), ElementsAre("C:\\Program", "Files\\Foo"));
}

TEST(SplitCommandLine, GivesNothingForBlanks) {
  EXPECT_THAT(SplitCommandLine(""), IsEmpty());
  EXPECT_THAT(SplitCommandLine(" \t "), IsEmpty());
  EXPECT_THAT(SplitCommandLine("\"\""), IsEmpty());
  EXPECT_THAT(SplitCommandLine("\""), IsEmpty());
}

TEST(SplitCommandLine, KeepsBlanksInsideQuotes) {
  EXPECT_THAT(SplitCommandLine(R"("C:\Program Files\Foo" -x "a	b")"),
              ElementsAre("C:\\Program Files\\Foo", "-x", "a\tb"));
}

TEST(SplitCommandLine, TextBeforeAnOpeningQuoteJoinsTheQuotedText) {
  EXPECT_THAT(SplitCommandLine(R"(pre"a b" c)"), ElementsAre("prea b", "c"));
}

TEST(SplitCommandLine, AClosingQuoteEndsTheToken) {
  EXPECT_THAT(SplitCommandLine(R"("a b"c d)"), ElementsAre("a b", "c", "d"));
  EXPECT_THAT(SplitCommandLine(R"("a""b")"), ElementsAre("a", "b"));
}

TEST(SplitCommandLine, AnOpenQuoteRunsToTheEnd) {
  EXPECT_THAT(SplitCommandLine(R"(a "b c)"), ElementsAre("a", "b c"));
}

TEST(SplitCommandLine, LineFeedsDoNotSplit) {
  EXPECT_THAT(SplitCommandLine("a\r\nb"), ElementsAre("a\r\nb"));
}

TEST(GetExtension, IsTheTextFromTheLastDot) {
  EXPECT_EQ(GetExtension("foo.exe"), ".exe");
  EXPECT_EQ(GetExtension("foo.tar.gz"), ".gz");
  EXPECT_EQ(GetExtension(".x"), ".x");
  EXPECT_EQ(GetExtension("a.b\\c"), ".b\\c");
}

TEST(GetExtension, IsEmptyWithoutADotOrWithNothingBehindIt) {
  EXPECT_EQ(GetExtension(""), "");
  EXPECT_EQ(GetExtension("foo"), "");
  EXPECT_EQ(GetExtension("foo."), "");
  EXPECT_EQ(GetExtension("a.b."), "");
  EXPECT_EQ(GetExtension("."), "");
}

TEST(ContainsIgnoreCase, ComparesAsciiWithoutCase) {
  EXPECT_TRUE(ContainsIgnoreCase("C:\\Games\\foo.exe", "FOO.EXE"));
  EXPECT_TRUE(ContainsIgnoreCase("FOO", "foo"));
  EXPECT_FALSE(ContainsIgnoreCase("bar.exe", "foo.exe"));
  EXPECT_FALSE(ContainsIgnoreCase("fo", "foo"));
}

TEST(ContainsIgnoreCase, ComparesOtherLettersByBytes) {
  EXPECT_TRUE(ContainsIgnoreCase("\xD0\x96\xD0\xB6", "\xD0\xB6"));
  EXPECT_FALSE(ContainsIgnoreCase("\xD0\x96", "\xD0\xB6"));
}

TEST(ContainsIgnoreCase, IsFalseIfEitherIsEmpty) {
  EXPECT_FALSE(ContainsIgnoreCase("", "a"));
  EXPECT_FALSE(ContainsIgnoreCase("a", ""));
  EXPECT_FALSE(ContainsIgnoreCase("", ""));
}

TEST(SplitPipeList, KeepsNonEmptyTokensUntrimmed) {
  EXPECT_THAT(SplitPipeList("a| b |c\\d.exe"), ElementsAre("a", " b ", "c\\d.exe"));
  EXPECT_THAT(SplitPipeList("|a||b|"), ElementsAre("a", "b"));
  EXPECT_THAT(SplitPipeList("a"), ElementsAre("a"));
  EXPECT_THAT(SplitPipeList(""), IsEmpty());
  EXPECT_THAT(SplitPipeList("|||"), IsEmpty());
}

TEST(SplitPathSegments, SplitsAtBackslashesOnly) {
  EXPECT_THAT(SplitPathSegments("C:\\a\\\\b/c\\"), ElementsAre("C:", "a", "b/c"));
  EXPECT_THAT(SplitPathSegments(""), IsEmpty());
}

TEST(NormalizeFragment, TurnsSlashesAndDropsALoneLeadingBackslash) {
  EXPECT_EQ(NormalizeFragment("a/b\\c"), "a\\b\\c");
  EXPECT_EQ(NormalizeFragment("\\a"), "a");
  EXPECT_EQ(NormalizeFragment("/a"), "a");
  EXPECT_EQ(NormalizeFragment("a\\"), "a\\");
}

TEST(NormalizeFragment, KeepsALeadingDoubleBackslashAndALoneOne) {
  EXPECT_EQ(NormalizeFragment("\\\\srv\\x"), "\\\\srv\\x");
  EXPECT_EQ(NormalizeFragment("//srv/x"), "\\\\srv\\x");
  EXPECT_EQ(NormalizeFragment("\\\\\\x"), "\\\\\\x");
  EXPECT_EQ(NormalizeFragment("\\"), "\\");
  EXPECT_EQ(NormalizeFragment("/"), "\\");
  EXPECT_EQ(NormalizeFragment(""), "");
}

TEST(FolderOverlapsFragment, SomeSegmentEqualsTheFragmentsFirst) {
  EXPECT_TRUE(FolderOverlapsFragment("C:\\Games\\Foo", "Foo\\bin\\a.exe"));
  EXPECT_TRUE(FolderOverlapsFragment("C:\\Foo\\Games", "foo/a.exe"));
  EXPECT_TRUE(FolderOverlapsFragment("C:/GAMES/FOO/", "\\\\games\\a.exe"));
  EXPECT_TRUE(FolderOverlapsFragment("C:\\Games\\Foo", "Foo"));
}

TEST(FolderOverlapsFragment, SegmentsAreComparedWhole) {
  EXPECT_FALSE(FolderOverlapsFragment("C:\\Games\\Foo2", "Foo\\a.exe"));
  EXPECT_FALSE(FolderOverlapsFragment("C:\\Games\\Foo", "bin\\Foo\\a.exe"));
}

TEST(FolderOverlapsFragment, ASegmentWithAColonNeverCounts) {
  EXPECT_FALSE(FolderOverlapsFragment("C:\\Games", "C:\\a.exe"));
  EXPECT_FALSE(FolderOverlapsFragment("a:b", "a:b\\x"));
}

TEST(FolderOverlapsFragment, EmptyTextsNeverOverlap) {
  EXPECT_FALSE(FolderOverlapsFragment("", "a"));
  EXPECT_FALSE(FolderOverlapsFragment("a", ""));
  EXPECT_FALSE(FolderOverlapsFragment("\\\\\\", "a"));
  EXPECT_FALSE(FolderOverlapsFragment("a", "\\\\"));
}

TEST(MergeOverlappingFragment, DropsTheRepeatedSegmentWhereverItStood) {
  EXPECT_EQ(MergeOverlappingFragment("C:\\Games\\Foo", "Foo\\bin\\a.exe"), "C:\\Games\\Foo\\bin\\a.exe");
  EXPECT_EQ(MergeOverlappingFragment("C:\\Foo\\Games", "Foo\\a.exe"), "C:\\Foo\\Games\\a.exe");
}

TEST(MergeOverlappingFragment, KeepsTheCaseOfBoth) {
  EXPECT_EQ(MergeOverlappingFragment("C:\\Games\\FOO\\", "\\\\foo\\Bin\\A.exe"),
            "C:\\Games\\FOO\\Bin\\A.exe");
}

TEST(MergeOverlappingFragment, IsTheFolderWhereNothingFollowsTheSegment) {
  EXPECT_EQ(MergeOverlappingFragment("C:\\Games\\Foo\\", "foo"), "C:\\Games\\Foo");
  EXPECT_EQ(MergeOverlappingFragment("C:\\Games\\Foo", "Foo\\"), "C:\\Games\\Foo");
}

TEST(MergeOverlappingFragment, JoinsWithABackslashWithoutAnOverlap) {
  EXPECT_EQ(MergeOverlappingFragment("C:\\Games\\", "/bin/a.exe"), "C:\\Games\\bin\\a.exe");
}

TEST(MergeOverlappingFragment, KeepsNetworkFolders) {
  EXPECT_EQ(MergeOverlappingFragment("//srv/Foo", "Foo/a.exe"), "\\\\srv\\Foo\\a.exe");
}

}  // namespace
}  // namespace tarnwick
