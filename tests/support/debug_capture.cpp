#include "support/debug_capture.h"

#include "foundation/windows_api.h"

#include <cstdint>
#include <mutex>
#include <regex>

namespace tarnwick::tests {
namespace {

std::mutex g_mutex;
std::vector<std::string> g_texts;
int g_captures = 0;
void* g_handler = nullptr;

LONG CALLBACK OnException(EXCEPTION_POINTERS* pointers) {
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  if (record.ExceptionCode != DBG_PRINTEXCEPTION_C || record.NumberParameters < 2)
    return EXCEPTION_CONTINUE_SEARCH;
  const auto length = static_cast<size_t>(record.ExceptionInformation[0]);
  const char* text = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
  // Anybody can raise this code, and send along what is no text.
  if (IsBadReadPtr(text, length)) return EXCEPTION_CONTINUE_SEARCH;
  std::lock_guard lock(g_mutex);
  // The length counts the terminating zero.
  g_texts.emplace_back(text, length > 0 ? length - 1 : 0);
  return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

DebugCapture::DebugCapture() {
  std::lock_guard lock(g_mutex);
  if (g_captures++ == 0) {
    g_texts.clear();
    g_handler = AddVectoredExceptionHandler(1, OnException);
  }
}

DebugCapture::~DebugCapture() {
  std::lock_guard lock(g_mutex);
  if (--g_captures == 0) RemoveVectoredExceptionHandler(g_handler);
}

std::vector<std::string> DebugCapture::Raw() const {
  std::lock_guard lock(g_mutex);
  return g_texts;
}

std::vector<std::string> DebugCapture::Lines() const {
  static const std::regex kPrefix(R"(^\[Tarnwick\] (\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\] )?)");
  std::vector<std::string> lines;
  for (std::string text : Raw()) {
    text = std::regex_replace(text, kPrefix, "", std::regex_constants::format_first_only);
    if (!text.empty() && text.back() == '\n') text.pop_back();
    lines.push_back(text);
  }
  return lines;
}

std::vector<std::string> DebugCapture::LinesWith(const std::string& prefix) const {
  std::vector<std::string> lines = Lines();
  std::erase_if(lines, [&](const std::string& line) { return line.rfind(prefix, 0) != 0; });
  return lines;
}

void DebugCapture::Clear() {
  std::lock_guard lock(g_mutex);
  g_texts.clear();
}

}  // namespace tarnwick::tests
