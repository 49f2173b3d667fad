#pragma once
// The log of a test that runs on Windows and natively: the debug output there, the gathered lines here.

#ifdef _WIN32
#include "support/debug_capture.h"

namespace tarnwick::tests {
using LogCapture = DebugCapture;
}
#else
#include "support/native_log.h"

namespace tarnwick::tests {

class LogCapture {
 public:
  LogCapture() { NativeLogLines().clear(); }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  // What was logged, each without the line feed at its end.
  std::vector<std::string> Lines() const {
    std::vector<std::string> lines = NativeLogLines();
    for (std::string& line : lines) {
      if (!line.empty() && line.back() == '\n') line.pop_back();
    }
    return lines;
  }
};

}  // namespace tarnwick::tests
#endif
