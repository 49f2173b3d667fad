// tarnwick watch
#include <windows.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "host/commands.h"
#include "host/console.h"
#include "host/log_capture.h"
#include "host/log_output.h"
#include "host/output_file.h"
#include "host/text_table.h"
#include "host/text_width.h"
#include "tarnwick/tarnwick.h"

namespace tarnwick::host {
namespace {

const std::vector<Column> kColumns = {
    {"PID", Cut::kEnd, 2, 8, 5}, {"NAME", Cut::kEnd, 1, 16, 8}, {"EXECUTABLE", Cut::kMiddle, 0, 24, 12}};
const std::vector<size_t> kUsualWidths = {8, 32, 1};

// The callback and the console's handler take no context.
bool g_asJson = false;
HANDLE g_stop = nullptr;
std::exception_ptr g_failure;

std::string JsonLine(const char* fileName, uint32_t processId, const char* fullPath) {
  const nlohmann::json line = {{"exe", fileName}, {"pid", processId}, {"path", fullPath}};
  return line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

// The lines come one by one, so their columns don't depend on each other's texts: on a terminal they have
// what room there is, elsewhere a longer text makes its own line longer.
std::string TextLine(const char* fileName, uint32_t processId, const char* fullPath) {
  const std::string pid = std::to_string(processId);
  const Row row = {std::string(kUsualWidths[0] - std::min(kUsualWidths[0], pid.size()), ' ') + pid,
                   *fileName != '\0' ? fileName : "(not to be opened)", fullPath};
  const size_t width = TerminalWidth();
  std::vector<size_t> widths = kUsualWidths;
  if (width > 0) {
    widths.back() = width;
  } else {
    for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], DisplayColumns(row[i]));
  }
  return FormatRow(kColumns, row, FittedWidths(kColumns, widths, width), width);
}

// Nothing may be thrown into the library's thread: what goes wrong ends the watch, and is told then.
void OnFocus(const char* fileName, uint32_t processId, const char* fullPath) noexcept {
  if (g_failure) return;
  try {
    WriteStandardOutput(g_asJson ? JsonLine(fileName, processId, fullPath)
                                 : TextLine(fileName, processId, fullPath));
  } catch (...) {
    g_failure = std::current_exception();
    SetEvent(g_stop);
  }
}

BOOL WINAPI OnConsoleEvent(DWORD) {
  SetEvent(g_stop);
  return TRUE;
}

void WatchUntilStopped(const Options& options) {
  LogOutput log(options);
  const LogCapture capture([&](const LogEntry& entry) { log.Write(entry); });
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
  SetFocusCallbackEx(OnFocus);
  StartFocusWatch(options.intervalMs);
  WaitForSingleObject(g_stop, options.durationMs > 0 ? static_cast<DWORD>(options.durationMs) : INFINITE);
  StopFocusWatch();
  SetFocusCallbackEx(nullptr);
  SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
}

}  // namespace

int RunWatch(const Options& options) {
  g_asJson = options.format == Format::kJson;
  const std::unique_ptr<void, HandleCloser> stop(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  if (stop == nullptr) throw std::runtime_error("can't watch: " + SystemErrorText(GetLastError()));
  g_stop = stop.get();
  WatchUntilStopped(options);
  if (g_failure) std::rethrow_exception(g_failure);
  return kExitSuccess;
}

}  // namespace tarnwick::host
