#pragma once
// Where the lines of the library's log go: the standard error, a file, both or neither.

#include "host/log_capture.h"
#include "host/options.h"

#include <fstream>

namespace tarnwick::host {

// One line with its time stamp and a line feed: the library's own stamp, or for lines that carry none the
// time at which they came.
std::string StampedLine(const LogEntry& entry);

class LogOutput {
 public:
  // Opens the log file, if there is to be one. Throws std::runtime_error naming it where that fails.
  explicit LogOutput(const Options& options);

  // Never throws: it is called on the library's threads.
  void Write(const LogEntry& entry) noexcept;

 private:
  bool toStandardError_;
  std::ofstream file_;
};

}  // namespace tarnwick::host
