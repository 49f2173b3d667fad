#pragma once
// The strategies as tests expect them: the one list outside the library that names them all, in the order of
// its table.

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tarnwick::tests {

struct StrategyRow {
  const char* name;
  int level;
  const char* launcher;  // what the program calls its games where no launch address tells; never empty
};

inline constexpr StrategyRow kStrategyRows[] = {
    {"Default Registry Scan", 6, "Installed"},
    {"Registry Search Scan", 6, "Installed"},
    {"Uninstall Registry Search", 6, "Installed"},
    {"User Folder Exe Search", 6, "Installed"},
    {"GameUX Registry Search", 6, "Installed"},
    {"Default Exe Search", 5, "Installed"},
    {"Steam Shortcuts Search", 4, "Steam"},
    {"Arc Registry Search", 4, "Arc"},
    {"GOG Registry Search", 4, "GOG"},
    {"Uplay Configuration Search", 4, "Ubisoft"},
    {"EA Registry Search", 3, "EA"},
    {"Riot Platform Search", 3, "Riot"},
    {"Mihoyo Platform Search", 3, "miHoYo"},
    {"Bethesda Registry", 3, "Bethesda"},
    {"Itch.io Search", 3, "itch.io"},
    {"Twitch Search", 3, "Twitch"},
    {"GameUX Info Search", 3, "Installed"},
    {"Epic Games Scan", 3, "Epic Games"},
    {"UWP/Microsoft Store Scan", 3, "Microsoft Store"},
    {"Battle.net Search V2", 2, "Battle.net"},
    {"Steam Games Scan", 0, "Steam"},
    {"Steam Default ID", 0, "Steam"},
    {"Steam AppInfo Scan", 0, "Steam"},
};

// The names of each level's strategies, the level that runs first at the beginning.
inline std::map<int, std::vector<std::string>, std::greater<>> StrategiesByLevel() {
  std::map<int, std::vector<std::string>, std::greater<>> levels;
  for (const StrategyRow& row : kStrategyRows) levels[row.level].push_back(row.name);
  return levels;
}

}  // namespace tarnwick::tests
