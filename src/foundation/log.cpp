// Edge: the debug output.
#include "foundation/log.h"

#include "foundation/conversions.h"
#include "foundation/windows_api.h"

#include <cwchar>

namespace tarnwick {

void LogLine(const std::string& text) {
  constexpr size_t kLineUnits = 4096;
  const std::wstring wide = Utf8ToWide(text);
  SYSTEMTIME now;
  GetLocalTime(&now);
  wchar_t line[kLineUnits];
  // A line that doesn't fit leaves the buffer full and unterminated: the last unit is then the terminator's.
  _snwprintf(line, kLineUnits - 1, L"[Tarnwick] [%04d-%02d-%02d %02d:%02d:%02d.%03d] %ls\n", now.wYear,
             now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds, wide.c_str());
  line[kLineUnits - 1] = L'\0';
  OutputDebugStringW(line);
}

void LogCString(const char* text) {
  if (text != nullptr) LogLine(text);
}

void SendRawDebugText(const char* text) { OutputDebugStringA(text); }

void SendRawDebugText(const std::wstring& text) { OutputDebugStringW(text.c_str()); }

LogStream::~LogStream() {
  try {
    const std::string text = str();
    if (!text.empty()) OutputDebugStringA(("[Tarnwick] " + text).c_str());
  } catch (...) {
    // A destructor must not throw: without memory for the line, the line is lost.
  }
}

}  // namespace tarnwick
