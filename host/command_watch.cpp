// tarnwick watch
#include <windows.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "host/commands.h"
#include "host/console.h"
#include "host/library_call.h"
#include "host/log_capture.h"
#include "host/log_output.h"
#include "host/output_file.h"
#include "host/text_table.h"
#include "host/text_width.h"

namespace tarnwick::host {
namespace {

const std::vector<Column> kColumns = {
    {"PID", Cut::kEnd, 2, 8, 5}, {"NAME", Cut::kEnd, 1, 16, 8}, {"EXECUTABLE", Cut::kMiddle, 0, 24, 12}};
const std::vector<size_t> kUsualWidths = {8, 32, 1};

HANDLE g_stop = nullptr;  // the console's handler takes no context

std::string JsonLine(const ForegroundProcess& process) {
  const nlohmann::json line = {
      {"exe", process.fileName}, {"pid", process.processId}, {"path", process.fullPath}};
  return line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

// The lines come one by one, so their columns don't depend on each other's texts: on a terminal they have
// what room there is, elsewhere a longer text makes its own line longer.
std::string TextLine(const ForegroundProcess& process) {
  const std::string pid = std::to_string(process.processId);
  const Row row = {std::string(kUsualWidths[0] - std::min(kUsualWidths[0], pid.size()), ' ') + pid,
                   process.fileName.empty() ? "(not to be opened)" : process.fileName, process.fullPath};
  const size_t width = TerminalWidth();
  std::vector<size_t> widths = kUsualWidths;
  if (width > 0) {
    widths.back() = width;
  } else {
    for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], DisplayColumns(row[i]));
  }
  return FormatRow(kColumns, row, FittedWidths(kColumns, widths, width), width);
}

// What goes wrong ends the watch, which keeps it.
void WriteLine(const ForegroundProcess& process, bool asJson) {
  try {
    WriteStandardOutput(asJson ? JsonLine(process) : TextLine(process));
  } catch (...) {
    SetEvent(g_stop);
    throw;
  }
}

BOOL WINAPI OnConsoleEvent(DWORD) {
  SetEvent(g_stop);
  return TRUE;
}

// What went wrong in writing, or null.
std::exception_ptr WatchUntilStopped(const Options& options) {
  const bool asJson = options.format == Format::kJson;
  const Library& library = TheLibrary();
  LogOutput log(options);
  const LogCapture capture([&](const LogEntry& entry) { log.Write(entry); });
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
  FocusWatch watch(
      library, [asJson](const ForegroundProcess& process) { WriteLine(process, asJson); },
      options.intervalMs);
  WaitForSingleObject(g_stop, options.durationMs > 0 ? static_cast<DWORD>(options.durationMs) : INFINITE);
  watch.Stop();
  SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
  return watch.Failure();
}

}  // namespace

int RunWatch(const Options& options) {
  const std::unique_ptr<void, HandleCloser> stop(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  if (stop == nullptr) throw std::runtime_error("can't watch: " + SystemErrorText(GetLastError()));
  g_stop = stop.get();
  if (const std::exception_ptr failure = WatchUntilStopped(options)) std::rethrow_exception(failure);
  return kExitSuccess;
}

}  // namespace tarnwick::host
