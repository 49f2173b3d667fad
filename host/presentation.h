#pragma once
// The library's answers as people see them: items of a table or a page.

#include "host/list_formats.h"
#include "host/scan_report.h"

#include <string>
#include <vector>

namespace tarnwick::host {

struct Game {
  std::string name;
  std::string path;       // may be empty: launched by URI only
  std::string icon;       // data URI or empty
  std::string launchUrl;  // may be empty: launched by its executable
  std::string strategy;   // which strategy found it, from the log; empty if the log doesn't tell
  std::string launcher;   // for people: "Steam", "GOG", ...; "Installed" where no launcher is known
};

struct Application {
  std::string name;
  std::string publisher;
  std::string version;
  std::string path;
  std::string date;
  uint64_t sizeKb = 0;
  std::string icon;
};

// All three throw std::runtime_error for a text that isn't the library's JSON.
Rows RowsFromJson(const std::string& json);
std::vector<Game> GamesFromJson(const std::string& json, const ScanReport& report);
std::vector<Application> ApplicationsFromJson(const std::string& json);

// By the launch URI's scheme, else by the strategy.
std::string LauncherName(const std::string& launchUrl, const std::string& strategy);

// Adds "launcher" and "foundBy" at the end of each game of a scan: what Game calls launcher and strategy.
void AddLaunchers(Rows& games, const ScanReport& report);

// Empties the icons and leaves their members standing, so that a row has the same shape with and without.
void DropIcons(Rows& rows);

// "1 entry", "2 entries".
std::string Counted(size_t count, const char* singular, const char* plural);

}  // namespace tarnwick::host
