#pragma once
// Lookup requests: a list of games to be found by their executables' names.

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct GameQuery {
  std::wstring name;     // empty: the answer carries the installed application's own
  std::wstring exeName;  // never empty in a parsed list
  std::wstring exePath;  // subfolder below the install folder, may be empty
};

// Every entry of the text that has an exeName, in order. Not a JSON parser: an object goes from "{" to the
// first "}" behind it, and what has no end is left out. Takes time in proportion to the text's length.
std::vector<GameQuery> ParseGameQueryList(const std::wstring& text);

// The text between the next two double quotes behind the next colon behind the first `"key"` of the object,
// as it stands: escapes are not decoded. Empty if any of these is missing.
std::wstring JsonStringValue(std::wstring_view object, std::wstring_view key);

}  // namespace tarnwick
