#include "host/text_width.h"

#include <gtest/gtest.h>

namespace tarnwick::host {
namespace {

TEST(HostTextWidth, CountsTerminalColumns) {
  EXPECT_EQ(DisplayColumns(""), 0u);
  EXPECT_EQ(DisplayColumns("abc \u0416\u00e9\u2026\u2500"), 8u);
  EXPECT_EQ(DisplayColumns("\u6e38\u620f\uac00\uff21"), 8u);        // CJK, Hangul, fullwidth
  EXPECT_EQ(DisplayColumns("e\u0301t\u0301e"), 3u);                 // combining marks
  EXPECT_EQ(DisplayColumns("\u200b\u200d\ufe0f\ufeff"), 0u);        // format characters
  EXPECT_EQ(DisplayColumns("\u1112\u1161\u11ab"), 2u);              // one syllable in three parts
  EXPECT_EQ(DisplayColumns("\u2705\U0001F680\U0001F600"), 6u);      // emoji of three blocks
  EXPECT_EQ(DisplayColumns("\U00020000\U0001D400\U000E0100"), 3u);  // wide, narrow and no column
  EXPECT_EQ(DisplayColumns(std::string(1000, 'x') + "\u6e38"), 1002u);
}

TEST(HostTextWidth, ABrokenTextIsAsWideAsItsReplacement) {
  EXPECT_EQ(DisplayColumns("a\xFF"
                           "b"),
            3u);
}

TEST(HostTextWidth, CountsCellsOfConsolesThatKnowNoMarks) {
  EXPECT_EQ(ConsoleCells("e\u0301t\u0301e"), 5u);
  EXPECT_EQ(ConsoleCells("\u6e38\U0001F600"), 4u);
}

TEST(HostTextWidth, CharactersThatActOnTheTerminalBecomeBlanks) {
  EXPECT_EQ(PrintableText("a\x1b[31mb\r\n\tc\x7f"), "a [31mb   c ");
  EXPECT_EQ(PrintableText(std::string("a\0b", 3)), "a b");
  EXPECT_EQ(PrintableText("\u0080\u009b"
                          "31m\u009f\u00a0"),
            "  31m \u00a0");
  EXPECT_EQ(PrintableText("\u2027\u2028\u2029\u202a\u202b\u202c\u202d\u202e\u202f"), "\u2027       \u202f");
  EXPECT_EQ(PrintableText("\u2065\u2066\u2067\u2068\u2069\u206a"), "\u2065    \u206a");
  EXPECT_EQ(PrintableText("\u6e38\U0001F600"), "\u6e38\U0001F600");
}

TEST(HostTextWidth, CutEndKeepsTheBeginning) {
  EXPECT_EQ(CutEnd("Lantern", 7), "Lantern");
  EXPECT_EQ(CutEnd("Lantern", 6), "Lante\u2026");
  EXPECT_EQ(CutEnd("Lantern", 1), "\u2026");
  EXPECT_EQ(CutEnd("Lantern", 0), "");
}

TEST(HostTextWidth, CutEndSplitsNoCharacter) {
  EXPECT_EQ(CutEnd("\u6e38\u620f\u6e38", 5), "\u6e38\u620f\u2026");
  EXPECT_EQ(CutEnd("\u6e38\u620f\u6e38", 4), "\u6e38\u2026");
  EXPECT_EQ(CutEnd("\U0001F600\U0001F600", 3), "\U0001F600\u2026");
  EXPECT_EQ(CutEnd("ae\u0301bc", 3), "ae\u0301\u2026");
}

TEST(HostTextWidth, CutMiddleKeepsDriveAndFileName) {
  const std::string path = R"(C:\Program Files\Game\bin\game.exe)";
  EXPECT_EQ(CutMiddle(path, 34), path);
  EXPECT_EQ(CutMiddle(path, 33), "C:\\Program Files\\Game\\b\u2026\\game.exe");
  EXPECT_EQ(CutMiddle(path, 13), "C:\\\u2026\\game.exe");
}

TEST(HostTextWidth, CutMiddleKeepsTheEndOfAFileNameThatIsTooLong) {
  EXPECT_EQ(CutMiddle(R"(C:\Game\a very long name.exe)", 12), "C:\\\u2026name.exe");
  EXPECT_EQ(CutMiddle(R"(C:\Game\game.exe)", 5), "C:\\\u2026e");
  EXPECT_EQ(CutMiddle(R"(C:\Game\game.exe)", 2), "C\u2026");
  EXPECT_EQ(CutMiddle(R"(C:\Game\game.exe)", 0), "");
}

TEST(HostTextWidth, CutMiddleTakesWhatHasNoSeparator) {
  EXPECT_EQ(CutMiddle("0123456789", 6), "01234\u2026");
  EXPECT_EQ(CutMiddle("/usr/games/game", 9), "/us\u2026/game");
}

TEST(HostTextWidth, CutMiddleSplitsNoCharacter) {
  EXPECT_EQ(CutMiddle("C:\\\u6e38\u620f\u6e38\u620f\\\u6e38\u620f.exe", 15),
            "C:\\\u6e38\u2026\\\u6e38\u620f.exe");
  EXPECT_EQ(CutMiddle("C:\\Game\\x\u6e38\u620f.exe", 11), "C:\\G\u2026\u620f.exe");
  // The mark of a letter that is cut off goes with it.
  EXPECT_EQ(CutMiddle("C:\\Game\\abe\u0301.exe", 8), "C:\\\u2026.exe");
}

TEST(HostTextWidth, NoCutIsWiderThanItsRoom) {
  const std::string path = "C:\\Pe\u0301\u6e38\\\U0001F600\u620fabc\u0301\\na\u6e38me\u0301.exe";
  for (size_t room = 0; room < 40; ++room) {
    EXPECT_LE(DisplayColumns(CutEnd(path, room)), room);
    EXPECT_LE(DisplayColumns(CutMiddle(path, room)), room);
  }
}

}  // namespace
}  // namespace tarnwick::host
