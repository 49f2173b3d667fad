#include "launchers/json_text_reader.h"

#include "support/hostile_texts.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr size_t kNone = std::string_view::npos;

TEST(JsonTextReader, FindsAStringBehindItsKey) {
  EXPECT_EQ(JsonFindString(R"({"a":"x","b":"y"})", "b"), "y");
  EXPECT_EQ(JsonFindString("{\"a\" \t\r\n: \t\r\n\"x\"}", "a"), "x");
  EXPECT_EQ(JsonFindString(R"({"имя":"Игра 游戏 é"})", "имя"), "Игра 游戏 é");
}

TEST(JsonTextReader, AnEmptyStringIsEmpty) { EXPECT_EQ(JsonFindString(R"({"a":"","b":"y"})", "a"), ""); }

TEST(JsonTextReader, TheKeyMustStandAloneInItsQuotes) {
  EXPECT_EQ(JsonFindString(R"({"MainGameAppName":"main","AppName":"app"})", "AppName"), "app");
  EXPECT_EQ(JsonFindString(R"({"relative_path_64":"64","relative_path":"32"})", "relative_path"), "32");
  EXPECT_EQ(JsonFindString(R"({"APPNAME":"app"})", "AppName"), "");
}

TEST(JsonTextReader, OnlyTheFirstOccurrenceCountsAtAnyDepth) {
  EXPECT_EQ(JsonFindString(R"({"x":{"a":"deep"},"a":"top"})", "a"), "deep");
  EXPECT_EQ(JsonFindString(R"({"a":1,"a":"second"})", "a"), "");
  EXPECT_EQ(JsonFindString(R"({"x":"a","b":"y"})", "a"), "y")
      << "a value counts as the key, with the next colon";
}

TEST(JsonTextReader, WhatIsNoStringIsEmpty) {
  for (const char* value : {"1", "null", "true", "[\"x\"]", "{\"b\":\"x\"}", "'x'", ""}) {
    EXPECT_EQ(JsonFindString("{\"a\":" + std::string(value), "a"), "") << value;
  }
}

TEST(JsonTextReader, AnEscapedQuoteStaysWithItsBackslash) {
  EXPECT_EQ(JsonFindString(R"({"a":"The \"Wren\"","b":"y"})", "a"), R"(The \"Wren\")");
}

TEST(JsonTextReader, DoubledBackslashesStay) {
  EXPECT_EQ(JsonFindString(R"({"a":"C:\\Games\\Wren"})", "a"), R"(C:\\Games\\Wren)");
}

TEST(JsonTextReader, AnEscapedBackslashBeforeTheQuoteLetsTheValueRunOn) {
  EXPECT_EQ(JsonFindString(R"({"a":"C:\\Games\\","b":"y"})", "a"), R"(C:\\Games\\",)");
  EXPECT_EQ(JsonFindString(R"({"a":"C:\\"})", "a"), "") << "no further quote";
}

TEST(JsonTextReader, AKeyLongerThanTheTextIsNotFound) {
  EXPECT_EQ(JsonFindString("\"a\"", "abcdef"), "");
  EXPECT_EQ(JsonFindString("", "a"), "");
  EXPECT_EQ(JsonFindNextQuoted("", "a"), "");
}

TEST(JsonTextReader, TheLooseRuleTakesWhateverIsQuotedNext) {
  EXPECT_EQ(JsonFindNextQuoted(R"({"a":"x","b":"y"})", "a"), "x");
  EXPECT_EQ(JsonFindNextQuoted(R"({"a": 5, "b":"y"})", "a"), "b");
  EXPECT_EQ(JsonFindNextQuoted(R"({"a": [{ "b":"y"}]})", "a"), "b");
  EXPECT_EQ(JsonFindNextQuoted(R"({"a":""})", "a"), "");
  EXPECT_EQ(JsonFindNextQuoted(R"({"a":5})", "a"), "");
  EXPECT_EQ(JsonFindNextQuoted(R"({"a"})", "a"), "");
}

