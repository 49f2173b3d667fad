// docs/log-lines.md is held against both ends: the texts of each line that it lists stand in the source that
// it says writes the line, and those of the driver's lines in the program's source that reads them.
#include "support/file_bytes.h"

#include <gmock/gmock.h>

#include <regex>
#include <string>
#include <vector>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;
using tests::ReadSource;

std::vector<std::string> Matches(const std::string& text, const char* pattern) {
  const std::regex regex(pattern);
  std::vector<std::string> matches;
  for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
    matches.push_back((*match)[1]);
  return matches;
}

// A line's fixed texts: those between its placeholders, a bracketed prefix by itself.
std::vector<std::string> FixedTexts(const std::string& line) {
  const std::string marked =
      std::regex_replace(line, std::regex(R"(^\[<prefix>\]|<[^>]*>|…|^(\[[^\]]*\]))"), "$1\n");
  return Matches(marked, "([^\n]+)");
}

struct ListedLine {
  std::string line;
  std::string writtenIn;  // below src/
};

// The lines of the tables below a heading or paragraph of the page, up to the next heading.
std::vector<ListedLine> ListedLines(const std::string& start) {
  const std::string page = ReadSource("docs/log-lines.md");
  const size_t from = page.find(start);
  EXPECT_NE(from, std::string::npos) << start;
  std::vector<ListedLine> listed;
  const size_t end = page.find("\n## ", from + 1);
  for (const std::string& row : Matches(page.substr(from, end - from), R"(\n\| (`.*))")) {
    const std::vector<std::string> files = Matches(row, R"(`(\w+/\w+\.cpp)`)");
    const std::string file = files.empty() && !listed.empty() ? listed.back().writtenIn : files.at(0);
    for (const std::string& line : Matches(row.substr(0, row.find('|')), "`([^`]*)`"))
      listed.push_back({line, file});
  }
  return listed;
}

TEST(HostLogLinesPage, ListsTheDriversLinesAsTheyAreWrittenAndRead) {
  const std::vector<ListedLine> listed = ListedLines("\n## The lines of the driver");
  EXPECT_GE(listed.size(), 7u);
  for (const auto& [line, writtenIn] : listed) {
    for (const std::string& text : FixedTexts(line)) {
      EXPECT_THAT(ReadSource("src/" + writtenIn), HasSubstr(text)) << line;
      EXPECT_THAT(ReadSource("host/scan_report.cpp"), HasSubstr(text)) << line;
    }
  }
}

TEST(HostLogLinesPage, ListsTheFoundLinesAsTheyAreWritten) {
  const std::vector<ListedLine> listed = ListedLines("\nThe lines with \"Found\"");
  EXPECT_GE(listed.size(), 6u);
  for (const auto& [line, writtenIn] : listed) {
    EXPECT_THAT(line, HasSubstr("Found"));
    for (const std::string& text : FixedTexts(line))
      EXPECT_THAT(ReadSource("src/" + writtenIn), HasSubstr(text)) << line;
  }
}

}  // namespace
}  // namespace tarnwick::host
