#pragma once
// Sees the debug output of this process, as a debugger would.

#include <string>
#include <vector>

namespace tarnwick::tests {

// Gathers every debug-output call of every thread from construction to destruction. Any number may be alive.
class DebugCapture {
 public:
  DebugCapture();
  ~DebugCapture();
  DebugCapture(const DebugCapture&) = delete;
  DebugCapture& operator=(const DebugCapture&) = delete;

  // Each call's text, exactly as it was sent; wide calls arrive in the ANSI code page.
  std::vector<std::string> Raw() const;

  // The texts without "[Tarnwick] ", the timestamp and the trailing line feed: what LogLine and LogStream
  // were given.
  std::vector<std::string> Lines() const;

  // Those of Lines() that begin with `prefix`.
  std::vector<std::string> LinesWith(const std::string& prefix) const;

  void Clear();
};

}  // namespace tarnwick::tests
