#include "host/log_output.h"

#include <exception>

#include "host/console.h"
#include "host/failure.h"
#include "host/text_width.h"

namespace tarnwick::host {

std::string StampedLine(const LogEntry& entry) {
  return "[" + entry.stamp + "] " + PrintableText(entry.text) + "\n";
}

LogOutput::LogOutput(const Options& options) : toStandardError_(options.log) {
  if (!options.logFile.empty()) file_.emplace(options.logFile);
}

LogOutput::~LogOutput() {
  if (!failure_.empty()) ReportLine("the log is incomplete: " + failure_);
}

void LogOutput::Write(const LogEntry& entry) noexcept {
  try {
    const std::string line = StampedLine(entry);
    const std::lock_guard lock(mutex_);
    if (toStandardError_) WriteStandardError(line);
    if (file_) WriteToFile(line);
  } catch (...) {
    // A log that can't be written must not end the work that it tells of.
  }
}

void LogOutput::WriteToFile(const std::string& line) {
  try {
    file_->Write(line);
  } catch (const std::exception& error) {
    failure_ = error.what();
    file_.reset();
  }
}

}  // namespace tarnwick::host
