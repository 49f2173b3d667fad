#include "host/catalogue/csv_writer.h"

#include <gtest/gtest.h>

namespace tarnwick::host {
namespace {

TEST(HostCatalogueCsvWriter, QuotesWhatWouldEndACell) {
  EXPECT_EQ(CsvCell(" a;b "), " a;b ");
  EXPECT_EQ(CsvCell("a,b"), "\"a,b\"");
  EXPECT_EQ(CsvCell("\""), "\"\"\"\"");
  EXPECT_EQ(CsvCell("a\nb"), "\"a\nb\"");
  EXPECT_EQ(CsvCell("a\rb"), "\"a\rb\"");
}

TEST(HostCatalogueCsvWriter, EndsEveryLine) {
  EXPECT_EQ(CsvLine({"a", "", "c"}), "a,,c\r\n");
  EXPECT_EQ(CsvLine({}), "\r\n");
}

}  // namespace
}  // namespace tarnwick::host
