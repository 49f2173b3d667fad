#pragma once
// The debug output of this process, as a debugger sees it.

#include <functional>
#include <string>
#include <variant>

namespace tarnwick::common {

// A text up to its first zero, as it was sent: narrow, or in UTF-16. What is sent wide is offered twice: first
// as it is and, unless somebody has handled that, once more in the ANSI code page.
using DebugText = std::variant<std::string, std::wstring>;

// As UTF-8. A narrow text that isn't UTF-8 is in the ANSI code page.
std::string Utf8Of(const DebugText& text);

// Calls `sink` for every wanted text of every thread while it lives, on the thread that sends it, one call at a
// time. `wanted` is asked on many threads at once. What either of them sends itself is passed over, and so is
// the narrow form of a wide text that was wanted. An exception that leaves them ends there. Only one capture
// may be alive in a process.
class DebugOutputCapture {
 public:
  DebugOutputCapture(bool (*wanted)(const DebugText&), std::function<void(const DebugText&)> sink);
  ~DebugOutputCapture();
  DebugOutputCapture(const DebugOutputCapture&) = delete;
  DebugOutputCapture& operator=(const DebugOutputCapture&) = delete;
};

}  // namespace tarnwick::common
