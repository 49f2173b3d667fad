#include "catalogue/xml_parser.h"

#include "catalogue/decipher.h"
#include "desktop/desktop.h"
#include "foundation/conversions.h"
#include "foundation/owner.h"
#include "support/catalogue_reference.h"
#include "support/catalogue_sample.h"
#include "support/debug_capture.h"
#include "support/hex_page.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace tarnwick {
namespace {

using tests::DebugCapture;

const std::string kTwoGames =
    "<GameSignature><DisplayName>One</DisplayName></GameSignature>\r\n"
    "<GameSignature><DisplayName>Two</DisplayName><SourceEx>Steam</SourceEx></GameSignature>";

// Files below a folder of this test's own, gone when it ends.
class XmlParserTest : public testing::Test {
 protected:
  XmlParserTest() { desktop_.Folder(WideToUtf8(kFolder)); }

  std::wstring Write(const std::string& bytes, const std::wstring& name = L"MasterGameList.xml") {
    const std::wstring path = std::wstring(kFolder) + L"\\" + name;
    desktop_.File(WideToUtf8(path), bytes);
    return path;
  }

  static std::string Enciphered(const std::string& text) {
    std::vector<unsigned char> bytes(text.begin(), text.end());
    EXPECT_TRUE(EncipherCatalogue(bytes));
    return {bytes.begin(), bytes.end()};
  }

  static constexpr const wchar_t* kFolder = L"C:\\TarnwickTest\\Catalogue";

 private:
  desktop::Desktop desktop_;
};

std::string Ansi(const std::wstring& text) {
  char narrow[1024] = {};
  WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, narrow, sizeof narrow, nullptr, nullptr);
  return narrow;
}

std::vector<std::string> DebugTexts(const std::wstring& path) {
  DebugCapture capture;
  XmlParser::LoadGameListFromXml(path);
  return capture.Raw();
}

TEST_F(XmlParserTest, ReadsAPlainCatalogue) {
  const GameList games = XmlParser::LoadGameListFromXml(Write(kTwoGames));
  ASSERT_EQ(games.size(), 2u);
  EXPECT_EQ(games[0].DisplayName, "One");
  EXPECT_EQ(games[1].SourceKind, 2);
}

TEST_F(XmlParserTest, SendsItsLinesWholeAndInOrder) {
  const std::vector<std::string> expected = {
      "[TarnwickXml] Loading XML from: C:\\TarnwickTest\\Catalogue\\MasterGameList.xml\n",
      "[TarnwickXml] File content size: " + std::to_string(kTwoGames.size()) + "\n",
      "[TarnwickXml] Parsed 2 games.\n",
  };
  EXPECT_EQ(DebugTexts(Write(kTwoGames)), expected);
}

TEST_F(XmlParserTest, SendsTwoLinesForAMissingFile) {
  const std::vector<std::string> expected = {
      "[TarnwickXml] Loading XML from: C:\\TarnwickTest\\Catalogue\\None.xml\n",
      "[TarnwickXml] File content is empty or file not found.\n",
  };
  EXPECT_EQ(DebugTexts(L"C:\\TarnwickTest\\Catalogue\\None.xml"), expected);
  EXPECT_TRUE(XmlParser::LoadGameListFromXml(L"C:\\TarnwickTest\\Catalogue\\None.xml").empty());
}

TEST_F(XmlParserTest, SendsTheSameTwoLinesForAnEmptyFile) {
  const std::vector<std::string> lines = DebugTexts(Write(""));
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1], "[TarnwickXml] File content is empty or file not found.\n");
}

