#pragma once
// The library's log, which is the debug output of this process, seen from inside.

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace tarnwick::host {

struct LogEntry {
  std::chrono::steady_clock::time_point time;
  uint32_t threadId = 0;
  std::string text;  // one line, without "[Tarnwick] ", timestamp and line feed
};

// Calls `sink` for every line that the library logs while it lives, on the thread that logs it, one call at a
// time. Only one may be alive in a process.
class LogCapture {
 public:
  explicit LogCapture(std::function<void(const LogEntry&)> sink);
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;
};

// The line inside a debug-output text: prefix, timestamp and surrounding line feeds removed.
std::string LineOfDebugText(const std::string& text);

}  // namespace tarnwick::host
