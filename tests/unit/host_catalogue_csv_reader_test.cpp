#include "host/catalogue/csv_reader.h"

#include "support/hostile_texts.h"

#include <gmock/gmock.h>

#include <optional>

namespace tarnwick::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Texts = std::vector<std::vector<std::string>>;

std::vector<std::vector<CsvField>> FieldsOf(const std::string& text) {
  std::vector<std::vector<CsvField>> lines;
  CsvReader reader = OpenCsv(text);
  for (std::vector<CsvField> line; ReadCsvLine(reader, line);) lines.push_back(line);
  return lines;
}

Texts Read(const std::string& text) {
  Texts texts;
  for (const auto& line : FieldsOf(text)) {
    texts.emplace_back();
    for (const CsvField& field : line) texts.back().push_back(field.text);
  }
  return texts;
}

// "12:5: what is wrong", or "" for a text without a fault.
std::string FaultOf(const std::string& text) {
  try {
    CsvReader reader = OpenCsv(text);
    for (std::vector<CsvField> line; ReadCsvLine(reader, line);) {
    }
    return "";
  } catch (const CsvError& error) {
    return std::to_string(error.place.line) + ":" + std::to_string(error.place.column) + ": " + error.what();
  }
}

TEST(HostCatalogueCsvReader, ReadsFieldsWithAndWithoutQuotes) {
  EXPECT_EQ(Read("a,b\r\n1,2\r\n"), (Texts{{"a", "b"}, {"1", "2"}}));
  EXPECT_EQ(Read("\"a,1\",\"say \"\"so\"\"\",\"two\r\nlines\"\n"),
            (Texts{{"a,1", "say \"so\"", "two\r\nlines"}}));
  EXPECT_EQ(Read(" a , b\t,\n"), (Texts{{" a ", " b\t", ""}}));
  EXPECT_EQ(Read("\"\",\"\"\"\""), (Texts{{"", "\""}}));
}

TEST(HostCatalogueCsvReader, TakesEitherLineEndOrNoneAndPassesOverEmptyLines) {
  EXPECT_EQ(Read("a\n\n\r\nb\r\n\"\"\nc"), (Texts{{"a"}, {"b"}, {""}, {"c"}}));
  EXPECT_EQ(Read(","), (Texts{{"", ""}}));
  EXPECT_THAT(Read(""), IsEmpty());
  EXPECT_THAT(Read("\r\n\n"), IsEmpty());
}

TEST(HostCatalogueCsvReader, SkipsAByteOrderMarkAtTheStartAlone) {
  EXPECT_EQ(Read("\xEF\xBB\xBF\"a\",b"), (Texts{{"a", "b"}}));
  EXPECT_EQ(Read("a\n\xEF\xBB\xBF"
                 "b"),
            (Texts{{"a"},
                   {"\xEF\xBB\xBF"
                    "b"}}));
}

TEST(HostCatalogueCsvReader, EveryFieldHasItsPlaceInCharacters) {
  const auto lines = FieldsOf("é游,b\n\"two\nlines\",\"c\"\n");
  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_EQ(lines[0][1].place.column, 4u);
  EXPECT_EQ(lines[1][0].place.line, 2u);
  EXPECT_EQ(lines[1][1].place.line, 3u);
  EXPECT_EQ(lines[1][1].place.column, 8u);
}

TEST(HostCatalogueCsvReader, NamesThePlaceOfAStrayQuoteOrCarriageReturn) {
  EXPECT_THAT(FaultOf("a,b\nname,5\" disk\n"), HasSubstr("2:7: quote inside an unquoted field"));
  EXPECT_THAT(FaultOf("\"a\"b,c"), HasSubstr("1:3: quote inside a quoted field"));
  EXPECT_THAT(FaultOf("\"a\" ,c"), HasSubstr("1:3: quote inside a quoted field"));
  EXPECT_EQ(FaultOf("a,\"b\nc,d\n"), "1:3: quote that is never closed");
  EXPECT_EQ(FaultOf("a,\"b\"\""), "1:3: quote that is never closed");
  EXPECT_EQ(FaultOf("a,b\rc,d\r"), "1:4: carriage return without a line feed");
  EXPECT_EQ(FaultOf("a\n\r"), "2:1: carriage return without a line feed");
}

TEST(HostCatalogueCsvReader, RefusesWhatNoCatalogueCanHold) {
  EXPECT_EQ(FaultOf(std::string("a,b\0c", 5)), "1:4: U+0000, which no catalogue can hold");
  EXPECT_EQ(FaultOf("\"a\x01\""), "1:3: U+0001, which no catalogue can hold");
  EXPECT_EQ(FaultOf(std::string("\"a\"\0", 4)), "1:4: U+0000, which no catalogue can hold");
  EXPECT_EQ(FaultOf("é,\xE9t\xE9"), "1:3: byte 0xE9 is no UTF-8; save the file as UTF-8");
  EXPECT_EQ(FaultOf(""), "");
}

TEST(HostCatalogueCsvReader, NeitherAFieldNorALineMayGrowWithoutBound) {
  EXPECT_EQ(FaultOf(std::string(kMostCsvFieldBytes, 'a')), "");
  EXPECT_THAT(FaultOf("x,\"" + std::string(kMostCsvFieldBytes, 'a') + "a\""),
              HasSubstr("1:3: a field of more than"));
  EXPECT_EQ(FaultOf(std::string(kMostCsvFields - 1, ',')), "");
  EXPECT_EQ(FaultOf(std::string(kMostCsvFields, ',')), "1:1025: more than 1024 fields in a line");
}

TEST(HostCatalogueCsvReader, EveryBeginningOfAFileGivesFieldsOrAFault) {
  const std::string whole = "DisplayName,SourceEx\r\n\"Wren, \"\"the\"\" 游\nbird\",STEAM\r\n";
  for (size_t length = 0; length <= whole.size(); ++length) FaultOf(whole.substr(0, length));
  for (const std::string& text : tests::MeaninglessTexts(whole)) FaultOf(text);
  EXPECT_EQ(FaultOf(whole), "");
}

TEST(HostCatalogueCsvReader, HugeTextsCostTimeInProportion) {
  for (const char* pattern : {"aa", "a,b\n", "\"a\"\"b\"\n", "\r\n", "\"\n"})
    FaultOf(tests::Enormous(pattern));
  EXPECT_EQ(Read(tests::Enormous("\r\n")), Texts());
}

}  // namespace
}  // namespace tarnwick::host
