#include "common/wide_text.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tarnwick::common {
namespace {

TEST(WideText, GoesThereAndBackWithItsZeroCharacters) {
  const std::string text("\u6e38\0\U0001F600", 8);
  EXPECT_EQ(Wide(text), std::wstring(L"\u6e38\0\U0001F600", 4));
  EXPECT_EQ(Narrow(Wide(text)), text);
  EXPECT_EQ(Wide(""), L"");
  EXPECT_EQ(Narrow(L""), "");
}

TEST(WideText, MalformedUtf8IsRefusedUnlessItShallBeReplaced) {
  EXPECT_THROW(Wide("a\xFFz"), std::runtime_error);
  EXPECT_EQ(Wide("a\xFFz", Malformed::kReplaced), L"a\uFFFDz");
}

TEST(WideText, HalfASurrogatePairBecomesTheReplacementCharacter) {
  EXPECT_EQ(Narrow(std::wstring{L'a', wchar_t{0xD83D}, L'z'}), "a\uFFFDz");
}

}  // namespace
}  // namespace tarnwick::common
