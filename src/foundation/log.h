#pragma once
// The debug output, which is all the library ever says about its work: no file, no levels, no switch.
// Both ways are safe on any thread; each line is one call of the debug output, so lines never mix inside.

#include <exception>
#include <sstream>
#include <string>

namespace tarnwick {

// Writes "[Tarnwick] [date time] text\n" for a UTF-8 text. The line, prefix included, is cut at 4095 UTF-16
// units, and its line feed goes with the cut. The drivers and exports log this way.
void LogLine(const std::string& text);

// As LogLine; does nothing for null.
void LogCString(const char* text);

// Sends text to the debug output exactly as it stands, without prefix, time or line feed.
void SendRawDebugText(const char* text);
void SendRawDebugText(const std::wstring& text);

// A text stream that writes "[Tarnwick] " and its text in one call when it is destroyed, or nothing when it
// holds nothing. It adds no line feed: writers end their lines with "\n". The strategies log this way.
class LogStream : public std::ostringstream {
 public:
  LogStream() = default;
  ~LogStream() override;
  LogStream(const LogStream&) = delete;
  LogStream& operator=(const LogStream&) = delete;
};

// Runs `body`. A standard exception ends it with the line `what` and the exception's text; anything else
// passes.
template <class Body>
void LogExceptions(const std::string& what, Body&& body) {
  try {
    body();
  } catch (const std::exception& exception) {
    LogStream() << what << exception.what() << "\n";
  }
}

}  // namespace tarnwick
