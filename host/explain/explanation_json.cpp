#include "host/explain/explanation_json.h"

#include "host/explain/question_json.h"

#include <nlohmann/json.hpp>

namespace tarnwick::host {
namespace {

using Json = nlohmann::ordered_json;

Json StrategyJson(const StrategyVerdict& verdict) {
  return {{"name", verdict.strategy},
          {"level", verdict.level},
          {"verdict", NameOf(verdict.verdict)},
          {"reason", verdict.reason},
          {"questions", QuestionsJson(*verdict.questions)}};
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
