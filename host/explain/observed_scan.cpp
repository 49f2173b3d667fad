#include "host/explain/observed_scan.h"

#include "catalogue/xml_parser.h"
#include "common/wide_text.h"
#include "core/catalogue_choice.h"
#include "core/merge.h"
#include "foundation/com_scope.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace tarnwick::host {
namespace {

using common::HeardQuestions;

constexpr const char* kFailures[] = {"CRITICAL SEH ERROR in Strategy [", "Thread CRASH (SEH) in strategy "};

bool IsFailure(const std::string& line) {
  return std::any_of(std::begin(kFailures), std::end(kFailures),
                     [&](const char* begin) { return line.starts_with(begin); });
}

std::string FailureIn(const std::vector<std::string>& lines) {
  const auto found = std::find_if(lines.begin(), lines.end(), IsFailure);
  return found == lines.end() ? std::string() : *found;
}

// What a strategy's thread was started with; the results come while the level runs.
struct Started {
  StrategyRun run;
  std::shared_ptr<ThreadResult> result;
};

ThreadStarter KeepingStarts(std::vector<Started>& starts) {
  return [&starts](const ScanStrategy* strategy, const GameList* games,
                   const std::shared_ptr<ThreadResult>& result) {
    starts.push_back({{*strategy, *games, {}, {}, {}}, result});
    return StartStrategyThread(strategy, games, result);
  };
}

StrategyRun* RunOf(std::vector<StrategyRun>& runs, const std::string& name) {
  const auto found = std::find_if(runs.begin(), runs.end(),
                                  [&](const StrategyRun& run) { return run.strategy.name == name; });
  return found == runs.end() ? nullptr : &*found;
}

void GiveOut(std::vector<Heard> heard, std::vector<StrategyRun>& runs) {
  for (Heard& one : heard) {
    StrategyRun* run = RunOf(runs, one.question.asker);
    if (run != nullptr) run->heard.push_back(std::move(one));
  }
}

// Loading the catalogue asks the machine too, but is no strategy's question.
GameList LoadCatalogue(const std::string& path) {
  return XmlParser::LoadGameListFromXml(ChooseCatalogue(path.empty() ? nullptr : path.c_str()));
}

void TakeResults(std::vector<Started>& starts, ObservedScan& scan) {
  for (Started& start : starts) {
    start.run.results = start.result->results;
    scan.runs.push_back(std::move(start.run));
  }
  for (const StrategyReport& report : scan.report.strategies) {
    StrategyRun* run = RunOf(scan.runs, report.name);
    if (run != nullptr) run->failure = FailureIn(report.lines);
  }
}

}  // namespace

ObservedScan ObserveScan(const std::string& cataloguePath, const LogSink& sink) {
  ObservedScan scan;
  std::vector<Started> starts;
  ScanReporter reporter;
  std::vector<Heard> heard;
  {
    const LogCapture capture([&](const LogEntry& entry) {
      reporter.Add(entry);
      if (sink) sink(entry);
    });
    scan.catalogue = LoadCatalogue(cataloguePath);
    const HeardQuestions questions;
    scan.all = RunStrategies(scan.catalogue, ScanStrategies, KeepingStarts(starts));
    heard = questions.All();
  }
  scan.unique = MergeResults(scan.all);
  scan.report = reporter.Report();
  TakeResults(starts, scan);
  GiveOut(std::move(heard), scan.runs);
  return scan;
}

StrategyRun ObserveStrategy(const ScanStrategy& strategy, const GameList& games) {
  StrategyRun run{strategy, games, {}, {}, {}};
  std::vector<std::string> lines;
  {
    const LogCapture capture([&](const LogEntry& entry) { lines.push_back(entry.text); });
    const HeardQuestions questions;
    const auto result = std::make_shared<ThreadResult>();
    StartStrategyThread(&run.strategy, &run.games, result).join();
    run.results = result->results;
    run.heard = questions.All();
  }
  run.failure = FailureIn(lines);
  return run;
}

}  // namespace tarnwick::host
