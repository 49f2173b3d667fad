#include "host/page/report_data.h"

#include "foundation/text.h"
#include "host/console.h"
#include "host/explain/question_words.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace tarnwick::host {
namespace {

using nlohmann::json;

json QuestionData(const Heard& heard) {
  const bool given = heard.answer.given;
  return {{"text", given ? QuestionInWords(heard.question) : MissInWords(heard)},
          {"answer", given ? AnswerInWords(heard) : std::string()},
          {"ok", given}};
}

struct Counts {
  size_t asked = 0;
  size_t missed = 0;
};

// How many of which kind were asked; kinds that weren't are left out.
json KindsData(const std::vector<Heard>& heard) {
  std::array<Counts, kQuestionKinds> counts;
  for (const Heard& one : heard) {
    Counts& count = counts[static_cast<size_t>(one.question.kind)];
    ++count.asked;
    if (!one.answer.given) ++count.missed;
  }
  json kinds = json::array();
  for (size_t kind = 0; kind < counts.size(); ++kind) {
    if (counts[kind].asked == 0) continue;
    kinds.push_back({{"name", NameOf(static_cast<QuestionKind>(kind))},
                     {"asked", counts[kind].asked},
                     {"missed", counts[kind].missed}});
  }
  return kinds;
}

void AddReasons(json& data, const std::vector<MissReason>& reasons) {
  data["reasons"] = json::array();
  size_t missed = 0;
  for (const MissReason& reason : reasons) {
    missed += reason.count;
    if (data["reasons"].size() < kMostReasons)
      data["reasons"].push_back({{"text", reason.text}, {"count", reason.count}});
  }
  data["missed"] = missed;
  data["reasonsLeftOut"] = reasons.size() - data["reasons"].size();
}

void AddQuestions(json& data, const std::vector<Heard>& heard) {
  data["asked"] = heard.size();
  data["kinds"] = KindsData(heard);
  data["questions"] = json::array();
  for (size_t i = 0; i < std::min(heard.size(), kMostQuestions); ++i)
    data["questions"].push_back(QuestionData(heard[i]));
}

json StrategyData(const StrategyRun& run, const ScanReport& report) {
  json data = {{"name", run.strategy.name},   {"level", run.strategy.priority}, {"records", run.games.size()},
               {"found", run.results.size()}, {"failure", run.failure},         {"milliseconds", 0},
               {"lines", json::array()}};
  AddReasons(data, MissReasons(run.heard));
  AddQuestions(data, run.heard);
  const auto logged = std::ranges::find(report.strategies, run.strategy.name, &StrategyReport::name);
  if (logged != report.strategies.end()) {
    data["milliseconds"] = logged->milliseconds;
    data["lines"] = logged->lines;
  }
  return data;
}

// As the answer lists paths, so that equal ones look equal.
std::string ListedPath(const ScanResult& result) { return Narrow(NormalizeLocPath(Widen(result.exePath))); }

json MergedData(const MergedResult& merged) {
  return {{"name", merged.result->name},
          {"path", ListedPath(*merged.result)},
          {"source", merged.result->source},
          {"strategy", merged.run->strategy.name},
          {"level", merged.run->strategy.priority},
          {"why", merged.why}};
}

}  // namespace

json ReportData(const ObservedScan& scan) {
  json strategies = json::array();
  for (const StrategyRun& run : scan.runs) strategies.push_back(StrategyData(run, scan.report));
  return {{"strategies", strategies},
          {"catalogue", scan.catalogue.size()},
          {"raw", scan.all.size()},
          {"unique", scan.unique.size()},
          {"notes", scan.report.notes}};
}

json ExplanationData(const GameFinding& finding) {
  if (finding.run == nullptr) return nullptr;
  json evidence = json::array();
  for (const Heard* heard : finding.evidence) evidence.push_back(QuestionData(*heard));
  json merged = json::array();
  for (const MergedResult& one : finding.merged) merged.push_back(MergedData(one));
  return {{"strategy", finding.run->strategy.name},
          {"level", finding.run->strategy.priority},
          {"source", finding.result->source},
          {"evidence", evidence},
          {"merged", merged}};
}

}  // namespace tarnwick::host
