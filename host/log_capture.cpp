// The debug output raises an exception for a debugger to see; a vectored handler sees it first.
#include "host/log_capture.h"

#include <windows.h>

#include <fmt/format.h>

#include <algorithm>
#include <mutex>
#include <optional>
#include <regex>

#include "host/console.h"

namespace tarnwick::host {
namespace {

constexpr DWORD kDebugPrintWide = 0x4001000A;
constexpr ULONG_PTR kLongestText = 1 << 20;  // in units; the library has no line that comes near it

// How the library's texts begin. The last is the one that it sends without its name.
constexpr const char* kMarks[] = {"[Tarnwick", "[GameUXRegistrySearch] SEH Error"};

std::mutex g_sinkMutex;
std::function<void(const LogEntry&)> g_sink;
void* g_handler = nullptr;

// The wide debug output raises two exceptions: one with the wide text and, unless a debugger has handled
// that, one with the text in the ANSI code page.
thread_local bool t_sawWide = false;

thread_local bool t_handling = false;

// The text of a debug output, up to its first zero. Nothing where the parameters are none of a debug output:
// whoever raises an exception may give it this code, so neither length nor pointer can be trusted.
template <class Unit>
std::optional<std::basic_string<Unit>> UnitsOf(const EXCEPTION_RECORD& record) {
  const ULONG_PTR* information = record.ExceptionInformation;
  const ULONG_PTR count = information[0];
  if (record.NumberParameters < 2 || count == 0 || count > kLongestText) return {};
  std::basic_string<Unit> text(count, Unit{});
  if (!ReadProcessMemory(GetCurrentProcess(), reinterpret_cast<const void*>(information[1]), text.data(),
                         count * sizeof(Unit), nullptr)) {
    return {};
  }
  text.resize(std::min(text.find(Unit{}), text.size()));
  return text;
}

// Narrow lines are UTF-8; the second, narrow form of a wide line is in the ANSI code page.
std::string FromUtf8OrAnsi(const std::string& text) {
  const int length = static_cast<int>(text.size());
  const UINT page = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), length, nullptr, 0) > 0
                        ? CP_UTF8
                        : CP_ACP;
  std::wstring wide(static_cast<size_t>(MultiByteToWideChar(page, 0, text.data(), length, nullptr, 0)),
                    L'\0');
  MultiByteToWideChar(page, 0, text.data(), length, wide.data(), static_cast<int>(wide.size()));
  return Narrow(wide);
}

std::string TextOf(const EXCEPTION_RECORD& record) {
  if (record.ExceptionCode == kDebugPrintWide) return Narrow(UnitsOf<wchar_t>(record).value_or(L""));
  return FromUtf8OrAnsi(UnitsOf<char>(record).value_or(""));
}

std::string LocalTimeStamp() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}.{:03}", now.wYear, now.wMonth, now.wDay, now.wHour,
                     now.wMinute, now.wSecond, now.wMilliseconds);
}

void HandOver(const EXCEPTION_RECORD& record) {
  const std::string text = TextOf(record);
  if (!IsLibraryText(text)) return;
  const bool wide = record.ExceptionCode == kDebugPrintWide;
  const bool repeated = !wide && t_sawWide;
  t_sawWide = wide;
  if (repeated) return;
  LogEntry entry{std::chrono::steady_clock::now(), GetCurrentThreadId(), LineOfDebugText(text),
                 StampOfDebugText(text)};
  if (entry.stamp.empty()) entry.stamp = LocalTimeStamp();
  const std::lock_guard lock(g_sinkMutex);
  if (g_sink) g_sink(entry);
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* pointers) noexcept {
  const DWORD code = pointers->ExceptionRecord->ExceptionCode;
  if ((code != kDebugPrintWide && code != DBG_PRINTEXCEPTION_C) || t_handling)
    return EXCEPTION_CONTINUE_SEARCH;
  t_handling = true;
  try {
    HandOver(*pointers->ExceptionRecord);
  } catch (...) {
    // A line that can't be taken down must not end the thread that logs it.
  }
  t_handling = false;
  return EXCEPTION_CONTINUE_SEARCH;
}

// The two parts that precede a line: prefix and, within it, the time stamp.
std::smatch Head(const std::string& text) {
  static const std::regex kForm(R"(\[Tarnwick\] (?:\[(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3})\] )?)");
  std::smatch match;
  std::regex_search(text, match, kForm, std::regex_constants::match_continuous);
  return match;
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

bool IsLibraryText(const std::string& text) {
  return std::any_of(std::begin(kMarks), std::end(kMarks),
                     [&](const char* mark) { return text.starts_with(mark); });
}

std::string LineOfDebugText(const std::string& text) {
  std::string line = text.substr(static_cast<size_t>(Head(text).length()));
  line.erase(0, std::min(line.find_first_not_of('\n'), line.size()));
  line.erase(line.find_last_not_of('\n') + 1);
  return line;
}

std::string StampOfDebugText(const std::string& text) { return Head(text).str(1); }

}  // namespace tarnwick::host
