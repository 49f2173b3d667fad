#include "host/catalogue/check_text.h"

#include "support/catalogue_text_parts.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tarnwick::host {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::CatalogueOf;
using tests::Element;
using tests::GoodRecord;

std::vector<Check> ChecksOf(const std::string& text) {
  std::vector<Check> checks;
  for (const Finding& finding : CheckText(text).list) checks.push_back(finding.check);
  return checks;
}

TEST(CatalogueCheckText, CountsRecordsErrorsAndWarnings) {
  const Findings findings =
      CheckText(CatalogueOf(GoodRecord("", " A") + GoodRecord("", "") + GoodRecord("", "B")));
  EXPECT_EQ(findings.records, 3u);
  EXPECT_EQ(findings.errors, 1u);
  EXPECT_EQ(findings.warnings, 1u);
}

TEST(CatalogueCheckText, TC001TextWithoutARecord) {
  for (const char* text : {"", "<A/>", "Dear diary", " \r\n", "<A><Game/></A>"})
    EXPECT_THAT(ChecksOf(text), ElementsAre(kNoRecord)) << text;
}

TEST(CatalogueCheckText, TC002RecordWithoutAnEndIsToldAndNotTC001) {
  EXPECT_THAT(ChecksOf("<A><GameSignature></A>"), ElementsAre(kRecordNotClosed));
  EXPECT_THAT(ChecksOf(CatalogueOf(GoodRecord() + "<GameSignature></GameSignature >")),
              ElementsAre(kRecordNotClosed));
}

std::string Utf16(const std::string& text, bool bigEndian) {
  std::string bytes;
  for (const char byte : text) bytes += bigEndian ? std::string{'\0', byte} : std::string{byte, '\0'};
  return bytes;
}

TEST(CatalogueCheckText, TC005Utf16WithAndWithoutAMark) {
  for (const bool big : {false, true}) {
    EXPECT_THAT(ChecksOf(Utf16(CatalogueOf(GoodRecord()), big)), ElementsAre(kUtf16));
    EXPECT_THAT(ChecksOf((big ? "\xFE\xFF" : "\xFF\xFE") + Utf16("<A/>", big)), ElementsAre(kUtf16));
  }
}

TEST(CatalogueCheckText, TC006OtherEncodingsAreToldAtTheirName) {
  const std::string text = "<?xml version='1.0' encoding = 'ISO-8859-1'?>" + CatalogueOf(GoodRecord());
  const Findings findings = CheckText(text);
  ASSERT_THAT(ChecksOf(text), ElementsAre(kOtherEncoding));
  EXPECT_EQ(findings.list[0].at, text.find("ISO"));
  for (const char* name : {"utf-8", "UTF-8", "Utf8"})
    EXPECT_THAT(ChecksOf("<?xml version=\"1.0\" encoding=\"" + std::string(name) + "\"?>" +
                         CatalogueOf(GoodRecord())),
                IsEmpty());
}

TEST(CatalogueCheckText, TC007BytesThatAreNoUtf8AreToldOnceALine) {
  const std::string text = CatalogueOf("\xE4 \xE4\n\xF6" + GoodRecord() + "\n\xC3\xA4");
  EXPECT_THAT(ChecksOf(text), ElementsAre(kNoUtf8, kNoUtf8));
}

TEST(CatalogueCheckText, TC008BytesThatAreNoText) {
  EXPECT_THAT(ChecksOf(std::string("\x01\x02\x93\x80 cipher")), ElementsAre(kNotDeciphered));
}

TEST(CatalogueCheckText, TC016ALimitKeepsTheMemoryBounded) {
  EXPECT_THAT(ChecksOf(std::string(kMostBytes + 1, ' ')), ElementsAre(kTooLarge));
}

TEST(CatalogueCheckText, TC101SameNameAndSource) {
  EXPECT_THAT(ChecksOf(CatalogueOf(GoodRecord() + GoodRecord())), ElementsAre(kSameName));
  const std::string gog = GoodRecord(Element("SourceEx", "GOG"));
  EXPECT_THAT(ChecksOf(CatalogueOf(GoodRecord() + gog)), IsEmpty());
}

