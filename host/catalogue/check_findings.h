#pragma once
// What a check found, each with its place.

#include "host/catalogue/check_codes.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::host {

struct Finding {
  size_t at = 0;  // the offset in the text
  Check check = kNoRecord;
  std::string record;   // the record's name, shortened; empty where it has none, or for the whole file
  std::string message;  // what is wrong, in one line
  size_t line = 1;      // from 1
  size_t column = 1;    // from 1, in characters
};

// A file of nothing but faults must not fill the memory: further ones are counted and left out.
inline constexpr size_t kMostFindings = 10'000;

struct Findings {
  std::vector<Finding> list;
  size_t errors = 0;
  size_t warnings = 0;
  size_t records = 0;  // that the library reads
};

void AddFinding(Findings& findings, Finding finding);

// Sorts the findings by their place, and gives each its line and column.
void PlaceFindings(Findings& findings, std::string_view text);

// The offset of a parser's place, whose columns count UTF-16 units from 1; the text's end for one behind it.
size_t OffsetOf(std::string_view text, size_t line, size_t column);

// The text in quotes, as a message shows it: cut after some characters, on one line.
std::string Quoted(std::string_view text);

// The text itself, cut likewise.
std::string Shortened(std::string_view text, size_t most);

}  // namespace tarnwick::host
