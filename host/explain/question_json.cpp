#include "host/explain/question_json.h"

#include "host/explain/question_words.h"

#include <nlohmann/json.hpp>

namespace tarnwick::host {
namespace {

using common::Heard;
using Json = nlohmann::ordered_json;

std::string AnswerText(const Heard& heard) {
  const QuestionKind kind = heard.question.kind;
  const bool file = kind == QuestionKind::kReadTextFile || kind == QuestionKind::kReadBinaryFile;
  if (file && heard.answer.given) return AnswerInWords(heard);
  return heard.answer.text.substr(0, heard.answer.text.find_last_not_of('\0') + 1);
}

}  // namespace

Json QuestionJson(const Heard& heard) {
  return {{"kind", NameOf(heard.question.kind)}, {"subject", heard.question.subject},
          {"detail", heard.question.detail},     {"view", NameOf(heard.question.view)},
          {"answer", AnswerText(heard)},         {"ok", heard.answer.given}};
}

Json QuestionsJson(const std::vector<Heard>& heard) {
  Json questions = Json::array();
  for (const Heard& one : heard) questions.push_back(QuestionJson(one));
  return questions;
}

}  // namespace tarnwick::host
