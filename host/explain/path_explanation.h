#pragma once
// What leads to a file or folder: which of the catalogue's records, which strategies, which installed
// applications, and which icon would be taken for it.

#include "host/explain/icon_explanation.h"
#include "host/explain/observed_scan.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace tarnwick::host {

enum class PathKind { kMissing, kFile, kFolder };

// "missing", "file", "folder".
const char* NameOf(PathKind kind);

// Paths are equal without regard to case, whichever slashes they have; a folder stands for all below it.
struct RecordLead {
  std::string record;  // its name in the catalogue
  std::string strategy;
  bool found = false;  // false: the strategy only asked about the path for this record
  std::string path;    // what was found, or the last question in words
};

struct StrategyLead {
  std::string strategy;
  ScanResults results;       // those that are there, before merging
  std::vector<Heard> heard;  // the questions about it, and those whose answer in the registry names it
};

struct ApplicationLead {
  std::string name;
  std::string executable;  // as the list shows it; empty where the application isn't in the list
  std::string folder;
  std::string how;  // "executable", "folder" or "in its folder"
};

struct PathExplanation {
  std::string subject;
  std::string path;  // in full, and mended where the library mends it
  PathKind kind = PathKind::kMissing;
  std::vector<RecordLead> records;  // at most kMostRecordLeads of those that only asked, for each strategy
  std::vector<StrategyLead> strategies;
  std::vector<ApplicationLead> applications;
  bool inScan = false;      // an entry of the scan's answer is there
  std::string displayIcon;  // the icon that this entry names itself; may be empty
  IconExplanation icon;     // as for that entry, or else as for the path itself; not asked if it is missing
};

inline constexpr size_t kMostRecordLeads = 10;

// Runs strategies again, with parts of their games, to tell whose question it was. Refreshes this process's
// list of applications. Takes g_cacheLock.
PathExplanation ExplainPath(const std::string& path, const ObservedScan& scan);

// True if an entry of the scan or of the list of applications is there.
bool IsFound(const PathExplanation& explanation);

// For people, lines with line feeds. Verbose: with every question about it.
std::string PathExplanationText(const PathExplanation& explanation, bool verbose = false);

// {"subject", "path", "kind", "inScan", "records": [{"name", "strategy", "found", "path"}], "strategies":
// [{"name", "found": [{"name", "path", "source"}], "questions"}], "applications": [{"name", "executable",
// "folder", "how"}], "icon"}
nlohmann::ordered_json PathExplanationJson(const PathExplanation& explanation);

}  // namespace tarnwick::host
