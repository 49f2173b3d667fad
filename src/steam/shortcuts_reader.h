#pragma once
// Programs that users added to Steam by hand, userdata\<user>\config\shortcuts.vdf.

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct SteamShortcut {
  std::string appName;
  std::string exe;       // without the double quotes around it
  std::string startDir;  // likewise
};

// Appends every record that has all three texts, in file order. Appends one by one, so that what was read
// before memory runs out is kept.
void ReadShortcuts(std::string_view bytes, std::vector<SteamShortcut>& shortcuts);

}  // namespace tarnwick
