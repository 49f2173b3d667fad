// tarnwick watch
#include <windows.h>

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "host/commands.h"
#include "host/console.h"
#include "host/log_capture.h"
#include "tarnwick/tarnwick.h"

namespace tarnwick::host {
namespace {

// The callback and the console's handler take no context.
bool g_asJson = false;
HANDLE g_stop = nullptr;

void OnFocus(const char* fileName, uint32_t processId, const char* fullPath) {
  if (g_asJson) {
    const nlohmann::json line = {{"exe", fileName}, {"pid", processId}, {"path", fullPath}};
    WriteStandardOutput(line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
    return;
  }
  const char* name = *fileName != '\0' ? fileName : "(not to be opened)";
  WriteStandardOutput(fmt::format("{:>8}  {:<32}  {}\n", processId, name, fullPath));
}

BOOL WINAPI OnConsoleEvent(DWORD) {
  SetEvent(g_stop);
  return TRUE;
}

}  // namespace

int RunWatch(const Options& options) {
  g_asJson = options.format == Format::kJson;
  g_stop = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
  const LogCapture capture([&](const LogEntry& entry) {
    if (options.log) WriteStandardError(entry.text + "\n");
  });
  SetFocusCallbackEx(OnFocus);
  StartFocusWatch(options.intervalMs);
  WaitForSingleObject(g_stop, options.durationMs > 0 ? static_cast<DWORD>(options.durationMs) : INFINITE);
  StopFocusWatch();
  SetFocusCallbackEx(nullptr);
  SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
  CloseHandle(g_stop);
  return kExitSuccess;
}

}  // namespace tarnwick::host
