#pragma once
// The contents of the files that Steam keeps: texts and bytes to hand to Desktop::File. All texts are UTF-8.

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::desktop {

// steamapps\libraryfolders.vdf: one numbered section for each library, backslashes doubled.
std::string LibraryFoldersText(const std::vector<std::string>& libraries);

// steamapps\appmanifest_<appId>.acf. Nothing in these values is escaped: no reader unescapes them.
std::string AppManifestText(const std::string& appId, const std::string& name, const std::string& installDir);

// One application of appcache\appinfo.vdf. An empty text is left out of the file.
struct AppInfoApp {
  uint32_t appId = 0;
  std::string name = {};
  std::string type = "game";
  std::string installDir = {};
  std::vector<std::string> executables = {};  // one launch entry each, in order
};

// appcache\appinfo.vdf. Versions below 40 have a header of 40 bytes for each application, later ones 60; from
// 41 on key names are numbers in a string table at the file's end. Only the low byte of `version` is written.
std::string AppInfoBytes(uint32_t version, const std::vector<AppInfoApp>& apps);

// A program that a user added to Steam by hand. `exe` and `startDir` are written as given: Steam puts them in
// quotes.
struct ShortcutEntry {
  std::string appName = {};
  std::string exe = {};
  std::string startDir = {};
};

// userdata\<user>\config\shortcuts.vdf.
std::string ShortcutsBytes(const std::vector<ShortcutEntry>& shortcuts);

}  // namespace tarnwick::desktop
