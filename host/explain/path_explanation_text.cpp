// A path's explanation for people and for programs.
#include "host/explain/path_explanation.h"

#include "host/explain/question_json.h"
#include "host/explain/question_words.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <utility>

namespace tarnwick::host {
namespace {

using Json = nlohmann::ordered_json;

std::string KindText(const PathExplanation& explanation) {
  if (explanation.kind == PathKind::kMissing) return fmt::format("{} doesn't exist\n", explanation.path);
  return fmt::format("{} is a {}\n", explanation.path, NameOf(explanation.kind));
}

std::string RecordText(const RecordLead& record) {
  return record.found
             ? fmt::format("  record '{}': found by {}\n", record.record, record.strategy)
             : fmt::format("  record '{}': {} only asked: {}\n", record.record, record.strategy, record.path);
}

std::string QuestionLine(const Heard& heard) {
  return heard.answer.given
             ? fmt::format("    {}: {}\n", QuestionInWords(heard.question), AnswerInWords(heard))
             : fmt::format("    {}\n", MissInWords(heard));
}

// Few people want more than the last questions, which tell how it ended.
std::string StrategyText(const StrategyLead& lead, bool verbose) {
  constexpr size_t kShown = 2;
  std::string text;
  for (const ScanResult& result : lead.results) {
    text += fmt::format("  {} finds '{}': {}\n", lead.strategy, result.name, result.exePath);
  }
  if (lead.results.empty()) text += fmt::format("  {} asks for it and finds nothing\n", lead.strategy);
  if (!verbose && !lead.results.empty()) return text;
  const size_t first = verbose || lead.heard.size() <= kShown ? 0 : lead.heard.size() - kShown;
  for (size_t i = first; i < lead.heard.size(); ++i) text += QuestionLine(lead.heard[i]);
  return text;
}

std::string ApplicationText(const ApplicationLead& app) {
  const std::string listed = app.executable.empty() ? " (which isn't in the list)" : "";
  if (app.how == "executable")
    return fmt::format("  application '{}'{}: it is its executable\n", app.name, listed);
  const char* const how = app.how == "folder" ? "it is installed there" : "it lies in its folder";
  return fmt::format("  application '{}'{}: {}\n", app.name, listed, how);
}

Json RecordJson(const RecordLead& record) {
  return {
      {"name", record.record}, {"strategy", record.strategy}, {"found", record.found}, {"path", record.path}};
}

Json StrategyJson(const StrategyLead& lead) {
  Json found = Json::array();
  for (const ScanResult& result : lead.results) {
    found.push_back({{"name", result.name}, {"path", result.exePath}, {"source", result.source}});
  }
  return {{"name", lead.strategy}, {"found", std::move(found)}, {"questions", QuestionsJson(lead.heard)}};
}

Json ApplicationJson(const ApplicationLead& app) {
  return {{"name", app.name}, {"executable", app.executable}, {"folder", app.folder}, {"how", app.how}};
}

template <class Items, class Write>
Json ArrayOf(const Items& items, Write&& write) {
  Json array = Json::array();
  for (const auto& item : items) array.push_back(write(item));
  return array;
}

}  // namespace

std::string PathExplanationText(const PathExplanation& explanation, bool verbose) {
  std::string text = KindText(explanation);
  for (const RecordLead& record : explanation.records) text += RecordText(record);
  for (const StrategyLead& lead : explanation.strategies) text += StrategyText(lead, verbose);
  for (const ApplicationLead& app : explanation.applications) text += ApplicationText(app);
  const bool nothing = explanation.strategies.empty() && explanation.applications.empty();
  if (nothing) text += "  neither a strategy nor an application leads there\n";
  return text + IconExplanationText(explanation.icon);
}

Json PathExplanationJson(const PathExplanation& explanation) {
  return {{"subject", explanation.subject},
          {"path", explanation.path},
          {"kind", NameOf(explanation.kind)},
          {"inScan", explanation.inScan},
          {"records", ArrayOf(explanation.records, RecordJson)},
          {"strategies", ArrayOf(explanation.strategies, StrategyJson)},
          {"applications", ArrayOf(explanation.applications, ApplicationJson)},
          {"icon", IconExplanationJson(explanation.icon)}};
}

}  // namespace tarnwick::host
