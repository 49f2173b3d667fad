#include "host/catalogue/fix_text.h"

#include "catalogue/catalogue_reader.h"
#include "host/catalogue/check_text.h"
#include "support/catalogue_reference.h"
#include "support/catalogue_sample.h"
#include "support/catalogue_text_parts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnwick::host {
namespace {

using tests::CatalogueOf;
using tests::Element;
using tests::GoodRecord;
using tests::RecordOf;

std::string Fixed(const std::string& records) { return FixText(records).text; }

size_t CountOf(const FixedText& fixed, Check check) { return fixed.counts[static_cast<size_t>(check)]; }

TEST(CatalogueFixText, LeavesAGoodCatalogueAsItIs) {
  for (const auto style : {tests::SampleStyle::kSparse, tests::SampleStyle::kFull}) {
    const std::string text = tests::CatalogueSample(20, style).text();
    EXPECT_EQ(Fixed(text), text);
  }
}

TEST(CatalogueFixText, PutsShorterNamesAheadAndLeavesTheOthersInPlace) {
  const std::string text = RecordOf(
      "\n <DefaultExe32>a</DefaultExe32>\n <SourceExId>1</SourceExId>\n <DisplayName>N</DisplayName>"
      "\n <DefaultExe>b</DefaultExe>\n <SourceEx>GOG</SourceEx>\n");
  EXPECT_EQ(Fixed(text),
            RecordOf("\n <DefaultExe>b</DefaultExe>\n <SourceEx>GOG</SourceEx>\n <DisplayName>N</DisplayName>"
                     "\n <DefaultExe32>a</DefaultExe32>\n <SourceExId>1</SourceExId>\n"));
  EXPECT_EQ(CountOf(FixText(text), kSwallowedElement), 1u);
}

TEST(CatalogueFixText, PutsAWholeFamilyInOrder) {
  const std::string text = RecordOf(Element("DefaultFolderExe64", "4") + Element("DefaultFolderExe", "3") +
                                    Element("DefaultFolder32", "2") + Element("DefaultFolder", "1"));
  const GameSignature game = ParseCatalogue(Fixed(text)).at(0);
  EXPECT_EQ(game.DefaultFolder, "1");
  EXPECT_EQ(game.DefaultFolder32, "2");
  EXPECT_EQ(game.DefaultFolderExe, "3");
  EXPECT_EQ(game.DefaultFolderExe64, "4");
}

TEST(CatalogueFixText, TrimsAndCollapsesWhatTheLibraryDoes) {
  EXPECT_EQ(Fixed(RecordOf("<DisplayName> A \n B&amp;C </DisplayName><Other> x </Other>")),
            RecordOf("<DisplayName>A B&amp;C</DisplayName><Other> x </Other>"));
}

TEST(CatalogueFixText, LeavesOutRecordsThatEqualAnEarlierOne) {
  const std::string a = GoodRecord();
  EXPECT_EQ(Fixed("<G>\n " + a + "\n " + a + "\n " + GoodRecord("", "B") + "\n</G>"),
            "<G>\n " + a + "\n " + GoodRecord("", "B") + "\n</G>");
  // Equal for the library, written otherwise.
  EXPECT_EQ(Fixed(a + GoodRecord("<RunningExe/>", "&#70;ernpad")), a);
}

TEST(CatalogueFixText, LeavesOutTheLineOfALeftRecordWholeWhateverItsEnd) {
  const std::string a = GoodRecord();
  EXPECT_EQ(Fixed("<G>\r\n " + a + "\r\n " + a + "\r\n</G>"), "<G>\r\n " + a + "\r\n</G>");
}

TEST(CatalogueFixText, LeavesOutARecordThatEqualsOneWhichItDoesNotTouch) {
  const std::string untouched = RecordOf("text" + Element("DisplayName", "A"));
  EXPECT_EQ(Fixed(untouched + RecordOf(Element("DisplayName", "A"))), untouched);
}

TEST(CatalogueFixText, TellsRecordsApartWhoseTextsEndElsewhere) {
  const std::string both = RecordOf(Element("DisplayName", "A&#32;&#32;") + Element("RegistryKey", "B")) +
                           RecordOf(Element("DisplayName", "A") + Element("RegistryKey", "&#32;&#32;B"));
  EXPECT_EQ(Fixed(both), both);
}

TEST(CatalogueFixText, KeepsRecordsThatDifferOrSayMore) {
  const std::string a = GoodRecord();
  for (const std::string& other : {GoodRecord(Element("RunningExe", "a.exe")), GoodRecord("<!-- why -->"),
                                   GoodRecord(Element("Note", "x"))})
    EXPECT_EQ(Fixed(a + other), a + other);
}

TEST(CatalogueFixText, TouchesNoRecordThatIsNoFlatList) {
  for (const char* inside :
       {"<DisplayName> A</DisplayName", "text<DisplayName> A</DisplayName>",
        "<DisplayName> A<b/></DisplayName>", "<DisplayName> A</DisplayName >",
        "<!-- <DisplayName> A</DisplayName> -->", "<DisplayName x=\"1>0\"> A</DisplayName>",
        "<![CDATA[x]]><DisplayName> A</DisplayName>"})
    EXPECT_EQ(Fixed(RecordOf(inside)), RecordOf(inside));
}

TEST(CatalogueFixText, ChangesNothingTheSecondTime) {
  const std::string rough = tests::CatalogueSample(20, tests::SampleStyle::kRough).text();
  const std::string swallowed = RecordOf(Element("SourceExId", " 1 ") + Element("SourceEx", "GOG") +
                                         "<!-- x -->" + Element("DisplayName", "A"));
  for (const std::string& text :
       {rough, rough + rough, CatalogueOf(swallowed + swallowed + GoodRecord("", "  "))}) {
    const FixedText once = FixText(text);
    EXPECT_FALSE(once.steps.empty());
    const FixedText twice = FixText(once.text);
    EXPECT_EQ(twice.text, once.text);
    EXPECT_TRUE(twice.steps.empty());
  }
}

TEST(CatalogueFixText, LeavesWhatIsReadAsItIs) {
  const std::string rough = tests::CatalogueSample(20, tests::SampleStyle::kRough).text();
  EXPECT_EQ(tests::FirstDifference(ParseCatalogue(Fixed(rough)), ParseCatalogue(rough)), -1);
}

TEST(CatalogueFixText, AFixedCatalogueChecksClean) {
  const std::string records = GoodRecord() + GoodRecord() +
                              GoodRecord(Element("SourceExId", "1") + Element("SourceEx", " GOG"), " B  C ");
  EXPECT_FALSE(CheckText(CatalogueOf(records)).list.empty());
  EXPECT_TRUE(CheckText(Fixed(CatalogueOf(records))).list.empty());
}

TEST(CatalogueFixText, CorrectsTheDeclarationAndTakesTheMarkAway) {
  const FixedText fixed = FixDeclaration("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-16\"?><A/>");
  EXPECT_EQ(fixed.text, "<?xml version=\"1.0\" encoding=\"utf-8\"?><A/>");
  EXPECT_EQ(fixed.steps.size(), 2u);
}

}  // namespace
}  // namespace tarnwick::host
