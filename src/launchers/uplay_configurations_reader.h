#pragma once
// The Ubisoft launcher's cache of game descriptions, cache\configuration\configurations.

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// One entry below "online:" or "offline:".
struct UplayExecutable {
  std::string relative;  // path below the install folder; a registry text where only "register:" was given
  std::string register_;
  std::string append;  // folder between the install folder and `relative`, may be empty
};

// One game of the file. What its lines don't say stays empty.
struct UplayConfigRecord {
  std::string name;
  std::string installId;  // decimal digits
  std::string unused;     // nothing fills or reads it
  std::vector<UplayExecutable> onlineExecutables;
  std::vector<UplayExecutable> offlineExecutables;
};

// Every record, in file order. A record begins at a line that is "root:" and nothing else; what stands before
// the first one is passed over.
std::vector<UplayConfigRecord> ReadUplayConfigurations(std::string_view text);

// Works out the record's id, from the offline entries first, and appends the record, whatever it holds.
void FinishUplayRecord(std::vector<UplayConfigRecord>& records, UplayConfigRecord record);

// The digits between "Ubisoft\Launcher\Installs\" and the next backslash; empty if there is anything else.
std::string ExtractInstallId(std::string_view text);

// What stands behind the line's first colon, without leading blanks and tabs.
std::string_view GetUplayLineValue(std::string_view line);

}  // namespace tarnwick
