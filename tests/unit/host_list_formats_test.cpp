#include "host/list_formats.h"

#include <gtest/gtest.h>

namespace tarnwick::host {
namespace {

const Members kMembers = {"name", "loc", "sizeKB"};

std::string CsvOf(const std::string& name) {
  return FormatRows(Rows::array({{{"name", name}}}), {"name"}, Format::kCsv);
}

TEST(HostListFormats, MembersKeepTheirOrder) {
  const Rows rows = Rows::parse(R"([{"name":"b","loc":"a","sizeKB":3},{"name":"c","loc":"","sizeKB":0}])");
  EXPECT_EQ(FormatRows(rows, kMembers, Format::kJson),
            "[{\"name\":\"b\",\"loc\":\"a\",\"sizeKB\":3},{\"name\":\"c\",\"loc\":\"\",\"sizeKB\":0}]\n");
  EXPECT_EQ(FormatRows(rows, kMembers, Format::kNdjson),
            "{\"name\":\"b\",\"loc\":\"a\",\"sizeKB\":3}\n{\"name\":\"c\",\"loc\":\"\",\"sizeKB\":0}\n");
  EXPECT_EQ(FormatRows(rows, kMembers, Format::kCsv), "name,loc,sizeKB\r\nb,a,3\r\nc,,0\r\n");
}

TEST(HostListFormats, AnEmptyListHasItsShapeToo) {
  const Rows none = Rows::array();
  EXPECT_EQ(FormatRows(none, kMembers, Format::kJson), "[]\n");
  EXPECT_EQ(FormatRows(none, kMembers, Format::kNdjson), "");
  EXPECT_EQ(FormatRows(none, kMembers, Format::kCsv), "name,loc,sizeKB\r\n");
}

TEST(HostListFormats, CellsWithSeparatorsAreQuoted) {
  EXPECT_EQ(CsvOf("a b;c"), "name\r\na b;c\r\n");
  EXPECT_EQ(CsvOf("a,b"), "name\r\n\"a,b\"\r\n");
  EXPECT_EQ(CsvOf("a \"b\""), "name\r\n\"a \"\"b\"\"\"\r\n");
  EXPECT_EQ(CsvOf("a\nb"), "name\r\n\"a\nb\"\r\n");
  EXPECT_EQ(CsvOf("a\rb"), "name\r\n\"a\rb\"\r\n");
}

TEST(HostListFormats, NoCellCanBeRunAsAFormula) {
  for (const char first : {'=', '+', '-', '@', '\t'}) {
    EXPECT_EQ(CsvOf(std::string(1, first) + "1"), std::string("name\r\n'") + first + "1\r\n");
  }
  EXPECT_EQ(CsvOf("\r1"), "name\r\n\"'\r1\"\r\n");
  EXPECT_EQ(CsvOf("=A1,\"x\""), "name\r\n\"'=A1,\"\"x\"\"\"\r\n");
  EXPECT_EQ(CsvOf("1=2"), "name\r\n1=2\r\n");
  // A number is none.
  EXPECT_EQ(FormatRows(Rows::parse(R"([{"sizeKB":-5}])"), {"sizeKB"}, Format::kCsv), "sizeKB\r\n-5\r\n");
}

TEST(HostListFormats, BytesThatAreNoUtf8AreReplaced) {
  const Rows rows = Rows::array({{{"name", "a\xFF"}}});
  EXPECT_EQ(FormatRows(rows, {"name"}, Format::kJson), "[{\"name\":\"a\xEF\xBF\xBD\"}]\n");
  EXPECT_EQ(FormatRows(rows, {"name"}, Format::kNdjson), "{\"name\":\"a\xEF\xBF\xBD\"}\n");
  EXPECT_EQ(FormatRows(rows, {"name"}, Format::kCsv), "name\r\na\xEF\xBF\xBD\r\n");
}

TEST(HostListFormats, KnowsWhichFormatsAreItsOwn) {
  for (const Format format : {Format::kJson, Format::kNdjson, Format::kCsv})
    EXPECT_TRUE(IsListFormat(format));
  for (const Format format : {Format::kTable, Format::kHtml}) EXPECT_FALSE(IsListFormat(format));
}

}  // namespace
}  // namespace tarnwick::host
