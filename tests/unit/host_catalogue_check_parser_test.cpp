#include "host/catalogue/check_parser.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnwick::host {
namespace {

std::string CheckOf(const std::string& text) {
  const auto fault = FindParserFault(text);
  return fault ? std::string(RowOf(fault->check).code) : std::string();
}

TEST(CatalogueCheckParser, TakesWellFormedText) {
  for (const char* text :
       {"<A/>", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<A><B x=\"1\">t</B></A>\n", "\n\n <A></A>",
        "<A/><!-- x -->\n", "\xEF\xBB\xBF<A/>", "<?xml version=\"1.0\" encoding=\"utf-16\"?><A/>",
        "<A>\xE4</A>", "<?xml version=\"1.0\" encoding=\"x-fernpad\"?><A/>"})
    EXPECT_EQ(CheckOf(text), "") << text;
}

TEST(CatalogueCheckParser, TC003TextThatIsNotWellFormed) {
  for (const char* text : {"", "text", "<A>", "<A", "<A x=", "<A x=\"", "<A><B></A>", "<A></B>", "<A/><B/>",
                           "<A/>t", "<A><!-- x</A>", "<A/><!-- x", "<A><![CDATA[x</A>", "<A><?x </A>", "<A>t",
                           "<A x=1/>", "<A>]]></A>", "<_>", "<_><__>"})
    EXPECT_EQ(CheckOf(text), "TC003") << text;
}

TEST(CatalogueCheckParser, EachBeginningOfATextComesToAnEnd) {
  const std::string text =
      "<?xml version=\"1.0\"?><!-- c --><A x='1'><B y=\"2\">t&amp;</B><![CDATA[d]]><?p q?></A>";
  for (size_t length = 0; length < text.size(); ++length)
    EXPECT_EQ(CheckOf(text.substr(0, length)), "TC003") << length;
}

TEST(CatalogueCheckParser, GivesTheParsersPlace) {
  const std::string text = std::string(20, '\n') + "<A>\n <B></C>\n</A>";
  const auto fault = FindParserFault(text);
  ASSERT_TRUE(fault);
  EXPECT_GE(fault->at, text.find("<B>"));
  EXPECT_LE(fault->at, text.find("\n</A>"));
}

TEST(CatalogueCheckParser, TC015RefusesDocumentTypesAndWithThemEntityBombs) {
  EXPECT_EQ(CheckOf("<!DOCTYPE a [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;\">]><A>&b;</A>"), "TC015");
}

TEST(CatalogueCheckParser, TC017RefusesDeepNesting) {
  std::string deep;
  for (size_t i = 0; i <= kMostDepth; ++i) deep += "<a>";
  EXPECT_EQ(CheckOf(deep), "TC017");
  for (int i = 0; i < 100'000; ++i) deep += "<a>";
  EXPECT_EQ(CheckOf(deep), "TC017");
}

}  // namespace
}  // namespace tarnwick::host
