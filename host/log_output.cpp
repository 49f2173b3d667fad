#include "host/log_output.h"

#include <filesystem>
#include <stdexcept>

#include "host/console.h"

namespace tarnwick::host {

std::string StampedLine(const LogEntry& entry) { return entry.text + "\n"; }

LogOutput::LogOutput(const Options& options) : toStandardError_(options.log) {
  if (options.logFile.empty()) return;
  file_.open(std::filesystem::path(Widen(options.logFile)), std::ios::binary);
  if (!file_) throw std::runtime_error("can't write " + options.logFile);
}

void LogOutput::Write(const LogEntry& entry) noexcept {
  try {
    const std::string line = StampedLine(entry);
    if (toStandardError_) WriteStandardError(line);
    if (file_.is_open()) file_ << line << std::flush;
  } catch (...) {
    // A log that can't be written must not end the work that it tells of.
  }
}

}  // namespace tarnwick::host
