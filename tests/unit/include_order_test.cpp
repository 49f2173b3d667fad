// Dependencies point one way: a subsystem includes only headers of those that stand before it.
#include "support/source_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace tarnwick {
namespace {

// "tarnwick" is the public header, which belongs to the subsystems that hold exports.
const std::map<std::string, std::set<std::string>> kMayInclude = {
    {"foundation", {"foundation"}},
    {"catalogue", {"foundation", "catalogue"}},
    {"matching", {"foundation", "catalogue", "matching"}},
    {"steam", {"foundation", "catalogue", "matching", "steam"}},
    {"launchers", {"foundation", "catalogue", "matching", "launchers"}},
    {"inventory", {"foundation", "inventory", "tarnwick"}},
    {"focus", {"foundation", "focus", "tarnwick"}},
    {"core",
     {"foundation", "catalogue", "matching", "steam", "launchers", "inventory", "focus", "core", "tarnwick"}},
};

struct Include {
  std::string file;
  std::string from;
  std::string what;
};

std::vector<Include> Includes() {
  static const std::regex kInclude(R"rx(^\s*#\s*include\s*"([^"]*)")rx");
  std::vector<Include> includes;
  const std::filesystem::path sources = tests::SourceFolder() + "/src";
  for (const auto& entry : std::filesystem::recursive_directory_iterator(sources)) {
    const std::filesystem::path& path = entry.path();
    if (path.extension() != ".cpp" && path.extension() != ".h") continue;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
      std::smatch match;
      if (!std::regex_search(line, match, kInclude)) continue;
      includes.push_back(
          {path.filename().string(), path.lexically_relative(sources).begin()->string(), match[1]});
    }
  }
  return includes;
}

TEST(IncludeOrder, EverySubsystemIncludesOnlyThoseBeforeIt) {
  for (const Include& include : Includes()) {
    const auto may = kMayInclude.find(include.from);
    ASSERT_NE(may, kMayInclude.end()) << include.from;
    const std::string subsystem = include.what.substr(0, include.what.find('/'));
    EXPECT_TRUE(may->second.contains(subsystem))
        << include.from << "/" << include.file << " includes " << include.what;
  }
}

TEST(IncludeOrder, TheTestSeesAllSubsystems) {
  std::set<std::string> seen;
  for (const Include& include : Includes()) seen.insert(include.from);
  EXPECT_EQ(seen.size(), kMayInclude.size());
}

}  // namespace
}  // namespace tarnwick
