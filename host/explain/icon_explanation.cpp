#include "host/explain/icon_explanation.h"

#include "common/wide_text.h"
#include "foundation/text.h"
#include "host/explain/question_words.h"
#include "inventory/icons.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace tarnwick::host {
namespace {

using common::Heard;
using Json = nlohmann::ordered_json;

bool IsSearch(const Question& question) {
  return question.kind == QuestionKind::kListFolder && question.detail == kIconSearch;
}

bool IsIcon(const Question& question) { return question.kind == QuestionKind::kIcon; }

// The line of one entry: its name, a tab, and "folder" or the file's bytes.
void AddCandidate(const std::wstring& folder, const std::string& line,
                  std::vector<IconCandidate>& candidates) {
  const size_t tab = line.find('\t');
  if (tab == std::string::npos || line.substr(tab + 1) == "folder") return;
  const std::wstring name = common::Wide(line.substr(0, tab), common::Malformed::kReplaced);
  const double score = IconScore(name, std::strtoull(line.c_str() + tab + 1, nullptr, 10));
  if (score >= 0) candidates.push_back({common::Narrow(JoinWidePath(folder, name)), score});
}

void AddSearch(const Heard& heard, IconExplanation& icon) {
  const std::wstring folder = common::Wide(heard.question.subject, common::Malformed::kReplaced);
  icon.searched.push_back(heard.question.subject);
  if (!heard.answer.given) return;
  std::istringstream lines(heard.answer.text);
  for (std::string line; std::getline(lines, line);) AddCandidate(folder, line, icon.candidates);
}

// What was asked for its icon behind the search is what the search chose.
void AddIconCall(const Heard& heard, IconExplanation& icon) {
  const Question& question = heard.question;
  if (!icon.searched.empty() && icon.winner.empty() && question.subject != kGenericApplication) {
    icon.winner = question.subject;
  }
  if (!heard.answer.given) return;
  icon.file = question.subject;
  icon.call = question.detail;
}

bool IsTaken(const IconExplanation& icon, const IconCandidate& candidate) {
  return candidate.path == icon.winner;
}

std::string SourceText(const IconExplanation& icon) {
  if (icon.file.empty()) return "none is to be had";
  if (icon.file == kGenericApplication) return fmt::format("that of {}, by {}", icon.file, icon.call);
  return fmt::format("{}, by {}", icon.file, icon.call);
}

}  // namespace

IconExplanation ExplainIcon(const std::vector<Heard>& heard) {
  IconExplanation icon;
  for (const Heard& one : heard) {
    if (!IsSearch(one.question) && !IsIcon(one.question)) continue;
    icon.asked = true;
    IsSearch(one.question) ? AddSearch(one, icon) : AddIconCall(one, icon);
    if (!one.answer.given) icon.misses.push_back(one);
  }
  return icon;
}

std::string IconExplanationText(const IconExplanation& icon) {
  if (!icon.asked) return {};
  std::string text = fmt::format("  icon: {}\n", SourceText(icon));
  for (const Heard& miss : icon.misses) text += fmt::format("    {}\n", MissInWords(miss));
  for (const std::string& folder : icon.searched) text += fmt::format("    searched {}\n", folder);
  for (const IconCandidate& candidate : icon.candidates) {
    text += fmt::format("    {} scores {:.1f}{}\n", candidate.path, candidate.score,
                        IsTaken(icon, candidate) ? ", the most" : "");
  }
  return text;
}

Json IconExplanationJson(const IconExplanation& icon) {
  if (!icon.asked) return nullptr;
  Json candidates = Json::array();
  for (const IconCandidate& candidate : icon.candidates) {
    candidates.push_back(
        {{"path", candidate.path}, {"score", candidate.score}, {"taken", IsTaken(icon, candidate)}});
  }
  Json misses = Json::array();
  for (const Heard& miss : icon.misses) misses.push_back(MissInWords(miss));
  return {{"file", icon.file},
          {"call", icon.call},
          {"searched", icon.searched},
          {"candidates", std::move(candidates)},
          {"misses", std::move(misses)}};
}

}  // namespace tarnwick::host
