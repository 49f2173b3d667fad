#include "host/explain/explanation_json.h"

#include "host/explain/question_words.h"

#include <nlohmann/json.hpp>

namespace tarnwick::host {
namespace {

using Json = nlohmann::ordered_json;

std::string AnswerText(const Heard& heard) {
  const QuestionKind kind = heard.question.kind;
  const bool file = kind == QuestionKind::kReadTextFile || kind == QuestionKind::kReadBinaryFile;
  if (file && heard.answer.given) return AnswerInWords(heard);
  // Values of the registry can have zero characters at their end.
  return heard.answer.text.substr(0, heard.answer.text.find_last_not_of('\0') + 1);
}

Json QuestionJson(const Heard& heard) {
  return {{"kind", NameOf(heard.question.kind)}, {"subject", heard.question.subject},
          {"detail", heard.question.detail},     {"view", NameOf(heard.question.view)},
          {"answer", AnswerText(heard)},         {"ok", heard.answer.given}};
}

Json StrategyJson(const StrategyVerdict& verdict) {
  Json questions = Json::array();
  for (const Heard& heard : *verdict.questions) questions.push_back(QuestionJson(heard));
  return {{"name", verdict.strategy},
          {"level", verdict.level},
          {"verdict", NameOf(verdict.verdict)},
          {"reason", verdict.reason},
          {"questions", std::move(questions)}};
}

Json GameJson(const GameExplanation& game) {
  Json strategies = Json::array();
  for (const StrategyVerdict& verdict : game.strategies) strategies.push_back(StrategyJson(verdict));
  return {{"name", game.name},
          {"inCatalogue", game.inCatalogue},
          {"outcome", NameOf(game.outcome)},
          {"sentence", game.sentence},
          {"path", game.path},
          {"foundBy", game.strategy},
          {"source", game.source},
          {"strategies", std::move(strategies)},
          {"nearMisses", game.nearMisses}};
}

}  // namespace

std::string ExplanationJson(const Explanation& explanation) {
  Json records = Json::array();
  for (const GameExplanation& game : explanation.records) records.push_back(GameJson(game));
  const Json json = {{"subject", explanation.subject},
                     {"records", std::move(records)},
                     {"further", explanation.further},
                     {"similar", explanation.similar}};
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace tarnwick::host
