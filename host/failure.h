#pragma once
// What went wrong or is worth knowing, told in one line.

#include <functional>
#include <string_view>

namespace tarnwick::host {

// Writes "tarnwick: `text`" as one line to the standard error, over the progress if any is drawn there.
void ReportLine(std::string_view text) noexcept;

// Runs `body` and returns its exit code. Whatever it throws is reported and becomes kExitFailure.
int RunReportingFailures(const std::function<int()>& body) noexcept;

}  // namespace tarnwick::host
