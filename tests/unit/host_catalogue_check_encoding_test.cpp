#include "host/catalogue/check_encoding.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnwick::host {
namespace {

constexpr size_t kNone = std::string_view::npos;

TEST(CatalogueCheckEncoding, ReadsTheDeclaredName) {
  EXPECT_EQ(DeclaredEncoding("<?xml version=\"1.0\" encoding=\"windows-1252\"?><A/>"), "windows-1252");
  EXPECT_EQ(DeclaredEncoding("\xEF\xBB\xBF <?xml version='1.0' encoding = 'x' ?>"), "x");
  for (const char* text :
       {"", "<A encoding=\"x\"/>", "<?xml version=\"1.0\"?><A encoding=\"x\"/>", "<?xml encoding=\"x",
        "<?xml encoding=\"x?>", "<?xmlencoding=\"x\"?>", "<?xml encoding?>"})
    EXPECT_EQ(DeclaredEncoding(text), "") << text;
}

TEST(CatalogueCheckEncoding, FindsTheFirstByteThatIsNoUtf8) {
  EXPECT_EQ(FirstNoUtf8("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), kNone);
  for (const char* bad : {"\xE4", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                          "\xF0\x80\x80\x80", "\x80", "\xE2\x82", "\xF5\x80\x80\x80"}) {
    EXPECT_EQ(FirstNoUtf8("ab" + std::string(bad)), 2u) << bad;
    EXPECT_EQ(FirstNoUtf8("ab" + std::string(bad) + "c"), 2u) << bad;
  }
}

TEST(CatalogueCheckEncoding, KnowsBytesThatAreNoText) {
  EXPECT_TRUE(LooksBinary(std::string("\0", 1)));
  EXPECT_TRUE(LooksBinary("\xE4 "));
  EXPECT_FALSE(LooksBinary("Dear diary\r\n\t\xC3\xA4"));
}

}  // namespace
}  // namespace tarnwick::host
