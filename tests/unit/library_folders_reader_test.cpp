#include "steam/library_folders_reader.h"

#include "support/hex_page.h"
#include "support/samples.h"

#include <gmock/gmock.h>

#include <sstream>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Read(const std::string& bytes) {
  std::istringstream text(bytes);
  return ReadLibraryFolders(text);
}

const std::string kFile = R"("libraryfolders"
{
	"0"
	{
		"path"		"C:\\Program Files (x86)\\Steam"
		"label"		""
		"apps"
		{
			"228980"		"997646719"
		}
	}
	"1"
	{
		"path"		"D:\\Игры\\蒸汽\\Bücher"
	}
}
)";

TEST(LibraryFoldersReader, TakesEveryPathInFileOrder) {
  EXPECT_THAT(Read(kFile), ElementsAre(R"(C:\Program Files (x86)\Steam)", R"(D:\Игры\蒸汽\Bücher)"));
}

TEST(LibraryFoldersReader, ADoubledBackslashBecomesOneAndALoneOneStays) {
  EXPECT_THAT(Read(R"("path" "D:\\A\\B")"), ElementsAre(R"(D:\A\B)"));
  EXPECT_THAT(Read(R"("path" "D:\A\B")"), ElementsAre(R"(D:\A\B)"));
  EXPECT_THAT(Read(R"("path" "a\\\b")"), ElementsAre(R"(a\\b)")) << "a pair, then a lone one";
  EXPECT_THAT(Read(R"("path" "a\\\\b")"), ElementsAre(R"(a\\b)"));
  EXPECT_THAT(Read(R"("path" "a\")"), ElementsAre(R"(a\)")) << "the last byte of the value";
}

TEST(LibraryFoldersReader, NoOtherEscapeIsKnown) {
  EXPECT_THAT(Read(R"("path" "a\nb\tc")"), ElementsAre(R"(a\nb\tc)"));
  EXPECT_THAT(Read(R"("path" "a\"b")"), ElementsAre("a\\"));
}

TEST(LibraryFoldersReader, OnlyOneFurtherQuoteYieldsNothing) {
  EXPECT_THAT(Read("\"path\" \"C:\\Steam"), IsEmpty());
  EXPECT_THAT(Read("\"path\" \""), IsEmpty());
  EXPECT_THAT(Read("\"path\" "), IsEmpty());
  EXPECT_THAT(Read("\"path\""), IsEmpty()) << "nothing behind the key";
}

TEST(LibraryFoldersReader, AnEmptyValueIsAnEmptyEntry) { EXPECT_THAT(Read(R"("path" "")"), ElementsAre("")); }

TEST(LibraryFoldersReader, ALineNeedsSixBytesAndTheWholeKey) {
  EXPECT_THAT(Read("path"), IsEmpty());
  EXPECT_THAT(Read(R"(path "x")"), IsEmpty());
  EXPECT_THAT(Read(R"("Path" "x")"), IsEmpty()) << "the key is case-sensitive";
  EXPECT_THAT(Read(R"("mypath" "x")"), IsEmpty());
}

TEST(LibraryFoldersReader, OnlyTheFirstKeyOfALineCounts) {
  EXPECT_THAT(Read(R"("path" "a" "path" "b")"), ElementsAre("a"));
  EXPECT_THAT(Read(R"("path" "path" "b")"), ElementsAre("path")) << "a value spelled like the key is a value";
}

TEST(LibraryFoldersReader, TheKeyCountsAtAnyPlaceAndDepth) {
  EXPECT_THAT(Read(R"({ { } } } "path" "a" {)"), ElementsAre("a"));
  EXPECT_THAT(Read("\"path\"\n\"a\""), IsEmpty()) << "a value on the next line is none";
}

TEST(LibraryFoldersReader, DuplicatesStay) {
  EXPECT_THAT(Read("\"path\" \"a\"\n\"path\" \"a\"\n"), ElementsAre("a", "a"));
}

TEST(LibraryFoldersReader, CarriageReturnsAndAMissingLastLineFeedDoNoHarm) {
  EXPECT_THAT(Read("\"path\" \"a\"\r\n\"path\" \"b\""), ElementsAre("a", "b"));
}

TEST(LibraryFoldersReader, AFileWithoutLineFeedsIsOneLine) {
  std::string flat = kFile;
  std::replace(flat.begin(), flat.end(), '\n', ' ');
  EXPECT_THAT(Read(flat), ElementsAre(R"(C:\Program Files (x86)\Steam)"));
}

TEST(LibraryFoldersReader, AByteOrderMarkDoesNoHarm) {
  EXPECT_THAT(Read("\xEF\xBB\xBF" + kFile), testing::SizeIs(2));
}

TEST(LibraryFoldersReader, Utf16NulsAndNoiseYieldNothing) {
  std::string wide = "\xFF\xFE";
  for (const char byte : kFile) wide += {byte, '\0'};
  EXPECT_THAT(Read(wide), IsEmpty());
  EXPECT_THAT(Read(std::string(100'000, '\0')), IsEmpty());
  EXPECT_THAT(Read(std::string(100'000, '\xFF')), IsEmpty());
  EXPECT_THAT(Read(std::string(100'000, '"')), IsEmpty());
  EXPECT_THAT(Read(std::string(100'000, '\n')), IsEmpty());
  EXPECT_THAT(Read(""), IsEmpty());
}

TEST(LibraryFoldersReader, ANulInsideAValueIsPartOfIt) {
  EXPECT_THAT(Read(std::string("\"path\" \"a\0b\"", 12)), ElementsAre(std::string("a\0b", 3)));
}

TEST(LibraryFoldersReader, AHugeLineIsReadWhole) {
  const std::string huge(5'000'000, 'x');
  EXPECT_THAT(Read(huge + "\"path\" \"" + huge + "\"\n\"path\" \"b\""), ElementsAre(huge, "b"));
}

TEST(LibraryFoldersReader, EveryPrefixGivesTheFirstOfTheFolders) {
  const std::vector<std::string> whole = Read(kFile);
  for (size_t length = 0; length <= kFile.size(); ++length) {
    const std::vector<std::string> part = Read(kFile.substr(0, length));
    ASSERT_LE(part.size(), whole.size());
    for (size_t i = 0; i < part.size(); ++i) EXPECT_EQ(part[i], whole[i]) << length;
  }
}

TEST(LibraryFoldersReader, AStreamThatIsNotOpenGivesNothing) {
  std::ifstream closed;
  EXPECT_THAT(ReadLibraryFolders(closed), IsEmpty());
}

TEST(LibraryFoldersReader, TheDocumentedExampleReadsAsItsPageSays) {
  EXPECT_THAT(Read(tests::HexExample("libraryfolders")), ElementsAre("C:\\Steam", "D:\\Spiele"));
}

TEST(LibraryFoldersReader, ARealCapture) {
  const auto bytes = tests::Sample("steam/2026_libraryfolders.vdf");
  if (!bytes) GTEST_SKIP() << "skipped: no samples here";
  EXPECT_THAT(Read(*bytes), ElementsAre(R"(C:\Program Files (x86)\Steam)", R"(B:\SteamLibrary)"));
}

}  // namespace
}  // namespace tarnwick
