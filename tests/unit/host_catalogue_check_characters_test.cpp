#include "host/catalogue/check_characters.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnwick::host {
namespace {

size_t FaultIn(const std::string& text) {
  const auto fault = FindCharacterFault(text);
  return fault ? fault->at : std::string::npos;
}

TEST(CatalogueCheckCharacters, TakesWhatXmlAllows) {
  for (const char* text :
       {"", "<A>&amp;&lt;&gt;&quot;&apos;&#65;&#x1F600;\t\r\n\x7F</A>", "<!-- & --><![CDATA[ & ]]><?a & ?>"})
    EXPECT_EQ(FaultIn(text), std::string::npos) << text;
}

TEST(CatalogueCheckCharacters, FindsTheFirstBadReference) {
  for (const char* text : {"<A>& ", "<A>&nbsp;", "<A>&", "<A>&;", "<A>&#;", "<A>&#xD800;", "<A>&#0;",
                           "<A>&#x110000;", "<A>&#-1;", "<A>&amp"})
    EXPECT_EQ(FaultIn(text), 3u) << text;
}

// What isn't closed hides all behind it; the parser tells of that itself.
TEST(CatalogueCheckCharacters, LooksForNoReferenceInAnOpenSection) {
  for (const char* text : {"<A><!-- & ", "<A><![CDATA[ & ", "<A><?a & "})
    EXPECT_EQ(FaultIn(text), std::string::npos) << text;
}

TEST(CatalogueCheckCharacters, FindsControlCharactersAndALateDeclaration) {
  EXPECT_EQ(FaultIn("<A>\x01"), 3u);
  EXPECT_EQ(FaultIn("\n<?xml version=\"1.0\"?><A/>"), 1u);
  EXPECT_EQ(FaultIn("\xEF\xBB\xBF<?xml version=\"1.0\"?><A/>"), std::string::npos);
}

}  // namespace
}  // namespace tarnwick::host
