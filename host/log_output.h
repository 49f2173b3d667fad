#pragma once
// Where the lines of the library's log go: the standard error, a file, both or neither.

#include "host/log_capture.h"
#include "host/options.h"
#include "host/output_file.h"

#include <mutex>
#include <optional>
#include <string>

namespace tarnwick::host {

// One line: the entry's stamp in brackets, its text with blanks for control characters, a line feed.
std::string StampedLine(const LogEntry& entry);

class LogOutput {
 public:
  // Opens the log file, if there is to be one. Throws std::runtime_error naming it where that fails.
  explicit LogOutput(const Options& options);

  // Says once that the log file is incomplete, if it is.
  ~LogOutput();
  LogOutput(const LogOutput&) = delete;
  LogOutput& operator=(const LogOutput&) = delete;

  // Any thread may call it, and it never throws. After the first line that can't be written to the file no
  // more are.
  void Write(const LogEntry& entry) noexcept;

 private:
  void WriteToFile(const std::string& line);

  bool toStandardError_;
  std::mutex mutex_;
  std::optional<OutputFile> file_;
  std::string failure_;
};

}  // namespace tarnwick::host
