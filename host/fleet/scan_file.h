#pragma once
// A scan that was kept, as --format json or ndjson wrote it.

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::host {

struct ScannedGame {
  std::string name;
  std::string launcher;  // empty in the library's own JSON
  std::string loc;
  std::string launchUrl;
};

struct ScanFile {
  std::string time;     // empty where the file doesn't tell, as JSON doesn't
  std::string machine;  // likewise
  std::vector<ScannedGame> games;
};

// Lines of before there was one for the end are taken too. Throws std::runtime_error with `path`, the place and
// the reason for a text that is neither form, was cut, or holds more than one scan.
ScanFile ParseScan(const std::string& path, std::string_view text);

// ParseScan of a file. Throws std::runtime_error with its name where it can't be read.
ScanFile ReadScan(const std::string& path);

}  // namespace tarnwick::host