TEST_F(XmlParserTest, ReadsNothingFromAFolderAnEmptyPathOrAnImpossibleOne) {
  EXPECT_EQ(ReadCatalogueFile(kFolder), "");
  EXPECT_EQ(ReadCatalogueFile(L""), "");
  EXPECT_EQ(ReadCatalogueFile(L"C:\\<no>|such*name?"), "");
  EXPECT_EQ(ReadCatalogueFile(L"C:\\" + std::wstring(40'000, L'x')), "");
}

TEST_F(XmlParserTest, SaysZeroForAFileWithoutRecords) {
  const std::vector<std::string> lines = DebugTexts(Write("<ArrayOfGameSignature/>"));
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[1], "[TarnwickXml] File content size: 23\n");
  EXPECT_EQ(lines[2], "[TarnwickXml] Parsed 0 games.\n");
}

TEST_F(XmlParserTest, ReadsBytesWithoutTranslation) {
  using namespace std::string_literals;
  const std::string bytes = "<a>\r\n\x1A\0\n</a>"s;
  EXPECT_EQ(ReadCatalogueFile(Write(bytes)), bytes);
}

TEST_F(XmlParserTest, TakesAFileForPlainBehindBlanksTabsAndLineEnds) {
  EXPECT_EQ(ReadCatalogueFile(Write(" \t\r\n" + kTwoGames)), " \t\r\n" + kTwoGames);
  // A form feed is no blank here: the file goes through the decipher attempt, and comes back as it was.
  EXPECT_EQ(ReadCatalogueFile(Write("\f" + kTwoGames)), "\f" + kTwoGames);
}

TEST_F(XmlParserTest, ReadsAnEncipheredCatalogue) {
  const std::wstring path = Write(Enciphered(kTwoGames));
  EXPECT_EQ(ReadCatalogueFile(path), kTwoGames);
  EXPECT_EQ(XmlParser::LoadGameListFromXml(path).size(), 2u);
  // The size is that of the plain text.
  EXPECT_EQ(DebugTexts(path)[1],
            "[TarnwickXml] File content size: " + std::to_string(kTwoGames.size()) + "\n");
}

TEST_F(XmlParserTest, ReadsAnEmptyCatalogueFromPaddingAlone) {
  const std::wstring path = Write(Enciphered(""));
  EXPECT_EQ(ReadCatalogueFile(path), "");
  const std::vector<std::string> lines = DebugTexts(path);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1], "[TarnwickXml] File content is empty or file not found.\n");
}

TEST_F(XmlParserTest, ParsesACatalogueBehindAByteOrderMarkAllTheSame) {
  const std::string bytes = "\xEF\xBB\xBF" + kTwoGames;
  const std::wstring path = Write(bytes);
  EXPECT_EQ(ReadCatalogueFile(path), bytes);
  EXPECT_EQ(XmlParser::LoadGameListFromXml(path).size(), 2u);
}

TEST_F(XmlParserTest, FindsNoRecordInUtf16) {
  std::string bytes = "\xFF\xFE";
  for (const char byte : kTwoGames) bytes += {byte, '\0'};
  EXPECT_TRUE(XmlParser::LoadGameListFromXml(Write(bytes)).empty());
  // Without its mark such a text begins with "<" and is plain.
  EXPECT_TRUE(XmlParser::LoadGameListFromXml(Write(bytes.substr(2))).empty());
}

TEST_F(XmlParserTest, FindsNoRecordInAFileOfBlanks) {
  for (const size_t length : {1u, 16u, 4096u}) {
    const std::vector<std::string> lines = DebugTexts(Write(std::string(length, ' ')));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], "[TarnwickXml] File content size: " + std::to_string(length) + "\n");
    EXPECT_EQ(lines[2], "[TarnwickXml] Parsed 0 games.\n");
  }
}

TEST_F(XmlParserTest, FindsNoRecordInBinaryFiles) {
  std::string every;
  for (int i = 0; i < 4096; ++i) every += static_cast<char>(i * 31 >> 3);
  EXPECT_TRUE(XmlParser::LoadGameListFromXml(Write(every)).empty());
  EXPECT_TRUE(XmlParser::LoadGameListFromXml(Write(std::string(4096, '\0'))).empty());
}

TEST_F(XmlParserTest, ReadsWhatIsWholeOfAFileCutAtAnyByte) {
  const std::string whole = "<A>" + kTwoGames + "</A>";
  const size_t firstEnd = whole.find("</GameSignature>") + 16;
  const size_t secondEnd = whole.rfind("</GameSignature>") + 16;
  for (size_t length = 0; length <= whole.size(); ++length) {
    const size_t expected = length >= secondEnd ? 2u : length >= firstEnd ? 1u : 0u;
    ASSERT_EQ(XmlParser::LoadGameListFromXml(Write(whole.substr(0, length))).size(), expected) << length;
  }
}

TEST_F(XmlParserTest, ReadsNothingButWholeBlocksOfAnEncipheredFileCutAtAnyByte) {
  const std::string whole = Enciphered(kTwoGames);
  for (size_t length = 0; length < whole.size(); ++length) {
    const std::string cut = whole.substr(0, length);
    const std::string read = ReadCatalogueFile(Write(cut));
    ASSERT_EQ(read, cut) << length;
    ASSERT_TRUE(XmlParser::LoadGameListFromXml(Write(cut)).empty()) << length;
  }
}