TEST(JsonTextReader, TheLooseRuleHonoursNoEscape) {
  EXPECT_EQ(JsonFindNextQuoted(R"({"a":"The \"Wren\""})", "a"), "The \\");
  EXPECT_EQ(JsonFindNextQuoted(R"({"a":"C:\\Games\\","b":"y"})", "a"), R"(C:\\Games\\)");
}

TEST(JsonTextReader, FindsColonsBlanksAndClosingQuotes) {
  EXPECT_EQ(JsonFindColon(R"(: "a" x : y)", "a"), 8u) << "the first behind the key";
  EXPECT_EQ(JsonFindColon(R"(: "a")", "a"), kNone);
  EXPECT_EQ(JsonSkipBlanks(" \t\r\nx", 0), 4u);
  EXPECT_EQ(JsonSkipBlanks("\v", 0), 0u) << "no other white space counts";
  EXPECT_EQ(JsonSkipBlanks("  ", 0), 2u);
  EXPECT_EQ(JsonSkipBlanks("", 5), 0u);
  EXPECT_EQ(JsonFindClosingQuote(R"(a\"b")", 0), 4u);
  EXPECT_EQ(JsonFindClosingQuote(R"(a\")", 0), kNone);
}

TEST(JsonTextReader, ACutTextGivesTheWholeValueOrNothing) {
  const std::string text = R"({"a": "The \"Wren\"", "b": "y"})";
  for (size_t size = 0; size <= text.size(); ++size) {
    const std::string value = JsonFindString(text.substr(0, size), "a");
    EXPECT_TRUE(value.empty() || value == R"(The \"Wren\")") << size << ": " << value;
    const std::string loose = JsonFindNextQuoted(text.substr(0, size), "a");
    EXPECT_TRUE(loose.empty() || loose == "The \\") << size << ": " << loose;
  }
}

TEST(JsonTextReader, MeaninglessTextsGiveNothing) {
  for (const std::string& text : tests::MeaninglessTexts(R"({"a":"x"})")) {
    EXPECT_EQ(JsonFindString(text, "a"), "");
    EXPECT_EQ(JsonFindNextQuoted(text, "a"), "");
  }
}

TEST(JsonTextReader, AnEmbeddedNulIsAByteLikeOthers) {
  const std::string text("{\"a\":\"x\0y\"}", 11);
  EXPECT_EQ(JsonFindString(text, "a"), std::string("x\0y", 3));
}

TEST(JsonTextReader, AHugeTextOfEscapedQuotesIsReadOnce) {
  const std::string text = "{\"a\":\"" + tests::Repeated("\\\"", tests::kHuge) + "\"}";
  EXPECT_EQ(JsonFindString(text, "a").size(), tests::kHuge);
}

TEST(JsonTextReader, OnlyTheBytesTrueAreTrue) {
  EXPECT_TRUE(JsonFindBool(R"({"a":true})", "a"));
  EXPECT_TRUE(JsonFindBool("{\"a\" : \t\r\n true", "a"));
  EXPECT_TRUE(JsonFindBool(R"({"a":truely})", "a")) << "what follows the four bytes is not read";
  for (const char* value : {"false", "True", "TRUE", "1", "\"true\"", "tru", "", "null", "[true]"}) {
    EXPECT_FALSE(JsonFindBool("{\"a\":" + std::string(value), "a")) << value;
  }
  EXPECT_FALSE(JsonFindBool(R"({"b":true})", "a"));
  EXPECT_FALSE(JsonFindBool(R"({"a")", "a"));
  EXPECT_TRUE(JsonFindBool(R"({"a":true,"a":false})", "a")) << "the first occurrence";
}

