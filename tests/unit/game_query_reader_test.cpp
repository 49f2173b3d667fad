#include "inventory/game_query_reader.h"

#include "support/hex_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <chrono>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::wstring Widened(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

std::vector<std::wstring> ExeNames(const std::wstring& text) {
  std::vector<std::wstring> names;
  for (const GameQuery& query : ParseGameQueryList(text)) names.push_back(query.exeName);
  return names;
}

// The longest of three runs over a text, and over one four times as long, must stay far from the sixteenfold
// time that a quadratic search would take.
double Seconds(const std::wstring& text) {
  const auto begin = std::chrono::steady_clock::now();
  ParseGameQueryList(text);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

std::wstring Repeated(const std::wstring& part, size_t units) {
  std::wstring text;
  text.reserve(units + part.size());
  while (text.size() < units) text += part;
  return text;
}

TEST(ParseGameQueryList, ReadsTheThreeMembersInAnyOrder) {
  const std::vector<GameQuery> queries = ParseGameQueryList(
      LR"([{"name":"Foo","exeName":"foo.exe","exePath":"bin"}, {"exePath" : "x64" , "exeName" : "bar.exe"}])");
  ASSERT_EQ(queries.size(), 2u);
  EXPECT_EQ(queries[0].name, L"Foo");
  EXPECT_EQ(queries[0].exeName, L"foo.exe");
  EXPECT_EQ(queries[0].exePath, L"bin");
  EXPECT_EQ(queries[1].name, L"");
  EXPECT_EQ(queries[1].exeName, L"bar.exe");
  EXPECT_EQ(queries[1].exePath, L"x64");
}

TEST(ParseGameQueryList, EmptyListsAndTextsWithoutBracesGiveNothing) {
  for (const wchar_t* text : {L"", L"[]", L"null", L"\"exeName\":\"a.exe\"", L"}", L"}{", L"[ ]"}) {
    EXPECT_THAT(ParseGameQueryList(text), IsEmpty());
  }
}

TEST(ParseGameQueryList, AnEntryWithoutExeNameIsIgnoredWhateverElseItHolds) {
  EXPECT_THAT(ExeNames(LR"([{"name":"Foo","exePath":"bin"},{"exeName":"","name":"x"},{"exeName":"a.exe"}])"),
              ElementsAre(L"a.exe"));
}

TEST(ParseGameQueryList, TheFirstClosingBraceEndsAnObject) {
  // What stands behind the nested object is lost to it.
  EXPECT_THAT(ExeNames(LR"([{"name":{"x":"y"},"exeName":"lost.exe"},{"exeName":"a.exe"}])"),
              ElementsAre(L"a.exe"));
  EXPECT_THAT(ExeNames(LR"({"a":{"exeName":"inner.exe"}})"), ElementsAre(L"inner.exe"));
  EXPECT_THAT(ExeNames(LR"({"exeName":"with}brace.exe"})"), IsEmpty());
}

TEST(ParseGameQueryList, AnObjectWithoutEndIsLeftOut) {
  EXPECT_THAT(ExeNames(LR"([{"exeName":"a.exe"},{"exeName":"b.exe")"), ElementsAre(L"a.exe"));
}

TEST(ParseGameQueryList, OtherLanguagesComeThrough) {
  const std::vector<GameQuery> queries = ParseGameQueryList(
      L"[{\"name\":\"\u0418\u0433\u0440\u0430\",\"exeName\":\"\u6e38\u620f.exe\",\"exePath\":"
      L"\"\u00e9t\u00e9\"}]");
  ASSERT_EQ(queries.size(), 1u);
  EXPECT_EQ(queries[0].name, L"\u0418\u0433\u0440\u0430");
  EXPECT_EQ(queries[0].exeName, L"\u6e38\u620f.exe");
  EXPECT_EQ(queries[0].exePath, L"\u00e9t\u00e9");
}

TEST(ParseGameQueryList, EveryPrefixGivesThePartThatIsWhole) {
  const std::wstring text = LR"([{"name":"A","exeName":"a.exe"},{"exeName":"b.exe","exePath":"p"}])";
  const size_t firstEnd = text.find(L'}');
  const size_t secondEnd = text.rfind(L'}');
  for (size_t length = 0; length <= text.size(); ++length) {
    const size_t whole = (length > firstEnd ? 1u : 0u) + (length > secondEnd ? 1u : 0u);
    EXPECT_EQ(ParseGameQueryList(text.substr(0, length)).size(), whole) << length;
  }
}

