// Long texts on several lines.
#include "host/text_wrap.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using host::WrappedLines;
using testing::ElementsAre;

TEST(HostTextWrap, BreaksAtBlanks) {
  EXPECT_THAT(WrappedLines("one two three", 8), ElementsAre("one two", "three"));
  EXPECT_THAT(WrappedLines("one two three", 0), ElementsAre("one two three"));
  EXPECT_THAT(WrappedLines("", 8), ElementsAre(""));
}

TEST(HostTextWrap, BreaksLongWordsBehindBackslashesAndElseAnywhere) {
  EXPECT_THAT(WrappedLines(R"(C:\Games\Foo\bar.exe)", 10), ElementsAre(R"(C:\Games\)", R"(Foo\)", "bar.exe"));
  EXPECT_THAT(WrappedLines("abcdefgh", 3), ElementsAre("abc", "def", "gh"));
}

TEST(HostTextWrap, BeginsALongPathInTheLineWhereItFits) {
  EXPECT_THAT(WrappedLines(R"(key HKLM\SOFTWARE\Foo\Bar x)", 20),
              ElementsAre(R"(key HKLM\SOFTWARE\)", R"(Foo\Bar x)"));
}

TEST(HostTextWrap, CountsColumnsAndKeepsCharactersWhole) {
  EXPECT_THAT(WrappedLines("青瓷谜城", 5), ElementsAre("青瓷", "谜城"));
  EXPECT_THAT(WrappedLines("青", 1), ElementsAre("青"));
}

TEST(HostTextWrap, SendsNothingThatActsOnTheTerminal) {
  EXPECT_THAT(WrappedLines("a\x1b[31mb", 0), ElementsAre("a [31mb"));
  EXPECT_THAT(WrappedLines("a\x1b[31mb", 40), ElementsAre("a [31mb"));
}

}  // namespace
}  // namespace tarnwick