TEST(JsonTextReader, AnArrayOfStringsIsAlwaysEmpty) {
  for (const char* array :
       {R"(["x"])", R"(["x","y"])", R"([ "x" , "y" ])", R"(["",""])", "[]", R"([x"y"])", R"([1,2])",
        R"([["x"]])", R"(["\"x"])", R"(["x)", "[", "5", "\"x\"", "", R"([""x""])"}) {
    EXPECT_THAT(JsonFindStringArray("{\"a\":" + std::string(array) + "}", "a"), IsEmpty()) << array;
    EXPECT_THAT(JsonFindStringArray("{\"a\":" + std::string(array), "a"), IsEmpty()) << array;
  }
}

TEST(JsonTextReader, FindsTheObjectsOfAnArray) {
  const std::string text = R"({"L": [ {"a":1}, {"b":{"c":2}},{} ], "M": [{"d":3}]})";
  EXPECT_THAT(JsonFindObjectArray(text, "L"), ElementsAre(R"({"a":1})", R"({"b":{"c":2}})", "{}"));
  EXPECT_THAT(JsonFindObjectArray(text, "M"), ElementsAre(R"({"d":3})"));
  EXPECT_THAT(JsonFindObjectArray(text, "N"), IsEmpty());
}

TEST(JsonTextReader, AnythingMayStandBeforeAnArrayOfObjects) {
  EXPECT_THAT(JsonFindObjectArray(R"({"L": null, "M": [{"d":3}]})", "L"), ElementsAre(R"({"d":3})"));
  EXPECT_THAT(JsonFindObjectArray(R"({"L": "[{x}]"})", "L"), ElementsAre("{x}"));
}

TEST(JsonTextReader, BracesInStringsCount) {
  EXPECT_THAT(JsonFindObjectArray(R"({"L":[{"a":"}"},{"b":1}]})", "L"), ElementsAre(R"({"a":"})"))
      << "the string's brace ends the object, and the object's own is one too many for the next";
  EXPECT_THAT(JsonFindObjectArray(R"({"L":[{"a":"{"},{"b":1}]})", "L"),
              ElementsAre(R"({"a":"{"},{"b":1}]})"));
  EXPECT_THAT(JsonFindObjectArray(R"({"L":[{"a":"{"},{"b":1}])", "L"), IsEmpty());
}

TEST(JsonTextReader, ABracketBetweenObjectsEndsTheArray) {
  EXPECT_THAT(JsonFindObjectArray(R"({"L":[{"a":1} "]" {"b":1}]})", "L"), ElementsAre(R"({"a":1})"));
  EXPECT_THAT(JsonFindObjectArray(R"({"L":[{"a":[1]},{"b":1}]})", "L"),
              ElementsAre(R"({"a":[1]})", R"({"b":1})"))
      << "but not one inside an object";
}

TEST(JsonTextReader, AnObjectThatIsNotClosedIsLost) {
  EXPECT_THAT(JsonFindObjectArray(R"({"L":[{"a":1},{"b":1)", "L"), ElementsAre(R"({"a":1})"));
  EXPECT_THAT(JsonFindObjectArray(R"({"L":[)", "L"), IsEmpty());
  EXPECT_THAT(JsonFindObjectArray(R"({"L":)", "L"), IsEmpty());
  EXPECT_THAT(JsonFindObjectArray(R"({"L")", "L"), IsEmpty());
}

TEST(JsonTextReader, BracesThatNeverOpenedMustBePaidBack) {
  EXPECT_THAT(JsonFindObjectArray(R"({"L":[}{"a":1}])", "L"), IsEmpty());
  EXPECT_THAT(JsonFindObjectArray(R"({"L":[}{{"a":1}])", "L"), ElementsAre(R"({"a":1})"));
  EXPECT_THAT(JsonFindObjectArray(R"({"L":[}]{{"a":1}])", "L"), ElementsAre(R"({"a":1})"))
      << "a bracket ends the array only where the braces are balanced";
}

}  // namespace
}  // namespace tarnwick
