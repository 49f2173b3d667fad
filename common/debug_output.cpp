// The debug output raises an exception for a debugger to see; a vectored handler sees it first.
#include "common/debug_output.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>

#include "common/wide_text.h"

namespace tarnwick::common {
namespace {

constexpr DWORD kDebugPrintWide = 0x4001000A;
constexpr ULONG_PTR kLongestText = 1 << 20;  // in units; the library has no line that comes near it

std::mutex g_sinkMutex;
std::function<void(const DebugText&)> g_sink;
std::atomic<bool (*)(const DebugText&)> g_wanted;  // stays when a capture ends: a thread may still be asking
void* g_handler = nullptr;

// Was the wanted text before this one, on this thread, a wide one?
thread_local bool t_sawWide = false;

thread_local bool t_handling = false;

// Nothing where the parameters are none of a debug output: whoever raises an exception may give it this code,
// so neither length nor pointer can be trusted.
template <class Unit>
std::optional<DebugText> UnitsOf(const EXCEPTION_RECORD& record) {
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

void HandOver(const EXCEPTION_RECORD& record) {
  const bool wide = record.ExceptionCode == kDebugPrintWide;
  const std::optional<DebugText> text = wide ? UnitsOf<wchar_t>(record) : UnitsOf<char>(record);
  if (!text || !g_wanted.load()(*text)) return;
  const bool repeated = !wide && t_sawWide;
  t_sawWide = wide;
  if (repeated) return;
  const std::lock_guard lock(g_sinkMutex);
  if (g_sink) g_sink(*text);
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* pointers) noexcept {
  const DWORD code = pointers->ExceptionRecord->ExceptionCode;
  if ((code != kDebugPrintWide && code != DBG_PRINTEXCEPTION_C) || t_handling)
    return EXCEPTION_CONTINUE_SEARCH;
  t_handling = true;
  try {
    HandOver(*pointers->ExceptionRecord);
  } catch (...) {
    // A text that can't be taken down must not end the thread that sends it.
  }
  t_handling = false;
  return EXCEPTION_CONTINUE_SEARCH;
}

std::string Utf8OfNarrow(const std::string& text) {
  const int length = static_cast<int>(text.size());
  if (text.empty() || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), length, nullptr, 0) > 0)
    return text;
  std::wstring wide(static_cast<size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0)),
                    L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), static_cast<int>(wide.size()));
  return Narrow(wide);
}

}  // namespace

std::string Utf8Of(const DebugText& text) {
  const auto* wide = std::get_if<std::wstring>(&text);
  return wide ? Narrow(*wide) : Utf8OfNarrow(std::get<std::string>(text));
}

DebugOutputCapture::DebugOutputCapture(bool (*wanted)(const DebugText&),
                                       std::function<void(const DebugText&)> sink) {
  g_wanted = wanted;
  {
    const std::lock_guard lock(g_sinkMutex);
    g_sink = std::move(sink);
  }
  g_handler = AddVectoredExceptionHandler(1, OnException);
}

DebugOutputCapture::~DebugOutputCapture() {
  RemoveVectoredExceptionHandler(g_handler);
  const std::lock_guard lock(g_sinkMutex);
  g_sink = nullptr;
}

}  // namespace tarnwick::common
