#include "host/progress.h"

#include <fmt/format.h>

#include <algorithm>

#include "host/console.h"
#include "host/text_width.h"

namespace tarnwick::host {
namespace {

// What stands on the terminal now.
std::string g_drawn;

bool HasEnded(const StrategyReport& strategy) {
  return strategy.finished ||
         std::any_of(strategy.lines.begin(), strategy.lines.end(), [](const std::string& line) {
           return line.find("Scan completed!") != std::string::npos;
         });
}

size_t FoundLines(const StrategyReport& strategy) {
  return static_cast<size_t>(
      std::count_if(strategy.lines.begin(), strategy.lines.end(), [](const std::string& line) {
        // A Steam app without an executable is skipped with a line of the same form.
        return line.find("Found") != std::string::npos && line.find(" -> ") != std::string::npos &&
               line.find(" -> No Exe") == std::string::npos;
      }));
}

}  // namespace

std::string ProgressText(const ScanReporter& reporter) {
  if (!reporter.HasLevel()) return {};
  size_t ended = 0;
  size_t inLevel = 0;
  size_t found = 0;
  for (const StrategyReport& strategy : reporter.Report().strategies) {
    found += FoundLines(strategy);
    if (strategy.level != reporter.CurrentLevel()) continue;
    ++inLevel;
    if (HasEnded(strategy)) ++ended;
  }
  return fmt::format("Level {}: {} of {} strategies finished, {} found", reporter.CurrentLevel(), ended,
                     inLevel, found);
}

void DrawProgress(const std::string& text) {
  const size_t width = ErrorTerminalWidth();
  const std::string fitted = CutEnd(text, width);
  if (fitted == g_drawn) return;
  const size_t columns = DisplayColumns(fitted);
  const size_t before = std::min(DisplayColumns(g_drawn), width);
  const std::string blanks(before > columns ? before - columns : 0, ' ');
  WriteStandardError('\r' + fitted + blanks + (fitted.empty() ? "\r" : ""));
  g_drawn = fitted;
}

}  // namespace tarnwick::host
