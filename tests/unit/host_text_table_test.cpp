#include "host/text_table.h"

#include "host/tables.h"
#include "host/text_width.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

namespace tarnwick::host {
namespace {

using testing::Each;
using testing::Ge;
using testing::HasSubstr;
using testing::Le;
using testing::Not;

const std::vector<Column> kColumns = {{"NAME", Cut::kEnd, 1, 10, 5}, {"PATH", Cut::kMiddle, 0, 14, 8}};

std::vector<std::string> Lines(const std::string& table) {
  std::vector<std::string> lines;
  std::istringstream text(table);
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

std::vector<size_t> CellsOfLines(const std::string& table) {
  std::vector<size_t> cells;
  for (const std::string& line : Lines(table)) cells.push_back(ConsoleCells(line));
  return cells;
}

Game GameOf(const std::string& name, const std::string& path) {
  return {name, path, "", "", "Uninstall Registry Search", "Installed"};
}

TEST(HostTextTable, AlignsByTerminalColumns) {
  EXPECT_EQ(FormatTable({"NAME", "PATH"}, {{"\u6e38\u620f", "a"}, {"\u00e9t\u00e9", "b"}, {"abcdef", "c"}}),
            "NAME    PATH\n"
            "\u2500\u2500\u2500\u2500\u2500\u2500  \u2500\u2500\u2500\u2500\n"
            "\u6e38\u620f    a\n"
            "\u00e9t\u00e9     b\n"
            "abcdef  c\n");
}

TEST(HostTextTable, MarksTakeNoColumnAndEmojiTwo) {
  const std::vector<std::string> lines = Lines(
      FormatTable({"NAME", "PATH"}, {{"e\u0301te\u0301", "a"}, {"\u2705\U0001F680", "b"}, {"abcdef", "c"}}));
  EXPECT_EQ(lines[2], "e\u0301te\u0301     a");
  EXPECT_EQ(lines[3], "\u2705\U0001F680    b");
}

TEST(HostTextTable, ATextOfAnyLengthIsCounted) {
  const std::vector<std::string> lines =
      Lines(FormatTable({"NAME", "PATH"}, {{std::string(1000, 'x'), "a"}, {"y", "b"}}));
  EXPECT_EQ(lines[3].size(), 1003u);
}

TEST(HostTextTable, LineFeedsInACellDoNotBreakARow) {
  EXPECT_THAT(FormatTable({"NAME", "PATH"}, {{"a\nb", "c"}}), HasSubstr("a b   c\n"));
}

TEST(HostTextTable, NoCellCanSendTheTerminalASequence) {
  const std::string table = FormatTable(kColumns,
                                        {{"a\x1b[2Jb",
                                          "\u009b"
                                          "31m\u202e\u2066"}},
                                        0);
  EXPECT_THAT(table, HasSubstr("a [2Jb"));
  for (const char* text : {"\x1b", "\u009b", "\u202e", "\u2066"}) EXPECT_THAT(table, Not(HasSubstr(text)));
}

TEST(HostTextTable, TextsThatFitStayWhole) {
  const std::vector<Row> rows = {{"Lantern Harbour", R"(C:\Games\Lantern Harbour\lantern.exe)"}};
  const std::string whole = FormatTable(kColumns, rows, 0);
  EXPECT_THAT(whole, HasSubstr(R"(Lantern Harbour  C:\Games\Lantern Harbour\lantern.exe)"));
  EXPECT_EQ(FormatTable(kColumns, rows, 53), whole);
  EXPECT_NE(FormatTable(kColumns, rows, 52), whole);
}

TEST(HostTextTable, ThePathGivesFirstThenTheName) {
  const std::vector<Row> rows = {{"Lantern Harbour", R"(C:\Games\Lantern Harbour\lantern.exe)"}};
  EXPECT_THAT(FormatTable(kColumns, rows, 40),
              HasSubstr("Lantern Harbour  C:\\Games\\L\u2026\\lantern.exe\n"));
  EXPECT_THAT(FormatTable(kColumns, rows, 28), HasSubstr("Lantern Har\u2026  C:\\\u2026"
                                                         "antern.exe\n"));
  EXPECT_THAT(FormatTable(kColumns, rows, 15), HasSubstr("Lant\u2026  C:\\\u2026.exe\n"));
}

TEST(HostTextTable, OneLongNameLeavesThePathsTheirRoom) {
  const std::vector<Game> games = {GameOf(std::string(300, 'x'), R"(C:\a\b.exe)"),
                                   GameOf("Lantern", R"(C:\Games\Lantern Harbour\lantern.exe)")};
  EXPECT_THAT(GamesTable(games, {}, 199), HasSubstr(R"(C:\Games\Lantern Harbour\lantern.exe)"));
  EXPECT_THAT(GamesTable(games, {}, 79), HasSubstr("C:\\Games\\La\u2026\\lantern.exe\n"));
}

TEST(HostTextTable, OneLongPathLeavesTheOthersTheirs) {
  const std::vector<Game> games = {GameOf("Lantern", "C:\\" + std::string(300, 'x') + "\\b.exe")};
  EXPECT_THAT(GamesTable(games, {}, 199),
              HasSubstr("Lantern  Installed  Uninstall Registry Search  C:\\xxx"));
}

TEST(HostTextTable, NoLineIsWiderThanTheTerminal) {
  const std::vector<Game> games = {
      GameOf("Lantern", R"(C:\Games\Lantern Harbour\lantern.exe)"),
      GameOf("\u6e38\u620f\u6e38\u620f\u6e38\u620f\u6e38\u620f\u6e38\u620f\u6e38\u620f",
             "C:\\\u6e38\u620f\\\u6e38\u620f.exe"),
      GameOf("Ve\u0301rite\u0301s de\u0301cousues",
             "C:\\Jeux\\Ve\u0301rite\u0301s de\u0301cousues\\ve\u0301rite\u0301.exe"),
      GameOf("Z" + std::string(40, '\xCC'), ""), GameOf("", std::string(300, 'p'))};
  for (size_t width = 10; width < 220; ++width) {
    EXPECT_THAT(CellsOfLines(FormatTable(
                    kColumns, {{"a\u0301\u0301\u0301\u0301\u0301", R"(C:\Games\Lantern\l.exe)"}}, width)),
                Each(Le(width)));
    // The line of counts takes 31.
    EXPECT_THAT(CellsOfLines(GamesTable(games, {}, width)), Each(Le(std::max(width, size_t{31}))));
  }
}

TEST(HostTextTable, ANameOfNothingButMarksWrapsNoLine) {
  std::string name = "Z";
  for (int i = 0; i < 100; ++i) name += "\u0301";
  EXPECT_THAT(CellsOfLines(GamesTable({GameOf(name, R"(C:\a.exe)")}, {}, 79)), Each(Le(79u)));
}

TEST(HostTextTable, EveryColumnKeepsItsLeastAsLongAsThereIsRoom) {
  EXPECT_EQ(FittedWidths(kColumns, {300, 300}, 15), (std::vector<size_t>{5, 8}));
  EXPECT_THAT(FittedWidths(kColumns, {300, 300}, 3), Each(Ge(1u)));
  EXPECT_EQ(FittedWidths(kColumns, {300, 300}, 0), (std::vector<size_t>{300, 300}));
}

TEST(HostTextTable, ApplicationsFitTooAndBearNoCounts) {
  const std::vector<Application> applications = {{"A tool with a long name indeed", "Its maker, and company",
                                                  "1.2.3.4567", R"(C:\Program Files\Tool\tool.exe)", "", 0,
                                                  ""}};
  EXPECT_THAT(CellsOfLines(ApplicationsTable(applications, 39)), Each(Le(39u)));
  const std::string table = ApplicationsTable(applications, 79);
  EXPECT_THAT(CellsOfLines(table), Each(Le(79u)));
  EXPECT_EQ(Lines(table).size(), 3u);
  EXPECT_THAT(ApplicationsTable(applications), HasSubstr(R"(C:\Program Files\Tool\tool.exe)"));
}

TEST(HostTextTable, OneGameIsOneGame) {
  EXPECT_THAT(GamesTable({GameOf("A", "C:\\a.exe")}, {}), HasSubstr("\n1 game ("));
}

}  // namespace
}  // namespace tarnwick::host