TEST_F(XmlParserTest, ReadsAHundredMegabytesOfStrayTagsWithoutHanging) {
  std::string bytes;
  bytes.reserve(100'000'020);
  while (bytes.size() < 100'000'000) bytes += "<GameSignature>";
  const std::wstring path = Write(bytes);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(XmlParser::LoadGameListFromXml(path).empty());
  // Quadratic work would take days.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

TEST_F(XmlParserTest, ReadsTwentyThousandRecordsAsThePlainFormDoes) {
  const std::string text = tests::CatalogueSample(20'000, tests::SampleStyle::kSparse).text();
  const GameList games = XmlParser::LoadGameListFromXml(Write(Enciphered(text)));
  EXPECT_EQ(games.size(), 20'000u);
  EXPECT_EQ(tests::FirstDifference(games, tests::ParseCataloguePlainly(text)), -1);
}

TEST_F(XmlParserTest, OpensPathsOfAllScripts) {
  for (const std::wstring name :
       {L"\u0418\u0433\u0440\u044B.xml", L"\u6E38\u620F.xml", L"Pok\u00E9mon.xml"}) {
    const std::wstring path = Write(kTwoGames, name);
    EXPECT_EQ(XmlParser::LoadGameListFromXml(path).size(), 2u);
    // A wide call of the debug output arrives in the ANSI code page.
    EXPECT_EQ(DebugTexts(path)[0], Ansi(L"[TarnwickXml] Loading XML from: " + path + L"\n"));
  }
}

TEST_F(XmlParserTest, TakesANarrowPathForTheAnsiCodePage) {
  EXPECT_EQ(LoadGameList(Ansi(Write(kTwoGames))).size(), 2u);
  EXPECT_TRUE(LoadGameList("").empty());
  const std::wstring path = Write(kTwoGames, L"Pok\u00E9mon.xml");
  BOOL replaced = FALSE;
  char narrow[MAX_PATH] = {};
  WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, path.c_str(), -1, narrow, sizeof narrow, nullptr,
                      &replaced);
  if (replaced) GTEST_SKIP() << "the ANSI code page of this machine has no e with an accent";
  EXPECT_EQ(LoadGameList(narrow).size(), 2u);
}

TEST_F(XmlParserTest, ReadsAFileThatAnotherWriterHoldsOpen) {
  const std::wstring path = Write(kTwoGames);
  const Handle writer(CreateFileW(path.c_str(), GENERIC_WRITE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  ASSERT_NE(writer.Get(), INVALID_HANDLE_VALUE);
  EXPECT_EQ(XmlParser::LoadGameListFromXml(path).size(), 2u);
}

TEST_F(XmlParserTest, ReadsNothingFromAFileThatIsHeldForOneAlone) {
  const std::wstring path = Write(kTwoGames);
  const Handle holder(
      CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  ASSERT_NE(holder.Get(), INVALID_HANDLE_VALUE);
  EXPECT_TRUE(XmlParser::LoadGameListFromXml(path).empty());
}

TEST_F(XmlParserTest, ReadsTheFileAfreshAtEveryCall) {
  const std::wstring path = Write(kTwoGames);
  EXPECT_EQ(XmlParser::LoadGameListFromXml(path).size(), 2u);
  Write("<GameSignature></GameSignature>");
  EXPECT_EQ(XmlParser::LoadGameListFromXml(path).size(), 1u);
}

TEST_F(XmlParserTest, MayBeCalledOnManyThreads) {
  const std::wstring path = Write(Enciphered(kTwoGames));
  std::vector<std::jthread> threads;
  std::vector<size_t> counts(8);
  for (size_t i = 0; i < counts.size(); ++i) {
    threads.emplace_back([&, i] { counts[i] = XmlParser::LoadGameListFromXml(path).size(); });
  }
  threads.clear();
  EXPECT_EQ(counts, std::vector<size_t>(8, 2));
}

TEST_F(XmlParserTest, ReadsTheExampleOfTheFormatPageInBothForms) {
  for (const int example : {0, 1}) {
    const GameList games = XmlParser::LoadGameListFromXml(Write(tests::HexExample("catalogue", example)));
    ASSERT_EQ(games.size(), 1u);
    EXPECT_EQ(games[0].DisplayName, "Storm & Lantern");
    EXPECT_EQ(games[0].DefaultExe, "storm.exe");
    EXPECT_EQ(games[0].DefaultExe32, "");
    EXPECT_EQ(games[0].SourceKind, 2);
    EXPECT_EQ(games[0].SourceExId, "10070");
  }
}

}  // namespace
}  // namespace tarnwick
