#pragma once
// The library's log, which is the debug output of this process, seen from inside.

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "common/debug_output.h"

namespace tarnwick::host {

struct LogEntry {
  std::chrono::steady_clock::time_point time;
  uint32_t threadId = 0;
  std::string text;  // without "[Tarnwick] ", time stamp and surrounding line feeds; valid UTF-8
  // "2026-01-02 03:04:05.678", local time: the line's own stamp, or where it has none the time it came.
  std::string stamp{};
};

// Calls `sink` for every line that the library logs while it lives, on the thread that logs it, one call at a
// time. Debug output of other modules is left alone, and so is what `sink` itself causes. An exception that
// leaves `sink` ends there. Only one capture may be alive in a process.
class LogCapture {
 public:
  explicit LogCapture(std::function<void(const LogEntry&)> sink);

 private:
  common::DebugOutputCapture capture_;
};

// Is this debug output the library's? Its texts begin with one of a few marks.
bool IsLibraryText(const std::string& text);

// The line inside a debug-output text: prefix, time stamp and surrounding line feeds removed.
std::string LineOfDebugText(const std::string& text);

// The time stamp of a debug-output text without its brackets, or an empty text.
std::string StampOfDebugText(const std::string& text);

}  // namespace tarnwick::host
