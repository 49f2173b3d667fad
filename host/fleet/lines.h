#pragma once
// Lists as lines of JSON that tell by themselves what they are, when they were made and where: whoever gathers
// them from many machines takes each line alone.

#include "host/list_formats.h"
#include "host/options.h"

#include <string>

namespace tarnwick::host {

// The form of the lines. A change that a reader of the form before couldn't follow makes it one more.
inline constexpr int kLineForm = 1;

// What all lines of one run have in common.
struct LineOrigin {
  std::string time;     // when the run began, such as "2026-01-02T03:04:05.678Z"
  std::string machine;  // empty where the name is to be left out
};

// This machine, now.
LineOrigin OriginOfRun(const Options& options);

// What the lines of a list are called.
struct LineKinds {
  const char* row;  // "game"
  const char* end;  // "scan": of the line behind the last row, by which a whole list is told from a cut one
};

inline constexpr LineKinds kGameLines = {"game", "scan"};
inline constexpr LineKinds kApplicationLines = {"application", "apps"};

// A line for each row, with "kind", "form", "time" and "machine" behind its members, and the line of the end:
// these four, "lines", the number of rows, and "program", this program's version.
std::string LinesOfRun(const Rows& rows, const LineKinds& kinds, const LineOrigin& origin);

// Writes these lines where the options say, without icons unless they were asked for.
void WriteLines(const Options& options, Rows rows, const LineKinds& kinds, const LineOrigin& origin);

}  // namespace tarnwick::host
