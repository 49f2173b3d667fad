// The debug output raises an exception for a debugger to see; a vectored handler sees it first.
#include "host/log_capture.h"

#include <windows.h>

#include <mutex>
#include <regex>

#include "host/console.h"

namespace tarnwick::host {
namespace {

constexpr DWORD kDebugPrintWide = 0x4001000A;

std::mutex g_sinkMutex;
std::function<void(const LogEntry&)> g_sink;
void* g_handler = nullptr;

// The wide debug output is offered as a wide text first and, where nobody takes that, once more in the ANSI
// page.
thread_local bool t_sawWide = false;

std::string TextOf(const EXCEPTION_RECORD& record) {
  const ULONG_PTR* information = record.ExceptionInformation;
  if (information[0] == 0) return {};
  const auto length = static_cast<size_t>(information[0]) - 1;  // the length counts the terminator
  if (record.ExceptionCode == kDebugPrintWide) {
    return Narrow(std::wstring(reinterpret_cast<const wchar_t*>(information[1]), length));
  }
  return std::string(reinterpret_cast<const char*>(information[1]), length);
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* pointers) {
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  const bool wide = record.ExceptionCode == kDebugPrintWide;
  if ((!wide && record.ExceptionCode != DBG_PRINTEXCEPTION_C) || record.NumberParameters < 2) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  const bool repeated = !wide && t_sawWide;
  t_sawWide = wide;
  if (!repeated) {
    const LogEntry entry{std::chrono::steady_clock::now(), GetCurrentThreadId(),
                         LineOfDebugText(TextOf(record))};
    std::lock_guard lock(g_sinkMutex);
    if (g_sink) g_sink(entry);
  }
  return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

LogCapture::LogCapture(std::function<void(const LogEntry&)> sink) {
  g_sink = std::move(sink);
  g_handler = AddVectoredExceptionHandler(1, OnException);
}

LogCapture::~LogCapture() {
  RemoveVectoredExceptionHandler(g_handler);
  std::lock_guard lock(g_sinkMutex);
  g_sink = nullptr;
}

std::string LineOfDebugText(const std::string& text) {
  static const std::regex kPrefix(R"(^\[Tarnwick\] (\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\] )?)");
  std::string line = std::regex_replace(text, kPrefix, "", std::regex_constants::format_first_only);
  line.erase(0, std::min(line.find_first_not_of('\n'), line.size()));
  line.erase(line.find_last_not_of('\n') + 1);
  return line;
}

}  // namespace tarnwick::host
