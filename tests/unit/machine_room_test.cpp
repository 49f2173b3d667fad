// Everything that the library reads of the machine, it reads in foundation/machine: no other unit sees
// Windows' headers, nor the standard library's file system and file streams, not even through another header.
// A few small rooms have interfaces of their own. What the objects call is held by
// scripts/check-machine-room.
#include "support/source_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace tarnwick {
namespace {

// Units outside of the room that talk to Windows about something else than what it holds.
const std::set<std::string> kSmallRooms = {
    "catalogue/decipher.cpp",    // CryptoAPI
    "core/library_entry.cpp",    // the loader
    "core/strategy_runner.cpp",  // the stack of its threads
    "focus/focus_watch.cpp",     // windows and processes
    "focus/focus_watch.h",
    "foundation/com_scope.cpp",      // COM
    "foundation/conversions.cpp",    // code pages
    "foundation/locks.cpp",          // critical sections
    "foundation/log.cpp",            // the debug output
    "foundation/owner.h",            // owners of handles, for the rooms
    "foundation/seh_guard_gnu.cpp",  // structured exceptions
    "foundation/seh_guard_msvc.cpp",
    "foundation/structured_exception.cpp",
    "foundation/windows_api.h",  // the way in
    "inventory/icon_calls.cpp",  // icons, asked for through the room's hook
    "inventory/icon_calls.h",
    "inventory/icons.cpp",
    "inventory/icons.h",
    "inventory/png.cpp",
    "inventory/png.h",
};

// The standard library's ways to the file system. Of Windows' headers there is one way in, windows_api.h, but
// for those that hold some part of them.
const std::set<std::string> kClosed = {"filesystem", "fstream",    "windows.h", "shlobj.h",
                                       "shlwapi.h",  "shellapi.h", "objbase.h", "winver.h",
                                       "wincrypt.h", "winreg.h",   "io.h",      "direct.h"};

using Includes = std::map<std::string, std::set<std::string>>;  // by path below src

std::set<std::string> IncludesOf(const std::filesystem::path& path) {
  static const std::regex kInclude(R"rx(^\s*#\s*include\s*["<]([^">]*)[">])rx");
  std::set<std::string> includes;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::smatch match;
    if (std::regex_search(line, match, kInclude)) includes.insert(match[1]);
  }
  return includes;
}

Includes AllIncludes() {
  const std::filesystem::path sources = tests::SourceFolder() + "/src";
  Includes all;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(sources)) {
    const std::filesystem::path& path = entry.path();
    if (path.extension() != ".cpp" && path.extension() != ".h") continue;
    all[path.lexically_relative(sources).generic_string()] = IncludesOf(path);
  }
  return all;
}

bool IsInTheRoom(const std::string& unit) {
  return unit.starts_with("foundation/machine/") || kSmallRooms.contains(unit);
}

// The closed headers that a unit sees, each with the file that includes it.
void CollectClosed(const Includes& all, const std::string& unit, std::set<std::string>& visited,
                   std::set<std::string>& closed) {
  const auto own = all.find(unit);
  if (own == all.end() || !visited.insert(unit).second) return;
  for (const std::string& header : own->second) {
    if (kClosed.contains(header)) closed.insert(header + " by " + unit);
    CollectClosed(all, header, visited, closed);
  }
}

TEST(MachineRoom, NoOtherUnitSeesTheMachinesHeaders) {
  const Includes all = AllIncludes();
  for (const auto& [unit, includes] : all) {
    if (IsInTheRoom(unit)) continue;
    std::set<std::string> visited;
    std::set<std::string> closed;
    CollectClosed(all, unit, visited, closed);
    EXPECT_THAT(closed, testing::IsEmpty()) << unit;
  }
}

TEST(MachineRoom, EverySmallRoomIsThereAndNeedsItsPlace) {
  const Includes all = AllIncludes();
  for (const std::string& unit : kSmallRooms) {
    std::set<std::string> visited;
    std::set<std::string> closed;
    CollectClosed(all, unit, visited, closed);
    EXPECT_TRUE(all.contains(unit) && !closed.empty()) << unit;
  }
}

// The room's own headers don't let the machine out: they show texts, numbers and streams.
TEST(MachineRoom, ItsHeadersShowNothingOfWindows) {
  const Includes all = AllIncludes();
  size_t headers = 0;
  for (const auto& [unit, includes] : all) {
    if (!unit.starts_with("foundation/machine/") || !unit.ends_with(".h")) continue;
    ++headers;
    std::set<std::string> visited;
    std::set<std::string> closed;
    CollectClosed(all, unit, visited, closed);
    EXPECT_THAT(closed, testing::IsEmpty()) << unit;
  }
  EXPECT_GE(headers, 8u);
}

// Only programs and tests that link the objects listen.
TEST(MachineRoom, TheLibraryItselfNeverSetsAnObserver) {
  const std::filesystem::path sources = tests::SourceFolder() + "/src";
  std::set<std::string> units;
  for (const auto& [unit, includes] : AllIncludes()) {
    std::ifstream file(sources / unit);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    if (text.find("SetObserver(") != std::string::npos) units.insert(unit);
  }
  EXPECT_THAT(units,
              testing::ElementsAre("foundation/machine/observer.cpp", "foundation/machine/observer.h"));
}

}  // namespace
}  // namespace tarnwick
