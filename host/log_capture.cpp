#include "host/log_capture.h"

#include <windows.h>

#include <fmt/format.h>

#include <algorithm>
#include <regex>

namespace tarnwick::host {
namespace {

// How the library's texts begin. The last is the one that it sends without its name.
constexpr const char* kMarks[] = {"[Tarnwick", "[GameUXRegistrySearch] SEH Error"};

std::string LocalTimeStamp() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}.{:03}", now.wYear, now.wMonth, now.wDay, now.wHour,
                     now.wMinute, now.wSecond, now.wMilliseconds);
}

// The two parts that precede a line: prefix and, within it, the time stamp.
std::smatch Head(const std::string& text) {
  static const std::regex kForm(R"(\[Tarnwick\] (?:\[(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3})\] )?)");
  std::smatch match;
  std::regex_search(text, match, kForm, std::regex_constants::match_continuous);
  return match;
}

LogEntry EntryOf(const std::string& text) {
  LogEntry entry{std::chrono::steady_clock::now(), GetCurrentThreadId(), LineOfDebugText(text),
                 StampOfDebugText(text)};
  if (entry.stamp.empty()) entry.stamp = LocalTimeStamp();
  return entry;
}

}  // namespace

LogCapture::LogCapture(std::function<void(const LogEntry&)> sink)
    : capture_(
          [](const common::DebugText& text) { return IsLibraryText(common::Utf8Of(text)); },
          [sink = std::move(sink)](const common::DebugText& text) { sink(EntryOf(common::Utf8Of(text))); }) {}

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
