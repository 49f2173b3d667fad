#include "steam/vdf_line_reader.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(VdfLineReader, TakesTheTextBetweenTheNextTwoQuotes) {
  EXPECT_EQ(QuotedValueBehind(R"("key"	"value" "more")", 5), "value");
  EXPECT_EQ(QuotedValueBehind(R"("key""")", 5), "");
}

TEST(VdfLineReader, LeavesEscapesAsTheyAre) {
  EXPECT_EQ(QuotedValueBehind(R"(k "a\\b\n")", 1), R"(a\\b\n)");
  EXPECT_EQ(QuotedValueBehind(R"(k "a\"b")", 1), "a\\") << "an escaped quote ends the value";
}

TEST(VdfLineReader, GivesNothingWithoutBothQuotes) {
  EXPECT_EQ(QuotedValueBehind("", 0), std::nullopt);
  EXPECT_EQ(QuotedValueBehind("key value", 3), std::nullopt);
  EXPECT_EQ(QuotedValueBehind("key \"value", 3), std::nullopt);
  EXPECT_EQ(QuotedValueBehind("key \"", 3), std::nullopt);
  EXPECT_EQ(QuotedValueBehind("\"key\"", 5), std::nullopt) << "the line ends with the key";
  EXPECT_EQ(QuotedValueBehind("\"key\"", 50), std::nullopt);
}

}  // namespace
}  // namespace tarnwick
