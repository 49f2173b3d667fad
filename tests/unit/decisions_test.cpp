// docs/decisions and the sources name each other: a comment that marks required behaviour names the page that
// tells why, and a page names the tests that hold it. Neither may name what isn't there.
#include "support/source_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace tarnwick {
namespace {

using Texts = std::map<std::string, std::string>;  // by path below the repository

std::filesystem::path Root() { return tests::SourceFolder(); }

std::string FileText(const std::filesystem::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

Texts TextsBelow(const std::set<std::string>& folders, const std::set<std::string>& extensions) {
  Texts texts;
  for (const std::string& folder : folders) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Root() / folder)) {
      const std::filesystem::path& path = entry.path();
      if (!extensions.contains(path.extension().string())) continue;
      texts[path.lexically_relative(Root()).generic_string()] = FileText(path);
    }
  }
  return texts;
}

const Texts& Sources() {
  static const Texts kTexts = TextsBelow({"bench", "desktop", "host", "include", "src", "tests/fuzz",
                                          "tests/support", "tests/system", "tests/unit"},
                                         {".cpp", ".h", ".c"});
  return kTexts;
}

// With the index, README.md.
const Texts& Pages() {
  static const Texts kTexts = TextsBelow({"docs/decisions"}, {".md"});
  return kTexts;
}

// What the first group of `pattern` holds, for each place where it matches.
std::vector<std::string> AllMatches(const std::string& text, const std::regex& pattern) {
  std::vector<std::string> matches;
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
    matches.push_back((*match)[1]);
  }
  return matches;
}

// Each run of lines with nothing but a comment, and each comment behind code; joined over the line ends.
std::vector<std::string> CommentsOf(const std::string& text) {
  const std::string start = "// ";
  std::vector<std::string> comments(1);
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const size_t at = line.find(start);
    const bool standsAlone = at != std::string::npos && line.find_first_not_of(' ') == at;
    if (!standsAlone && !comments.back().empty()) comments.emplace_back();
    if (at != std::string::npos) comments.back() += line.substr(at + start.size()) + " ";
    if (!standsAlone && !comments.back().empty()) comments.emplace_back();
  }
  return comments;
}

// The comments that mark behaviour which looks wrong and is required, each behind its file's path.
std::vector<std::string> Marks() {
  static const std::regex kMark(R"rx(\b[Kk]ept(:| apart\b))rx");
  std::vector<std::string> marks;
  for (const auto& [path, text] : Sources()) {
    for (const std::string& comment : CommentsOf(text)) {
      if (std::regex_search(comment, kMark)) marks.push_back(path + ": " + comment);
    }
  }
  return marks;
}

// "Suite.Name" of every test.
std::set<std::string> Tests() {
  static const std::regex kTest(R"rx(\bTEST(?:_F|_P)?\(\s*(\w+,\s*\w+)\s*\))rx");
  static const std::regex kComma(R"rx(,\s*)rx");
  std::set<std::string> tests;
  for (const auto& [path, text] : Sources()) {
    if (!path.starts_with("tests/")) continue;
    for (const std::string& test : AllMatches(text, kTest))
      tests.insert(std::regex_replace(test, kComma, "."));
  }
  return tests;
}

TEST(Decisions, EveryMarkEndsWithItsPage) {
  static const std::regex kPage(R"rx(\((docs/decisions/[a-z-]+\.md)\)\. $)rx");
  for (const std::string& mark : Marks()) {
    const std::vector<std::string> page = AllMatches(mark, kPage);
    EXPECT_TRUE(page.size() == 1 && Pages().contains(page[0])) << mark;
  }
}

TEST(Decisions, EveryPageThatASourceNamesExists) {
  static const std::regex kPage(R"rx((docs/decisions/[a-z-]+\.md))rx");
  for (const auto& [path, text] : Sources()) {
    if (text.find("docs/decisions/") == std::string::npos) continue;
    for (const std::string& page : AllMatches(text, kPage)) {
      EXPECT_TRUE(Pages().contains(page)) << path << " names " << page;
    }
  }
}

TEST(Decisions, TheIndexHasEveryPageAndNoOther) {
  static const std::regex kLink(R"rx(\]\(([^)/]+\.md)\))rx");
  std::set<std::string> linked{"docs/decisions/README.md"};
  for (const std::string& link : AllMatches(Pages().at("docs/decisions/README.md"), kLink)) {
    linked.insert("docs/decisions/" + link);
  }
  std::set<std::string> pages;
  for (const auto& [path, text] : Pages()) pages.insert(path);
  EXPECT_THAT(linked, testing::ContainerEq(pages));
}

TEST(Decisions, EveryTestThatAPageNamesExists) {
  static const std::regex kName(R"rx(`([A-Z]\w*\.[A-Z]\w*)`)rx");
  const std::set<std::string> tests = Tests();
  for (const auto& [path, text] : Pages()) {
    for (const std::string& name : AllMatches(text, kName)) {
      EXPECT_TRUE(tests.contains(name)) << path << " names " << name;
    }
  }
}

// Else the tests above could hold for want of anything to look at.
TEST(Decisions, TheTestsSeeMarksPagesAndTests) {
  EXPECT_GE(Marks().size(), 50u);
  EXPECT_GE(Pages().size(), 30u);
  EXPECT_TRUE(Tests().contains("Decisions.TheTestsSeeMarksPagesAndTests"));
}

}  // namespace
}  // namespace tarnwick