TEST(ParseGameQueryList, BinaryAndZerosDoNoHarm) {
  std::wstring zeros(4096, L'\0');
  EXPECT_THAT(ParseGameQueryList(zeros), IsEmpty());
  std::wstring all;
  for (wchar_t unit = 0; unit < 0x300; ++unit) all += unit;
  EXPECT_THAT(ParseGameQueryList(all + all), IsEmpty());
  EXPECT_THAT(ExeNames(zeros + L"{\"exeName\":\"a.exe\"}" + zeros), ElementsAre(L"a.exe"));
}

TEST(ParseGameQueryList, TimeGrowsWithTheLengthAlone) {
  const std::pair<const char*, std::wstring> shapes[] = {{"entries", L"{\"exeName\":\"a.exe\"},"},
                                                         {"open braces", L"{"},
                                                         {"closed braces", L"}"},
                                                         {"empty objects", L"{}"},
                                                         {"nested", L"{\"a\":{"},
                                                         {"keys without end", L"{\"exeName\":\""},
                                                         {"colons", L"{\"name\"::::"},
                                                         {"plain text", L"abcdefg "}};
  constexpr size_t kUnits = 4'000'000;
  for (const auto& [name, part] : shapes) {
    const double small = Seconds(Repeated(part, kUnits / 4));
    const double large = Seconds(Repeated(part, kUnits));
    EXPECT_LT(large, 10 * small + 0.2) << name;
  }
}

TEST(ParseGameQueryList, AHundredMegabytesAreReadInSeconds) {
  // One object that never ends, one that ends at the very end, and a great many small ones.
  const size_t units = 100'000'000;
  EXPECT_LT(Seconds(L"{\"exeName\":\"" + std::wstring(units, L'a')), 30.0);
  const std::vector<GameQuery> one =
      ParseGameQueryList(L"{\"exeName\":\"" + std::wstring(units, L'a') + L"\"}");
  ASSERT_EQ(one.size(), 1u);
  EXPECT_EQ(one[0].exeName.size(), units);
  EXPECT_EQ(ParseGameQueryList(Repeated(L"{\"exeName\":\"a\"}", units / 10)).size(), (units / 10 + 14) / 15);
}

TEST(JsonStringValue, TakesTheTextBetweenTheQuotesAsItStands) {
  EXPECT_EQ(JsonStringValue(LR"({"k":"v"})", L"k"), L"v");
  EXPECT_EQ(JsonStringValue(LR"({"k" :  "C:\\Games\\x"})", L"k"), LR"(C:\\Games\\x)");
  EXPECT_EQ(JsonStringValue(LR"({"k":"say \"hi\""})", L"k"), LR"(say \)");
  EXPECT_EQ(JsonStringValue(LR"({"k":""})", L"k"), L"");
}

TEST(JsonStringValue, IsEmptyWhereAnyStepFindsNothing) {
  for (const wchar_t* object : {L"", L"{}", L"{\"other\":\"v\"}", L"{\"k\"}", L"{\"k\":}", L"{\"k\":12}",
                                L"{\"k\":\"v}", L"{k:\"v\"}"}) {
    EXPECT_EQ(JsonStringValue(object, L"k"), L"");
  }
}

TEST(JsonStringValue, ANumberTakesTheNextText) {
  EXPECT_EQ(JsonStringValue(LR"({"k":12,"next":"v"})", L"k"), L"next");
}

TEST(JsonStringValue, ThePartBehindTheFirstMatchCountsAlone) {
  // The first "k" is a value: the search goes on from there.
  EXPECT_EQ(JsonStringValue(LR"({"a":"k","b":"v","k":"w"})", L"k"), L"v");
}

TEST(JsonStringValue, AColonInsideTheKeyIsTheColon) {
  EXPECT_EQ(JsonStringValue(LR"({"a:b":"v"})", L"a:b"), L":");
}

TEST(JsonStringValue, KeysAreCaseSensitiveAndWhole) {
  EXPECT_EQ(JsonStringValue(LR"({"ExeName":"v"})", L"exeName"), L"");
  EXPECT_EQ(JsonStringValue(LR"({"exeNames":"v"})", L"exeName"), L"");
}

TEST(GameRequestPage, TheExampleIsReadAsThePageSays) {
  const std::vector<GameQuery> queries = ParseGameQueryList(Widened(tests::HexExample("game-request")));
  ASSERT_EQ(queries.size(), 2u);
  EXPECT_EQ(queries[0].name, L"Foo");
  EXPECT_EQ(queries[0].exeName, L"foo.exe");
  EXPECT_EQ(queries[0].exePath, L"bin");
  EXPECT_EQ(queries[1].name, L"");
  EXPECT_EQ(queries[1].exeName, L"bar.exe");
  EXPECT_EQ(queries[1].exePath, L"");
}

}  // namespace
}  // namespace tarnwick
