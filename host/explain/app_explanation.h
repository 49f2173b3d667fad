#pragma once
// Why an installed application is in the library's list or isn't: the library's own functions, run with the
// observer on for each entry of the Uninstall keys that has a name.

#include "host/explain/icon_explanation.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace tarnwick::host {

enum class AppVerdict { kListed, kHidden, kNameless, kNoExecutable, kUnreadable };

// "listed", "hidden", "nameless", "no executable", "unreadable".
const char* NameOf(AppVerdict verdict);

// One subkey in one view.
struct AppExplanation {
  std::string key;
  RegistryView view = RegistryView::kNative;
  std::string name;  // the key's DisplayName, empty where there is none
  AppVerdict verdict = AppVerdict::kListed;
  std::string reason;                   // why it isn't listed; empty where it is
  std::string listExecutable;           // as the whole list shows it; empty where that has none
  std::string pageExecutable;           // as a page of the list shows it
  std::string folder;                   // where it is installed, as resolved
  std::string folderReason;             // how it was resolved
  std::vector<std::string> alsoListed;  // other keys, each with its view, that list the same name
  IconExplanation icon;                 // not asked for what neither list shows
  std::vector<common::Heard> heard;     // every question about it, in order
};

struct AppExplanations {
  std::string subject;
  std::vector<AppExplanation> applications;  // in the order of the library's list
  size_t keys = 0;                           // how many entries there are, whatever their names
};

// For each Uninstall entry, in all views that the library reads, whose key's name or DisplayName holds
// `name` when both are folded. Refreshes this process's list of applications. Takes g_cacheLock.
AppExplanations ExplainApplications(const std::string& name);

// True if there is one, and every one is in the whole list.
bool AllListed(const AppExplanations& explanations);

// For people, lines with line feeds. Verbose: with every question, below its application.
std::string AppExplanationsText(const AppExplanations& explanations, bool verbose = false);

// {"subject", "keys", "applications": [{"key", "view", "name", "verdict", "reason", "listExecutable",
// "pageExecutable", "folder", "folderReason", "alsoListed", "icon", "questions"}]}
nlohmann::ordered_json AppExplanationsJson(const AppExplanations& explanations);

}  // namespace tarnwick::host
