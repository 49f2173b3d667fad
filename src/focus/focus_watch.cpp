// Edge: the foreground window's process, and the thread that watches it.
#include "focus/focus_watch.h"

#include "foundation/com_scope.h"
#include "foundation/conversions.h"
#include "foundation/export_guard.h"
#include "foundation/owner.h"

#include <atomic>
#include <functional>
#include <system_error>
#include <utility>

namespace tarnwick {
namespace {

struct ModuleTraits {
  using Value = HMODULE;
  static Value None() { return nullptr; }
  static void Close(Value module) { FreeLibrary(module); }
};
using ModuleReference = Owner<ModuleTraits>;

// An object that static destruction leaves alone. Destroying a joinable thread object terminates the process,
// and a host may exit while a watch runs.
template <class T>
union Immortal {
  T object;
  Immortal() : object() {}
  ~Immortal() {}
};

std::atomic<TarnwickFocusCallback> g_focusCallback = nullptr;  // relaxed throughout: a plain store and load
std::atomic<bool> g_focusRunning = false;
// False until g_focusThread holds a new thread: a stop from within its first callback must find it there.
std::atomic<bool> g_focusHandedOver = true;
Immortal<std::thread> g_focusThread;
Immortal<ModuleReference> g_focusModule;  // keeps the thread's code mapped, whatever the host unloads

uint32_t ForegroundProcess() {
  DWORD processId = 0;
  if (const HWND window = GetForegroundWindow()) GetWindowThreadProcessId(window, &processId);
  return processId;
}

std::wstring ImagePath(uint32_t processId) {
  wchar_t path[MAX_PATH] = {};
  const Handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
  DWORD length = MAX_PATH;
  if (!process || !QueryFullProcessImageNameW(process.Get(), 0, path, &length)) return {};
  return path;
}

void SleepFor(int32_t milliseconds) { Sleep(static_cast<DWORD>(milliseconds)); }

std::thread StartThread(int32_t interval, const FocusCalls& calls) {
  return std::thread(PollForeground, interval, std::cref(calls));
}

ModuleReference ThisModule() {
  ModuleReference module;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&PollForeground),
                     module.Receive());
  return module;
}

void Report(uint32_t processId, const FocusCalls& calls) {
  const std::wstring path = calls.imagePath(processId);
  const TarnwickFocusCallback callback = g_focusCallback.load(std::memory_order_relaxed);
  if (callback == nullptr) return;
  const std::string fullPath = WideToUtf8(path);
  const std::string fileName = fullPath.substr(fullPath.find_last_of("\\/") + 1);
  callback(fileName.c_str(), processId, fullPath.c_str());
}

void JoinWatch() {
  g_focusThread.object.join();
  g_focusModule.object.Reset();
}

// True if a watch that was stopped from within its callback is the calling thread: it may go on then.
bool OnStoppedWatch() { return g_focusThread.object.get_id() == std::this_thread::get_id(); }

// Sets the flag at the end of the scope, also where the thread could not be started.
struct HandOver {
  HandOver() { g_focusHandedOver = false; }
  ~HandOver() { g_focusHandedOver = true; }
};

void StartThrowing(int32_t interval, const FocusCalls& calls) {
  constexpr int32_t kShortest = 50;
  constexpr int32_t kUsual = 200;
  if (g_focusRunning.load()) return;
  // Joins the thread of a watch that was stopped from within its callback. With the flag set first, that
  // thread would go on polling.
  if (g_focusThread.object.joinable() && !OnStoppedWatch()) JoinWatch();
  if (g_focusRunning.exchange(true) || g_focusThread.object.joinable()) return;
  ModuleReference module = ThisModule();
  const HandOver handOver;
  g_focusThread.object = calls.startThread(interval < kShortest ? kUsual : interval, calls);
  g_focusModule.object = std::move(module);
}

void StopThrowing() {
  g_focusRunning.exchange(false);
  if (!g_focusThread.object.joinable()) return;
  if (OnStoppedWatch())
    throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
  JoinWatch();
}

}  // namespace

const FocusCalls kWindowsFocusCalls = {ForegroundProcess, ImagePath, SleepFor, StartThread};

void SetFocusCallback(TarnwickFocusCallback callback) {
  g_focusCallback.store(callback, std::memory_order_relaxed);
}

void StartWatch(int32_t interval, const FocusCalls& calls) {
  static constexpr ExportMessages kMessages = {"CRITICAL ERROR in StartFocusWatch: ",
                                               "CRITICAL ERROR: Unknown exception in StartFocusWatch."};
  RunCatching(kMessages, [&] { StartThrowing(interval, calls); });
}

void StopWatch() {
  static constexpr ExportMessages kMessages = {"CRITICAL ERROR in StopFocusWatch: ",
                                               "CRITICAL ERROR: Unknown exception in StopFocusWatch."};
  RunCatching(kMessages, StopThrowing);
}

void PollForeground(int32_t interval, const FocusCalls& calls) {
  while (!g_focusHandedOver.load()) SwitchToThread();
  const ComScope com;
  uint32_t lastPid = 0;
  while (g_focusRunning.load()) {
    const uint32_t processId = calls.foregroundProcess();
    if (processId != 0 && processId != lastPid) {
      lastPid = processId;
      Report(processId, calls);
    }
    calls.sleep(interval);
  }
}

}  // namespace tarnwick

extern "C" {

void SetFocusCallbackEx(TarnwickFocusCallback callback) { tarnwick::SetFocusCallback(callback); }

void StartFocusWatch(int32_t intervalMs) { tarnwick::StartWatch(intervalMs, tarnwick::kWindowsFocusCalls); }

void StopFocusWatch(void) { tarnwick::StopWatch(); }

}  // extern "C"