TEST(CatalogueCheckText, TC102SameSourceAndIdIsToldInPlaceOfTC101) {
  const auto record = [](const std::string& name, const std::string& source) {
    return GoodRecord(Element("SourceEx", source) + Element("SourceExId", "7"), name);
  };
  EXPECT_THAT(ChecksOf(CatalogueOf(record("A", "GOG") + record("B", "GOG"))), ElementsAre(kSameId));
  EXPECT_THAT(ChecksOf(CatalogueOf(record("A", "GOG") + record("A", "GOG"))), ElementsAre(kSameId));
  EXPECT_THAT(ChecksOf(CatalogueOf(record("A", "GOG") + record("B", "STEAM"))), IsEmpty());
}

TEST(CatalogueCheckText, TC102KnowsWhatEachSourceCallsAnId) {
  const auto pair = [](const std::string& source, const std::string& field, const std::string& text) {
    const std::string more = Element("SourceEx", source) + Element(field, text);
    return CatalogueOf(GoodRecord(more, "A") + GoodRecord(more, "B"));
  };
  EXPECT_THAT(ChecksOf(pair("UWP", "GameInfo", "A_b")), ElementsAre(kSameId));
  EXPECT_THAT(ChecksOf(pair("BETHESDA", "LaunchUrl", "bethesdanet://run/7")), ElementsAre(kSameId));
  EXPECT_THAT(ChecksOf(pair("RIOT", "RunningExe", "a.exe")), ElementsAre(kSameId));
  EXPECT_THAT(ChecksOf(pair("GOG", "GameInfo", "free text")), IsEmpty());
}

TEST(CatalogueCheckText, TC103RecordsWhoseTagHasMoreThanTheName) {
  for (const char* tag :
       {"<GameSignature id=\"1\">", "<GameSignature >", "<x:GameSignature>", "<GameSignature/>"})
    EXPECT_THAT(ChecksOf(CatalogueOf(GoodRecord() + tag)), ElementsAre(kSkippedRecord)) << tag;
}

TEST(CatalogueCheckText, TC117CommentsThatHideNothing) {
  const std::string other = GoodRecord("", "Other");
  EXPECT_THAT(ChecksOf(CatalogueOf("<!-- " + other + GoodRecord() + " -->")), ElementsAre(kReadInComment));
  EXPECT_THAT(ChecksOf(CatalogueOf(GoodRecord("<!-- " + Element("RunningExe", "a.exe") + "-->"))),
              ElementsAre(kReadInComment));
  EXPECT_THAT(ChecksOf(CatalogueOf(
                  GoodRecord("<!-- checked 2024 --><!-- " + Element("RunningExe", "a.exe") + "-->"))),
              ElementsAre(kReadInComment));
  EXPECT_THAT(
      ChecksOf(CatalogueOf("<!-- a --><!-- b -->" + GoodRecord("<!-- checked 2024 -->") + "<!-- c -->")),
      IsEmpty());
}

TEST(CatalogueCheckText, TC118ByteOrderMark) {
  EXPECT_THAT(ChecksOf("\xEF\xBB\xBF" + CatalogueOf(GoodRecord())), ElementsAre(kByteOrderMark));
}

TEST(CatalogueCheckText, ManyFindingsAreCountedAndTheFirstAreKept) {
  std::string records;
  for (size_t i = 0; i <= kMostFindings; ++i) records += "<GameSignature></GameSignature>";
  const Findings findings = CheckText(CatalogueOf(records));
  EXPECT_EQ(findings.list.size(), kMostFindings);
  EXPECT_EQ(findings.errors, 2 * (kMostFindings + 1));
}

TEST(CatalogueCheckText, EachBeginningOfACatalogueGivesPlacesInside) {
  const std::string text =
      CatalogueOf(GoodRecord("<!-- x -->") +
                  GoodRecord("<SourceExId>1</SourceExId><SourceEx>GOG</SourceEx>", "B &amp; C"));
  for (size_t length = 0; length <= text.size(); ++length) {
    for (const Finding& finding : CheckText(text.substr(0, length)).list) EXPECT_LE(finding.at, length);
  }
}

TEST(CatalogueCheckText, HostileTextsTakeLinearTime) {
  const std::vector<std::string> pieces = {
      "<", "<a", "<DefaultExe", "<!--", "&", "<GameSignature>", "<GameSignature><", "</"};
  for (const std::string& piece : pieces) {
    std::string text = "<GameSignature>";
    while (text.size() < 2'000'000) text += piece;
    CheckText(text + "</GameSignature>");
  }
}

}  // namespace
}  // namespace tarnwick::host
