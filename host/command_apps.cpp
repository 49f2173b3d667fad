// tarnwick apps, find and details
#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "host/commands.h"
#include "host/console.h"
#include "host/html_page.h"
#include "host/library_call.h"
#include "host/log_capture.h"
#include "host/presentation.h"
#include "host/tables.h"
#include "host/text_table.h"
#include "tarnwick/tarnwick.h"

namespace tarnwick::host {
namespace {

template <class Fill>
std::string CallAndLog(const Options& options, const Fill& fill) {
  const LogCapture capture([&](const LogEntry& entry) {
    if (options.log) WriteStandardError(entry.text + "\n");
  });
  return CallWithGrowingBuffer(fill);
}

int WriteApplications(const Options& options, const std::string& json) {
  if (options.format == Format::kJson) {
    WriteResult(options.output, json + "\n");
    return kExitSuccess;
  }
  const std::vector<Application> applications = ApplicationsFromJson(json);
  WriteResult(options.output, options.format == Format::kHtml ? ApplicationsPage(applications)
                                                              : ApplicationsTable(applications));
  return kExitSuccess;
}

}  // namespace

int RunApps(const Options& options) {
  const std::wstring filter = Widen(options.filter);
  return WriteApplications(options, CallAndLog(options, [&](char* buffer, int size) {
                             return options.all ? IA_GetAppsJsonAll(filter.c_str(), buffer, size)
                                                : IA_GetAppsJson(options.page, options.pageSize,
                                                                 filter.c_str(), buffer, size);
                           }));
}

int RunFind(const Options& options) {
  if (ReadFileBytes(options.input).empty())
    throw std::runtime_error("the request is empty: " + options.input);
  return WriteApplications(options, CallAndLog(options, [&](char* buffer, int size) {
                             return IA_FindGamesByFile(options.input.c_str(), buffer, size);
                           }));
}

int RunDetails(const Options& options) {
  const std::string json = CallAndLog(options, [&](char* buffer, int size) {
    return IA_GetGameDetailsByPathJson(options.input.c_str(), buffer, size);
  });
  const nlohmann::json details = nlohmann::json::parse(json, nullptr, false);
  if (!details.is_object() || details.empty())
    throw std::runtime_error("there is no such file: " + options.input);
  if (options.format == Format::kJson) {
    WriteResult(options.output, json + "\n");
    return kExitSuccess;
  }
  const std::string icon = details.value("ico", "");
  WriteResult(options.output,
              FormatTable({"NAME", "FILE", "ICON", "PATH"},
                          {{details.value("name", ""), details.value("exe", ""),
                            icon.empty() ? "none" : fmt::format("PNG, {} characters", icon.size()),
                            details.value("exepath", "")}}));
  return kExitSuccess;
}

}  // namespace tarnwick::host
