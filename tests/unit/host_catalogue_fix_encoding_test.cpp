#include "host/catalogue/fix_encoding.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnwick::host {
namespace {

std::string Utf16(const std::u16string& text, bool bigEndian) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += bigEndian ? std::string{high, low} : std::string{low, high};
  }
  return bytes;
}

TEST(CatalogueFixEncoding, ConvertsUtf16OfBothOrdersAndDeclaresUtf8) {
  const std::u16string text = u"<?xml version=\"1.0\" encoding=\"utf-16\"?><A>\u00E4\U0001F600</A>";
  for (const bool big : {false, true}) {
    for (const std::u16string& mark : {std::u16string(), std::u16string(u"\uFEFF")}) {
      const FixedText fixed = FixEncoding(Utf16(mark + text, big));
      EXPECT_EQ(fixed.text, "<?xml version=\"1.0\" encoding=\"utf-8\"?><A>\xC3\xA4\xF0\x9F\x98\x80</A>");
      EXPECT_EQ(fixed.steps.size(), 1u);
    }
  }
}

TEST(CatalogueFixEncoding, LeavesUtf16ThatWouldNotConvertWhole) {
  const std::string lone = Utf16(u"\uFEFF<A>", false) + std::string("\x00\xD8", 2) + Utf16(u"</A>", false);
  EXPECT_EQ(FixEncoding(lone).text, lone);
  const std::string odd = Utf16(u"\uFEFF<A/>", false) + "x";
  EXPECT_EQ(FixEncoding(odd).text, odd);
}

TEST(CatalogueFixEncoding, ConvertsFromTheDeclaredCodePage) {
  EXPECT_EQ(FixEncoding("<?xml version=\"1.0\" encoding=\"Windows-1251\"?><A>\xC6</A>").text,
            "<?xml version=\"1.0\" encoding=\"utf-8\"?><A>\xD0\x96</A>");
}

TEST(CatalogueFixEncoding, CorrectsTheClaimAloneWhereTheBytesAreUtf8) {
  EXPECT_EQ(FixEncoding("<?xml version=\"1.0\" encoding=\"windows-1252\"?><A>\xC3\xA4</A>").text,
            "<?xml version=\"1.0\" encoding=\"utf-8\"?><A>\xC3\xA4</A>");
}

TEST(CatalogueFixEncoding, GuessesNothing) {
  for (const std::string& text :
       {std::string("<A>\xE4</A>"), std::string("<?xml version=\"1.0\" encoding=\"x-own\"?><A>\xE4</A>")}) {
    EXPECT_EQ(FixEncoding(text).text, text);
    EXPECT_TRUE(FixEncoding(text).steps.empty());
  }
}

}  // namespace
}  // namespace tarnwick::host
