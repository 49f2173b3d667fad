#include "foundation/registry_value_reader.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace tarnwick {
namespace {

using namespace std::string_view_literals;

std::optional<std::u16string> Decode(uint32_t type, std::string_view bytes) {
  // An allocation of exactly the value's size, so that a sanitizer sees any byte read too far.
  const std::vector<unsigned char> exact(bytes.begin(), bytes.end());
  return DecodeRegistryText(type, exact);
}

TEST(DecodeRegistryText, KnowsTheTwoTextTypesOnly) {
  for (uint32_t type = 0; type < 16; ++type) {
    const bool text = type == 1 || type == 2;
    EXPECT_EQ(IsRegistryTextType(type), text) << type;
    EXPECT_EQ(Decode(type, "a\0\0\0"sv).has_value(), text) << type;
  }
}

TEST(DecodeRegistryText, EndsAtTheTerminator) { EXPECT_EQ(Decode(1, "a\0b\0\0\0"sv), u"ab"); }

TEST(DecodeRegistryText, EndsAtTheFirstOfSeveralNuls) { EXPECT_EQ(Decode(2, "a\0\0\0b\0\0\0"sv), u"a"); }

TEST(DecodeRegistryText, NeedsNoTerminator) { EXPECT_EQ(Decode(1, "a\0b\0"sv), u"ab"); }

TEST(DecodeRegistryText, DropsAnOddLastByte) {
  EXPECT_EQ(Decode(1, "a\0b"sv), u"a");
  EXPECT_EQ(Decode(1, "a\0b\0\0"sv), u"ab");
  EXPECT_EQ(Decode(1, "a"sv), u"");
}

TEST(DecodeRegistryText, NoBytesAreAnEmptyText) {
  EXPECT_EQ(Decode(1, ""sv), u"");
  EXPECT_EQ(DecodeRegistryText(1, {}), u"");
  EXPECT_EQ(Decode(3, ""sv), std::nullopt);
}

TEST(DecodeRegistryText, ALoneTerminatorIsAnEmptyText) { EXPECT_EQ(Decode(1, "\0\0"sv), u""); }

TEST(DecodeRegistryText, TakesUnitsInLittleEndianOrder) {
  EXPECT_EQ(Decode(1, "\x16\x04\x22\x6F\x00\x01\xE9\x00"sv), u"\u0416\u6F22\u0100\u00E9");
}

TEST(DecodeRegistryText, HandsSurrogatesOnPairedOrAlone) {
  EXPECT_EQ(Decode(1, "\x3C\xD8\xAE\xDF"sv), u"\U0001F3AE");
  EXPECT_EQ(Decode(1, "\x3C\xD8"sv), std::u16string(1, static_cast<char16_t>(0xD83C)));
}

TEST(DecodeRegistryText, IsAPrefixAtEveryLength) {
  constexpr auto kBytes = "C\0:\0\\\0G\0a\0m\0e\0\0\0"sv;
  const std::u16string whole = u"C:\\Game";
  for (size_t length = 0; length <= kBytes.size(); ++length) {
    EXPECT_EQ(Decode(1, kBytes.substr(0, length)), whole.substr(0, length / 2)) << length;
  }
}

TEST(DecodeRegistryText, TakesLongTexts) {
  const std::string bytes(200'000, 'x');
  EXPECT_EQ(Decode(1, bytes), std::u16string(100'000, static_cast<char16_t>('x' | 'x' << 8)));
}

}  // namespace
}  // namespace tarnwick
