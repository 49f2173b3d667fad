#include "steam/app_id_reader.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace tarnwick {
namespace {

using testing::ThrowsMessage;

TEST(AppIdReader, ReadsDecimalDigits) {
  EXPECT_EQ(ParseAppId("0"), 0u);
  EXPECT_EQ(ParseAppId("228980"), 228980u);
  EXPECT_EQ(ParseAppId("000010"), 10u) << "no octal";
  EXPECT_EQ(ParseAppId("4294967295"), 4294967295u);
}

TEST(AppIdReader, IgnoresWhatStandsBehindTheDigits) {
  EXPECT_EQ(ParseAppId("12x"), 12u);
  EXPECT_EQ(ParseAppId("12 34"), 12u);
  EXPECT_EQ(ParseAppId("0x10"), 0u) << "no hexadecimal";
  EXPECT_EQ(ParseAppId("1.5"), 1u);
}

TEST(AppIdReader, AcceptsLeadingWhiteSpaceAndASign) {
  EXPECT_EQ(ParseAppId(" \t\n\v\f\r7"), 7u);
  EXPECT_EQ(ParseAppId("+7"), 7u);
  EXPECT_EQ(ParseAppId(" -1"), 4294967295u);
  EXPECT_EQ(ParseAppId("-4294967295"), 1u);
  EXPECT_EQ(ParseAppId("-0"), 0u);
}

TEST(AppIdReader, NoDigitsIsAFailure) {
  for (const std::string text : {"", " ", "x", "x12", "+", "-", "+-1", "- 1", "\u0661", "\u00A01"}) {
    EXPECT_THAT([&] { ParseAppId(text); }, ThrowsMessage<std::invalid_argument>("invalid stoul argument"))
        << text;
  }
}

TEST(AppIdReader, BeyondThirtyTwoBitsIsAFailure) {
  for (const std::string text :
       {"4294967296", "-4294967296", "18446744073709551616", "99999999999999999999999999x"}) {
    EXPECT_THAT([&] { ParseAppId(text); }, ThrowsMessage<std::out_of_range>("stoul argument out of range"))
        << text;
  }
}

}  // namespace
}  // namespace tarnwick
