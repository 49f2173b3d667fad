#include "host/scan_report.h"

#include <algorithm>
#include <optional>

namespace tarnwick::host {
namespace {

// The text between `prefix` and `suffix`, if the line is made of the three.
std::optional<std::string> Between(const std::string& line, const std::string& prefix,
                                   const std::string& suffix) {
  if (line.size() < prefix.size() + suffix.size() || !line.starts_with(prefix) || !line.ends_with(suffix))
    return {};
  return line.substr(prefix.size(), line.size() - prefix.size() - suffix.size());
}

size_t NumberIn(const std::string& text) {
  return static_cast<size_t>(std::strtoull(text.c_str(), nullptr, 10));
}

// Found lines show the path as the strategy had it; the answer's "loc" has single backslashes only.
std::string Normalized(std::string path) {
  std::replace(path.begin(), path.end(), '/', '\\');
  const auto doubled = [](char a, char b) { return a == '\\' && b == '\\'; };
  if (path.size() > 1) path.erase(std::unique(path.begin() + 1, path.end(), doubled), path.end());
  return path;
}

bool IsFoundLine(const std::string& line, const std::string& name, const std::string& path) {
  const size_t arrow = line.rfind(" -> ");
  if (arrow == std::string::npos || line.find("Found") == std::string::npos) return false;
  if (Normalized(line.substr(arrow + 4)) != path) return false;
  return name.empty() || line.substr(0, arrow).find(name) != std::string::npos;
}

struct CountLine {
  const char* before;
  const char* behind;
  size_t ScanReport::* member;
};

constexpr CountLine kCountLines[] = {
    {"Loaded ", " games from XML.", &ScanReport::gamesInCatalogue},
    {"Total raw results: ", "", &ScanReport::rawResults},
    {"Unique results after deduplication: ", "", &ScanReport::uniqueResults},
};

struct UnreadLauncher {
  const char* line;  // the beginning of the line that the library logs
  const char* note;
};

constexpr UnreadLauncher kUnreadLaunchers[] = {
    {"[ItchIoSearch] Can't open database",
     "itch.io is here: Tarnwick recognises it, but reads no games from it."},
    {"[TwitchSearch] Can't open database",
     "Twitch is here: Tarnwick recognises it, but reads no games from it."},
};

}  // namespace

StrategyReport* ScanReporter::Find(const std::string& name) {
  const auto found = std::find_if(report_.strategies.begin(), report_.strategies.end(),
                                  [&](const StrategyReport& strategy) { return strategy.name == name; });
  return found == report_.strategies.end() ? nullptr : &*found;
}

void ScanReporter::Add(const LogEntry& entry) {
  const std::string& line = entry.text;
  if (const auto level = Between(line, "Processing priority level: ", "")) {
    level_ = static_cast<int>(NumberIn(*level));
    hasLevel_ = true;
  } else if (const auto name = Between(line, "Launching thread for strategy: ", "")) {
    report_.strategies.push_back({*name, level_, false, false, 0, 0, {}});
  } else if (const auto started = Between(line, "Strategy [", "] START (in thread)")) {
    StrategyReport* strategy = Find(*started);
    if (strategy == nullptr) return;
    const auto index = static_cast<size_t>(strategy - report_.strategies.data());
    strategy->started = true;
    strategyOfThread_[entry.threadId] = index;
    startOfStrategy_[index] = entry.time;
  } else if (const size_t at = line.find("] finished. Found: ");
             line.starts_with("Strategy [") && at != std::string::npos) {
    StrategyReport* strategy = Find(line.substr(10, at - 10));
    if (strategy == nullptr) return;
    strategy->finished = true;
    strategy->found = NumberIn(line.substr(at + 19));
    // Thread numbers are given out again once a level's threads have ended.
    strategyOfThread_.clear();
  } else {
    AddFact(line);
    AddThreadLine(entry);
  }
}

void ScanReporter::AddFact(const std::string& line) {
  for (const CountLine& count : kCountLines) {
    if (const auto number = Between(line, count.before, count.behind))
      report_.*count.member = NumberIn(*number);
  }
  if (line == "Fallback to MasterGameList.xml") report_.fellBack = true;
  for (const UnreadLauncher& launcher : kUnreadLaunchers) {
    if (!line.starts_with(launcher.line)) continue;
    // Two threads write these lines, in an order of their own at every scan.
    report_.notes.insert(std::ranges::lower_bound(report_.notes, launcher.note), launcher.note);
  }
}

void ScanReporter::AddThreadLine(const LogEntry& entry) {
  const auto thread = strategyOfThread_.find(entry.threadId);
  if (thread == strategyOfThread_.end()) return;
  StrategyReport& strategy = report_.strategies[thread->second];
  strategy.lines.push_back(entry.text);
  strategy.milliseconds =
      std::chrono::duration<double, std::milli>(entry.time - startOfStrategy_[thread->second]).count();
}

std::string StrategyThatFound(const ScanReport& report, const std::string& name, const std::string& path) {
  // A merged game may carry another strategy's name for the same executable, so the path alone decides
  // second.
  for (const std::string& wanted : {name, std::string()}) {
    for (const StrategyReport& strategy : report.strategies) {
      for (const std::string& line : strategy.lines) {
        if (IsFoundLine(line, wanted, path)) return strategy.name;
      }
    }
  }
  return {};
}

}  // namespace tarnwick::host
